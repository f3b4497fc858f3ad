#pragma once

#include "Quelm/TextEngine/AttributeRun.h"
#include "Quelm/TextEngine/RunSequence.h"
#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/Check.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace quelm {

class AttributeRunsBuilder;

/// The attributes of every character of a text, as runs that cover it: O(log n) besides the runs given or visited;
/// copies are O(1).
///
/// Long stretches may be stored as chunks whose runs are derived from something smaller when they are asked for.
/// Nothing but `count()` tells them from others, and that a chunk is derived where an edit meets it, or a question. An
/// edit puts the runs themselves in the place of such a chunk. For one thread at a time together with all copies.
class AttributeRuns {
public:
    /// `length` units with the base attributes.
    explicit AttributeRuns(qint64 length = 0);

    qint64 length() const { return runs_.length(); }
    /// The number of runs, each chunk of derived ones counted as one.
    qint64 count() const { return runs_.count(); }

    /// The text was edited: the stretch gives way to `newLength` units with the base attributes, and they and the
    /// runs on either side are no longer settled.
    void replace(TextRange range, qint64 newLength);

    /// Gives the units from `location` on the attributes of `runs`, none of them empty. What remains of a settled run
    /// that is cut in this is settled only if the run given beside it is.
    void set(qint64 location, std::span<const AttributeRun> runs);
    /// The same, however many runs are given.
    void set(qint64 location, const AttributeRuns& runs);

    struct PlacedRun {
        qint64 location = 0;
        AttributeRun run;
        qint64 end() const { return location + run.length; }
    };
    /// The run of the unit after `offset`, which must be less than `length()`.
    PlacedRun runAfter(qint64 offset) const;
    /// The run of the unit before `offset`, which must be above 0.
    PlacedRun runBefore(qint64 offset) const;

    /// Whether every run that meets the stretch is settled.
    bool isSettled(TextRange range) const { return range.isEmpty() || settledEnd(range.location) >= range.end(); }
    /// Where the settled runs from the unit after `offset` on end: `offset` itself if the run of that unit is not
    /// settled, else the start of the first run that is not, or `length()`.
    qint64 settledEnd(qint64 offset) const;

    /// Calls `visit(PlacedRun)` for the runs that meet the stretch, in order, each clipped to it.
    template <class Visit>
    void forEach(TextRange range, Visit&& visit) const {
        for (qint64 offset = range.location; offset < range.end();) {
            const RunSequence::Part part = runs_.partAfter(offset);
            for (const qint64 end = std::min(part.end(), range.end()); offset < end;) {
                PlacedRun placed = runInPart(part, offset);
                placed.run.length = std::min(placed.end(), end) - offset;
                placed.location = offset;
                visit(placed);
                offset = placed.end();
            }
        }
    }

    /// Aborts if an invariant of the runs does not hold. O(runs).
    void checkInvariants() const { runs_.checkInvariants(); }

private:
    friend class AttributeRunsBuilder;

    explicit AttributeRuns(RunSequence runs) : runs_(std::move(runs)) {}

    static PlacedRun runInPart(const RunSequence::Part& part, qint64 offset);
    bool isRunBoundary(qint64 offset) const;

    RunSequence runs_;
};

/// Makes runs from first to last. O(1) a run, and little memory besides the outcome.
class AttributeRunsBuilder {
public:
    /// Equal neighbours become one run; an empty one is a programming error.
    void append(const AttributeRun& run) {
        require(run.length > 0, "a run has characters");
        const PackedRun packed(run);
        if (!pending_.empty() && pending_.back().hasSameLook(packed)) {
            pending_.back().length += packed.length;
            return;
        }
        push(packed);
    }

    /// Appends runs that nobody has derived yet. They must be settled, and the first and the last of them must differ
    /// from what is appended beside them.
    void append(DerivedChunk chunk);

    /// What was appended; nothing afterwards.
    AttributeRuns finish() { return AttributeRuns(finishSequence()); }
    RunSequence finishSequence();

private:
    /// Whole leaves of the tree.
    static constexpr std::size_t mostPending = std::size_t{64} * RunSequence::Traits::leafCapacity;

    void push(const PackedRun& run) {
        if (pending_.size() > mostPending)
            flush();
        pending_.push_back(run);
    }
    void flush();

    RunSequence::Runs runs_;
    /// The runs that follow; the last of them may still grow.
    std::vector<PackedRun> pending_;
    std::vector<DerivedChunk> chunks_;
};

} // namespace quelm
