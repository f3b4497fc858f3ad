#pragma once

#include "Quelm/TextEngine/DerivedRuns.h"
#include "Quelm/TextEngine/PackedRun.h"
#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/SummaryTree.h"

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace quelm {

/// Adjacent runs, some of them stored as chunks whose runs are derived when they are asked for. A value, copied in
/// O(1). All is O(log n), besides deriving a chunk that is looked into, cut, or changed at an edge; one that is cut or
/// changed gives way to its runs. For one thread at a time together with its copies (see `DerivedRuns`).
///
/// Invariants:
/// 1. No run is empty, and no chunk.
/// 2. Adjacent runs differ, in their attributes or in whether they are settled, within chunks and at their edges too.
/// 3. All runs of a chunk are settled, and none of them is a chunk.
/// 4. There are as many elements that stand for chunks as chunks, in the same order.
class RunSequence {
public:
    RunSequence() = default;
    static RunSequence single(const AttributeRun& run) { return single(PackedRun(run)); }

    bool isEmpty() const { return runs_.isEmpty(); }
    qint64 length() const { return runs_.summary().length; }
    /// The number of runs, each chunk counted as one.
    qint64 count() const { return runs_.summary().count; }

    /// Runs, none of them a chunk. Neither may be asked of an empty sequence.
    PackedRun first() const;
    PackedRun last() const;

    /// What is before the offset and what is after it; the run that the offset is in goes to both in parts.
    std::pair<RunSequence, RunSequence> split(qint64 offset) const;
    /// One sequence after the other, the runs at the seam made one if they look the same.
    static RunSequence joined(const RunSequence& left, const RunSequence& right);

    RunSequence withFirstUnsettled() const;
    RunSequence withLastUnsettled() const;

    /// A run, or a chunk.
    struct Part;
    /// That of the unit after the offset, which must be less than the length.
    Part partAfter(qint64 offset) const;

    /// Where the settled runs from the unit after the offset on end. Derives nothing.
    qint64 settledEnd(qint64 offset) const;

    /// Aborts if an invariant does not hold. O(runs).
    void checkInvariants() const;

private:
    friend class AttributeRunsBuilder;

    struct Summary {
        qint64 length = 0;
        qint64 count = 0;
        /// Units in runs that are not settled.
        qint64 unsettled = 0;
        qint64 chunks = 0;

        Summary& operator+=(const Summary& other) {
            length += other.length;
            count += other.count;
            unsettled += other.unsettled;
            chunks += other.chunks;
            return *this;
        }
        friend bool operator==(const Summary&, const Summary&) = default;
    };
    struct Traits {
        using Element = PackedRun;
        using Summary = RunSequence::Summary;
        static constexpr std::uint32_t leafCapacity = 64;
        static Summary summarize(const PackedRun& run) {
            const auto length = static_cast<qint64>(run.length);
            return {length, 1, run.isSettled ? 0 : length, run.isChunk ? 1 : 0};
        }
    };
    using Runs = SummaryTree<Traits>;

    struct ChunkSummary {
        qint64 count = 0;

        ChunkSummary& operator+=(const ChunkSummary& other) {
            count += other.count;
            return *this;
        }
        friend bool operator==(const ChunkSummary&, const ChunkSummary&) = default;
    };
    struct ChunkTraits {
        using Element = DerivedChunk;
        using Summary = ChunkSummary;
        static constexpr std::uint32_t leafCapacity = 16;
        static Summary summarize(const DerivedChunk&) { return {1}; }
    };
    using Chunks = SummaryTree<ChunkTraits>;

    RunSequence(Runs runs, Chunks chunks) : runs_(std::move(runs)), chunks_(std::move(chunks)) {}
    static RunSequence single(const PackedRun& run) { return {Runs::single(run), {}}; }

    /// One after the other as they are.
    static RunSequence concatenated(const RunSequence& left, const RunSequence& right) {
        return {left.runs_ + right.runs_, left.chunks_ + right.chunks_};
    }
    RunSequence withoutFirst() const;
    RunSequence withoutLast() const;
    /// The runs of a chunk at that end in its place.
    RunSequence withFirstDerived() const;
    RunSequence withLastDerived() const;
    RunSequence chunkAt(qint64 index) const;

    Runs runs_;
    Chunks chunks_;
};

struct RunSequence::Part {
    qint64 location = 0;
    /// The run, or the length of the chunk.
    AttributeRun run;
    /// The runs of the chunk; empty for a run.
    RunSequence chunk;

    qint64 end() const { return location + run.length; }
};

} // namespace quelm
