#include "TextCore/MatchIndex.h"

#include "TextCore/Check.h"
#include "TextCore/MatchScanner.h"

#include <algorithm>

namespace quelm {

std::optional<MatchIndex> MatchIndex::build(const TextRope& text, const SearchPattern& pattern,
                                            const std::stop_token& stop, SearchProgress* progress) {
    MatchIndex index(text, pattern);
    MatchScanner scanner(text, pattern, {0, text.byteCount()});
    while (scanner.nextBlock()) {
        if (stop.stop_requested())
            return std::nullopt;
        if (const auto first = scanner.nextInBlock()) {
            index.blocks_.push_back({first->location, scanner.blockEnd(), index.count_});
            index.count_ += 1 + scanner.countInBlock();
        }
        if (progress) {
            progress->bytes.store(scanner.blockEnd(), std::memory_order_relaxed);
            progress->matches.store(index.count_, std::memory_order_relaxed);
        }
    }
    return index;
}

template <class Visit>
void MatchIndex::forEachMatch(const Block& block, Visit visit) const {
    const std::int64_t reach = static_cast<std::int64_t>(pattern_.maximumLength()) - 1;
    const std::int64_t end = std::min(block.end + reach, text_.byteCount());
    MatchScanner scanner(text_, pattern_, ByteRange::between(block.start, end));
    std::int64_t number = block.matchesBefore;
    while (scanner.nextBlock())
        while (const auto match = scanner.nextInBlock())
            if (match->location >= block.end || !visit(NumberedMatch{number++, *match}))
                return;
}

std::size_t MatchIndex::blocksUpTo(std::int64_t place) const {
    return static_cast<std::size_t>(std::ranges::upper_bound(blocks_, place, {}, &Block::start) - blocks_.begin());
}

ByteRange MatchIndex::match(std::int64_t number) const {
    require(0 <= number && number < count_, "the number is one of a match");
    const auto block = std::ranges::upper_bound(blocks_, number, {}, &Block::matchesBefore) - 1;
    ByteRange result;
    forEachMatch(*block, [&](const NumberedMatch& found) {
        result = found.range;
        return found.number < number;
    });
    return result;
}

std::optional<MatchIndex::NumberedMatch> MatchIndex::firstFrom(std::int64_t place) const {
    const std::size_t following = blocksUpTo(place);
    std::optional<NumberedMatch> result;
    if (following > 0)
        forEachMatch(blocks_[following - 1], [&](const NumberedMatch& found) {
            if (found.range.location >= place)
                result = found;
            return !result;
        });
    if (!result && following < blocks_.size())
        forEachMatch(blocks_[following], [&](const NumberedMatch& found) {
            result = found;
            return false;
        });
    return result;
}

std::optional<MatchIndex::NumberedMatch> MatchIndex::lastBefore(std::int64_t place) const {
    std::optional<NumberedMatch> result;
    // The first match of the block may end too late, all of those of the one before end in time.
    for (std::size_t block = blocksUpTo(place); block > 0 && !result; --block)
        forEachMatch(blocks_[block - 1], [&](const NumberedMatch& found) {
            if (found.range.end() > place)
                return false;
            result = found;
            return true;
        });
    return result;
}

std::optional<MatchIndex::NumberedMatch> MatchIndex::matchAt(ByteRange range) const {
    const auto found = firstFrom(range.location);
    return found && found->range == range ? found : std::nullopt;
}

void MatchIndex::checkInvariants() const {
    std::int64_t count = 0;
    std::int64_t end = 0;
    for (const Block& block : blocks_) {
        require(block.start >= end && block.end > block.start, "blocks stand in order");
        require(block.matchesBefore == count, "a block knows the matches before it");
        forEachMatch(block, [&](const NumberedMatch& found) {
            require(found.number > block.matchesBefore || found.range.location == block.start,
                    "a block begins with its first match");
            ++count;
            return true;
        });
        require(count > block.matchesBefore, "a block has a match");
        end = block.end;
    }
    require(count == count_, "the matches are in the blocks");
}

} // namespace quelm
