#pragma once

#include "Quelm/TextEngine/TextRange.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace quelm {

class AttributeRunsBuilder;
class RunSequence;

/// The runs of a long stretch, made anew whenever somebody asks for them: `AttributeRuns` may hold chunks of it instead
/// of the runs themselves. What the runs derive from does not change, so that a chunk has the same runs every time.
/// For one thread at a time, constant or not: the runs of the chunks that were asked for last are kept.
class DerivedRuns {
public:
    DerivedRuns();
    DerivedRuns(const DerivedRuns&) = delete;
    DerivedRuns& operator=(const DerivedRuns&) = delete;
    virtual ~DerivedRuns();

    /// The runs of a chunk, none of them derived. O(1) for one of the last few chunks that were asked for.
    RunSequence runs(TextRange chunk) const;

private:
    /// Appends the runs of the chunk, from first to last. They cover it, and all of them are settled. Chunks are in
    /// offsets of the deriving class's own.
    virtual void derive(TextRange chunk, AttributeRunsBuilder& runs) const = 0;

    /// A viewport and what is edited in it meet no more chunks than these, as a rule.
    static constexpr std::size_t mostKept = 4;

    struct Kept;
    /// The one asked for last comes first.
    mutable std::vector<Kept> kept_;
};

/// A stretch of derived runs that is stored as one.
struct DerivedChunk {
    std::shared_ptr<const DerivedRuns> source;
    /// In the source's offsets.
    TextRange range;

    RunSequence runs() const;
};

} // namespace quelm
