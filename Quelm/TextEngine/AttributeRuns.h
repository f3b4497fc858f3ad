#pragma once

#include "Quelm/Foundation/SemanticColors.h"
#include "Quelm/TextEngine/TextRange.h"
#include "TextCore/Check.h"
#include "TextCore/SummaryTree.h"

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace quelm {

/// How characters are drawn, besides the one font of their text.
struct TextAttributes {
    ColorRole foreground = ColorRole::text;

    friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

/// Adjacent characters with the same attributes.
struct AttributeRun {
    qint64 length = 0;
    TextAttributes attributes;
    /// Whoever gave the attributes vouches that they are right for the characters of the run and those next to it; an
    /// edit of either ends that.
    bool isSettled = false;

    friend bool operator==(const AttributeRun&, const AttributeRun&) = default;
};

class AttributeRunsBuilder;

/// The attributes of every character of a text, as runs. O(log n) besides the runs given or visited; copies are O(1).
///
/// Invariants:
/// 1. No run is empty.
/// 2. Adjacent runs differ, in their attributes or in whether they are settled.
/// 3. The lengths of the runs sum up to `length()`.
class AttributeRuns {
public:
    /// `length` units with the base attributes.
    explicit AttributeRuns(qint64 length = 0);

    qint64 length() const { return runs_.summary().length; }
    /// The number of runs.
    qint64 count() const { return runs_.summary().count; }

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
            PlacedRun placed = runAfter(offset);
            const qint64 end = std::min(placed.end(), range.end());
            placed.location = offset;
            placed.run.length = end - offset;
            visit(placed);
            offset = end;
        }
    }

    /// Aborts if an invariant does not hold. O(runs).
    void checkInvariants() const;

private:
    friend class AttributeRunsBuilder;

    /// A run in one word: a coloured text of some megabytes has a run for every few characters.
    struct PackedRun {
        PackedRun() : length(0), foreground(0), isSettled(0) {}
        explicit PackedRun(const AttributeRun& run)
            : length(static_cast<std::uint64_t>(run.length)),
              foreground(static_cast<std::uint8_t>(run.attributes.foreground)), isSettled(run.isSettled) {}
        AttributeRun unpacked() const;
        bool hasSameLook(const PackedRun& other) const {
            return foreground == other.foreground && isSettled == other.isSettled;
        }

        std::uint64_t length : 48;
        std::uint64_t foreground : 8;
        std::uint64_t isSettled : 1;
    };

    struct Summary {
        qint64 length = 0;
        qint64 count = 0;
        /// Units in runs that are not settled.
        qint64 unsettled = 0;

        Summary& operator+=(const Summary& other) {
            length += other.length;
            count += other.count;
            unsettled += other.unsettled;
            return *this;
        }
        friend bool operator==(const Summary&, const Summary&) = default;
    };

    struct Traits {
        using Element = PackedRun;
        using Summary = AttributeRuns::Summary;
        static constexpr std::uint32_t leafCapacity = 64;
        static Summary summarize(const PackedRun& run) {
            const auto length = static_cast<qint64>(run.length);
            return {length, 1, run.isSettled ? 0 : length};
        }
    };
    using Runs = SummaryTree<Traits>;

    explicit AttributeRuns(Runs runs) : runs_(std::move(runs)) {}

    static Runs joined(const Runs& left, const Runs& right);
    static Runs withLastUnsettled(const Runs& runs);
    static Runs withFirstUnsettled(const Runs& runs);
    static std::pair<Runs, Runs> cut(const Runs& runs, qint64 offset);

    bool isRunBoundary(qint64 offset) const;

    Runs runs_;
};

/// Makes runs from first to last. O(1) a run, and little memory besides the outcome.
class AttributeRunsBuilder {
public:
    /// Equal neighbours become one run; an empty one is a programming error.
    void append(const AttributeRun& run) {
        require(run.length > 0, "a run has characters");
        const AttributeRuns::PackedRun packed(run);
        if (!pending_.empty() && pending_.back().hasSameLook(packed)) {
            pending_.back().length += packed.length;
            return;
        }
        if (pending_.size() > mostPending)
            flush();
        pending_.push_back(packed);
    }

    /// What was appended; nothing afterwards.
    AttributeRuns finish();

private:
    /// Whole leaves of the tree.
    static constexpr std::size_t mostPending = std::size_t{64} * AttributeRuns::Traits::leafCapacity;

    void flush();

    AttributeRuns::Runs runs_;
    /// The runs that follow; the last of them may still grow.
    std::vector<AttributeRuns::PackedRun> pending_;
};

} // namespace quelm
