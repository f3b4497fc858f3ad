#include "Quelm/TextEngine/RunSequence.h"

#include "TextCore/Check.h"

#include <optional>

namespace quelm {

namespace {

constexpr auto unitCount = [](const auto& summary) { return summary.length; };
constexpr auto unsettledCount = [](const auto& summary) { return summary.unsettled; };
constexpr auto chunkCount = [](const auto& summary) { return summary.count; };

} // namespace

PackedRun RunSequence::first() const {
    const PackedRun& run = runs_.first();
    return run.isChunk ? chunks_.first().runs().first() : run;
}

PackedRun RunSequence::last() const {
    const PackedRun& run = runs_.last();
    return run.isChunk ? chunks_.last().runs().last() : run;
}

RunSequence RunSequence::withoutFirst() const {
    return {runs_.withoutFirst(), runs_.first().isChunk ? chunks_.withoutFirst() : chunks_};
}

RunSequence RunSequence::withoutLast() const {
    return {runs_.withoutLast(), runs_.last().isChunk ? chunks_.withoutLast() : chunks_};
}

RunSequence RunSequence::withFirstDerived() const {
    return runs_.first().isChunk ? concatenated(chunks_.first().runs(), withoutFirst()) : *this;
}

RunSequence RunSequence::withLastDerived() const {
    return runs_.last().isChunk ? concatenated(withoutLast(), chunks_.last().runs()) : *this;
}

RunSequence RunSequence::chunkAt(qint64 index) const {
    return chunks_.find(chunkCount, index).element->runs();
}

std::pair<RunSequence, RunSequence> RunSequence::split(qint64 offset) const {
    auto [frontRuns, backRuns] = runs_.split(unitCount, offset);
    auto [frontChunks, backChunks] = chunks_.split(chunkCount, frontRuns.summary().chunks);
    const RunSequence front(std::move(frontRuns), std::move(frontChunks));
    const RunSequence back(std::move(backRuns), std::move(backChunks));

    const qint64 excess = offset - front.length();
    if (excess == 0)
        return {front, back};
    if (back.runs_.first().isChunk) {
        const auto [start, rest] = back.withFirstDerived().split(excess);
        return {concatenated(front, start), rest};
    }
    PackedRun start = back.runs_.first();
    PackedRun rest = start;
    start.length = static_cast<std::uint64_t>(excess);
    rest.length -= start.length;
    return {concatenated(front, single(start)), concatenated(single(rest), back.withoutFirst())};
}

RunSequence RunSequence::joined(const RunSequence& left, const RunSequence& right) {
    if (left.isEmpty() || right.isEmpty() || !left.last().hasSameLook(right.first()))
        return concatenated(left, right);
    const RunSequence front = left.withLastDerived();
    const RunSequence back = right.withFirstDerived();
    PackedRun seam = front.runs_.last();
    seam.length += back.runs_.first().length;
    return concatenated(concatenated(front.withoutLast(), single(seam)), back.withoutFirst());
}

RunSequence RunSequence::withLastUnsettled() const {
    if (isEmpty() || !runs_.last().isSettled)
        return *this;
    const RunSequence derived = withLastDerived();
    PackedRun last = derived.runs_.last();
    last.isSettled = 0;
    return joined(derived.withoutLast(), single(last));
}

RunSequence RunSequence::withFirstUnsettled() const {
    if (isEmpty() || !runs_.first().isSettled)
        return *this;
    const RunSequence derived = withFirstDerived();
    PackedRun first = derived.runs_.first();
    first.isSettled = 0;
    return joined(single(first), derived.withoutFirst());
}

RunSequence::Part RunSequence::partAfter(qint64 offset) const {
    const Runs::Place place = runs_.find(unitCount, offset);
    return {place.before.length, place.element->unpacked(),
            place.element->isChunk ? chunkAt(place.before.chunks) : RunSequence()};
}

qint64 RunSequence::settledEnd(qint64 offset) const {
    const Runs::Place place = runs_.find(unitCount, offset);
    if (!place.element->isSettled)
        return offset;
    return runs_.find(unsettledCount, place.before.unsettled).before.length;
}

void RunSequence::checkInvariants() const {
    runs_.checkInvariants();
    chunks_.checkInvariants();
    require(chunks_.summary().count == runs_.summary().chunks, "every element that stands for a chunk has one");

    std::optional<PackedRun> previous;
    const auto checkRun = [&](const PackedRun& run) {
        require(run.length > 0, "no run is empty");
        require(!previous || !previous->hasSameLook(run), "adjacent runs differ");
        previous = run;
    };
    qint64 chunk = 0;
    runs_.forEach([&](const PackedRun& element) {
        if (!element.isChunk) {
            checkRun(element);
            return;
        }
        const RunSequence derived = chunkAt(chunk++);
        require(derived.length() == static_cast<qint64>(element.length), "the runs of a chunk cover it");
        require(derived.chunks_.isEmpty(), "no run of a chunk is a chunk");
        require(derived.runs_.summary().unsettled == 0, "all runs of a chunk are settled");
        derived.runs_.forEach(checkRun);
    });
}

} // namespace quelm
