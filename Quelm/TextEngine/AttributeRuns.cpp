#include "Quelm/TextEngine/AttributeRuns.h"

namespace quelm {

AttributeRuns::AttributeRuns(qint64 length) {
    require(length >= 0, "a text has no negative length");
    if (length > 0)
        runs_ = RunSequence::single({length, {}, false});
}

void AttributeRuns::replace(TextRange range, qint64 newLength) {
    require(0 <= range.location && range.length >= 0 && range.end() <= length() && newLength >= 0,
            "an edited stretch is within the text");
    const RunSequence front = runs_.split(range.location).first.withLastUnsettled();
    const RunSequence back = runs_.split(range.end()).second.withFirstUnsettled();
    runs_ = RunSequence::joined(RunSequence::joined(front, AttributeRuns(newLength).runs_), back);
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

    RunSequence front = runs_.split(location).first;
    if (!runs.runs_.first().isSettled && !isRunBoundary(location))
        front = front.withLastUnsettled();
    RunSequence back = runs_.split(end).second;
    if (!runs.runs_.last().isSettled && !isRunBoundary(end))
        back = back.withFirstUnsettled();
    runs_ = RunSequence::joined(RunSequence::joined(front, runs.runs_), back);
}

AttributeRuns::PlacedRun AttributeRuns::runAfter(qint64 offset) const {
    require(0 <= offset && offset < length(), "a run is asked for at a character");
    return runInPart(runs_.partAfter(offset), offset);
}

AttributeRuns::PlacedRun AttributeRuns::runInPart(const RunSequence::Part& part, qint64 offset) {
    if (part.chunk.isEmpty())
        return {part.location, part.run};
    const RunSequence::Part derived = part.chunk.partAfter(offset - part.location);
    return {part.location + derived.location, derived.run};
}

AttributeRuns::PlacedRun AttributeRuns::runBefore(qint64 offset) const {
    return runAfter(offset - 1);
}

qint64 AttributeRuns::settledEnd(qint64 offset) const {
    if (offset == length())
        return offset;
    require(0 <= offset && offset < length(), "settled runs are asked for within the text");
    return runs_.settledEnd(offset);
}

bool AttributeRuns::isRunBoundary(qint64 offset) const {
    return offset == length() || runAfter(offset).location == offset;
}

void AttributeRunsBuilder::append(DerivedChunk chunk) {
    require(chunk.range.length > 0, "a chunk has characters");
    push(PackedRun::ofChunk(chunk.range.length));
    chunks_.push_back(std::move(chunk));
}

RunSequence AttributeRunsBuilder::finishSequence() {
    runs_ = runs_ + RunSequence::Runs(pending_);
    pending_.clear();
    const RunSequence::Chunks chunks(chunks_);
    chunks_.clear();
    return {std::exchange(runs_, {}), chunks};
}

void AttributeRunsBuilder::flush() {
    const std::span complete(pending_.data(), pending_.size() - 1);
    runs_ = runs_ + RunSequence::Runs(complete);
    pending_.erase(pending_.begin(), pending_.end() - 1);
}

} // namespace quelm
