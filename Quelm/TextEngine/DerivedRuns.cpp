#include "Quelm/TextEngine/DerivedRuns.h"

#include "Quelm/TextEngine/AttributeRuns.h"
#include "Quelm/TextEngine/RunSequence.h"
#include "TextCore/Check.h"

#include <algorithm>

namespace quelm {

struct DerivedRuns::Kept {
    TextRange chunk;
    RunSequence runs;
};

DerivedRuns::DerivedRuns() = default;
DerivedRuns::~DerivedRuns() = default;

RunSequence DerivedRuns::runs(TextRange chunk) const {
    const auto kept = std::ranges::find(kept_, chunk, &Kept::chunk);
    if (kept != kept_.end()) {
        std::rotate(kept_.begin(), kept, kept + 1);
        return kept_.front().runs;
    }
    AttributeRunsBuilder builder;
    derive(chunk, builder);
    const RunSequence runs = builder.finishSequence();
    require(runs.length() == chunk.length, "derived runs cover their chunk");
    if (kept_.size() == mostKept)
        kept_.pop_back();
    kept_.insert(kept_.begin(), {chunk, runs});
    return runs;
}

RunSequence DerivedChunk::runs() const {
    return source->runs(range);
}

} // namespace quelm
