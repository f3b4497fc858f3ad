#include "Quelm/TextEngine/AttributeRuns.h"

namespace quelm {

namespace {

constexpr auto unitCount = [](const auto& summary) { return summary.length; };
constexpr auto unsettledCount = [](const auto& summary) { return summary.unsettled; };

} // namespace

AttributeRun AttributeRuns::PackedRun::unpacked() const {
    return {static_cast<qint64>(length), {static_cast<ColorRole>(foreground)}, isSettled != 0};
}

AttributeRuns::AttributeRuns(qint64 length) {
    require(length >= 0, "a text has no negative length");
    if (length > 0)
        runs_ = Runs::single(PackedRun({length, {}, false}));
}

/// One sequence after the other, the runs at the seam made one if they look the same.
AttributeRuns::Runs AttributeRuns::joined(const Runs& left, const Runs& right) {
    if (left.isEmpty() || right.isEmpty() || !left.last().hasSameLook(right.first()))
        return left + right;
    PackedRun seam = left.last();
    seam.length += right.first().length;
    return left.withoutLast() + Runs::single(seam) + right.withoutFirst();
}

AttributeRuns::Runs AttributeRuns::withLastUnsettled(const Runs& runs) {
    if (runs.isEmpty() || !runs.last().isSettled)
        return runs;
    PackedRun last = runs.last();
    last.isSettled = 0;
    return joined(runs.withoutLast(), Runs::single(last));
}

AttributeRuns::Runs AttributeRuns::withFirstUnsettled(const Runs& runs) {
    if (runs.isEmpty() || !runs.first().isSettled)
        return runs;
    PackedRun first = runs.first();
    first.isSettled = 0;
    return joined(Runs::single(first), runs.withoutFirst());
}

/// What is before the offset and what is after it; the run that the offset is in goes to both in parts.
std::pair<AttributeRuns::Runs, AttributeRuns::Runs> AttributeRuns::cut(const Runs& runs, qint64 offset) {
    auto [front, back] = runs.split(unitCount, offset);
    const qint64 excess = offset - front.summary().length;
    if (excess > 0) {
        PackedRun start = back.first();
        PackedRun rest = start;
        start.length = static_cast<std::uint64_t>(excess);
        rest.length -= start.length;
        front = front + Runs::single(start);
        back = Runs::single(rest) + back.withoutFirst();
    }
    return {std::move(front), std::move(back)};
}

void AttributeRuns::replace(TextRange range, qint64 newLength) {
    require(0 <= range.location && range.length >= 0 && range.end() <= length() && newLength >= 0,
            "an edited stretch is within the text");
    const Runs front = withLastUnsettled(cut(runs_, range.location).first);
    const Runs back = withFirstUnsettled(cut(runs_, range.end()).second);
    runs_ = joined(joined(front, AttributeRuns(newLength).runs_), back);
}

void AttributeRuns::set(qint64 location, std::span<const AttributeRun> runs) {
    AttributeRunsBuilder given;
    for (const AttributeRun& run : runs)
        given.append(run);
    set(location, given.finish());
}

void AttributeRuns::set(qint64 location, const AttributeRuns& runs) {
    const qint64 end = location + runs.length();
    require(0 <= location && end <= length(), "attributes are given to a stretch within the text");
    if (runs.length() == 0)
        return;

    Runs front = cut(runs_, location).first;
    if (!runs.runs_.first().isSettled && !isRunBoundary(location))
        front = withLastUnsettled(front);
    Runs back = cut(runs_, end).second;
    if (!runs.runs_.last().isSettled && !isRunBoundary(end))
        back = withFirstUnsettled(back);
    runs_ = joined(joined(front, runs.runs_), back);
}

AttributeRuns::PlacedRun AttributeRuns::runAfter(qint64 offset) const {
    require(0 <= offset && offset < length(), "a run is asked for at a character");
    const Runs::Place place = runs_.find(unitCount, offset);
    return {place.before.length, place.element->unpacked()};
}

AttributeRuns::PlacedRun AttributeRuns::runBefore(qint64 offset) const {
    return runAfter(offset - 1);
}

qint64 AttributeRuns::settledEnd(qint64 offset) const {
    if (offset == length())
        return offset;
    require(0 <= offset && offset < length(), "settled runs are asked for within the text");
    const Runs::Place place = runs_.find(unitCount, offset);
    if (!place.element->isSettled)
        return offset;
    return runs_.find(unsettledCount, place.before.unsettled).before.length;
}

bool AttributeRuns::isRunBoundary(qint64 offset) const {
    return offset == length() || runAfter(offset).location == offset;
}

void AttributeRuns::checkInvariants() const {
    runs_.checkInvariants();
    qint64 total = 0;
    const PackedRun* previous = nullptr;
    runs_.forEach([&](const PackedRun& run) {
        require(run.length > 0, "no run is empty");
        require(!previous || !previous->hasSameLook(run), "adjacent runs differ");
        total += static_cast<qint64>(run.length);
        previous = &run;
    });
    require(total == length(), "the runs cover the text");
}

AttributeRuns AttributeRunsBuilder::finish() {
    runs_ = runs_ + AttributeRuns::Runs(pending_);
    pending_.clear();
    return AttributeRuns(std::exchange(runs_, {}));
}

void AttributeRunsBuilder::flush() {
    const std::span complete(pending_.data(), pending_.size() - 1);
    runs_ = runs_ + AttributeRuns::Runs(complete);
    pending_.erase(pending_.begin(), pending_.end() - 1);
}

} // namespace quelm
