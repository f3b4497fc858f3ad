#include "TextCore/MatchScanner.h"

#include "TextCore/Check.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace quelm {

MatchScanner::MatchScanner(TextRope text, const SearchPattern& pattern, ByteRange within)
    : text_(std::move(text)), pattern_(pattern), within_(within), bufferStart_(within.location),
      bufferEnd_(within.location), blockStart_(within.location), blockEnd_(within.location),
      nextStart_(within.location) {
    require(within.location >= 0 && within.length >= 0 && within.end() <= text_.byteCount(),
            "a search is within its text");
}

bool MatchScanner::nextBlock() {
    mask_ = 0;
    maskIndex_ = maskCount_ = 0;
    // Places that a long match covers need no look.
    blockStart_ = std::max(blockEnd_, nextStart_);
    if (within_.end() - blockStart_ < static_cast<std::int64_t>(pattern_.minimumLength())) {
        blockStart_ = blockEnd_ = within_.end();
        return false;
    }
    discardBefore(blockStart_);
    blockEnd_ = std::min(blockStart_ + blockLength, within_.end());
    readUpTo(std::min(blockEnd_ + static_cast<std::int64_t>(pattern_.maximumLength()) - 1, within_.end()));

    const auto count = static_cast<std::size_t>(blockEnd_ - blockStart_);
    maskCount_ = (count + positionsPerMask - 1) / positionsPerMask;
    masks_.resize(maskCount_);
    markCandidates(reinterpret_cast<const std::uint8_t*>(buffer_.data() + (blockStart_ - bufferStart_)), count,
                   pattern_.firstAnchor(), pattern_.secondAnchor(), masks_.data());
    if (const std::size_t last = count % positionsPerMask; last != 0)
        masks_.back() &= (std::uint64_t{1} << last) - 1;
    mask_ = masks_.front();
    return true;
}

std::optional<ByteRange> MatchScanner::nextInBlock() {
    while (maskIndex_ < maskCount_) {
        for (; mask_ != 0; mask_ &= mask_ - 1) {
            const std::int64_t location =
                blockStart_ + static_cast<std::int64_t>(maskIndex_ * positionsPerMask) + std::countr_zero(mask_);
            if (location < nextStart_)
                continue;
            const std::int64_t readable = std::min(bufferEnd_, within_.end()) - location;
            const std::size_t length = pattern_.lengthAt(
                std::string_view(buffer_.data() + (location - bufferStart_), static_cast<std::size_t>(readable)));
            if (length == 0)
                continue;
            mask_ &= mask_ - 1;
            nextStart_ = location + static_cast<std::int64_t>(length);
            return ByteRange::between(location, nextStart_);
        }
        if (++maskIndex_ < maskCount_)
            mask_ = masks_[maskIndex_];
    }
    return std::nullopt;
}

std::int64_t MatchScanner::countInBlock() {
    std::int64_t count = 0;
    if (pattern_.maximumLength() > 1) {
        while (nextInBlock())
            ++count;
        return count;
    }
    // Where a match is one byte, the anchors have decided. Such patterns have the most matches of all.
    for (; maskIndex_ < maskCount_; mask_ = ++maskIndex_ < maskCount_ ? masks_[maskIndex_] : 0)
        count += std::popcount(mask_);
    return count;
}

void MatchScanner::discardBefore(std::int64_t place) {
    if (place >= bufferEnd_) {
        bufferStart_ = bufferEnd_ = place;
        return;
    }
    const auto kept = static_cast<std::size_t>(bufferEnd_ - place);
    std::memmove(buffer_.data(), buffer_.data() + (place - bufferStart_), kept);
    bufferStart_ = place;
}

void MatchScanner::readUpTo(std::int64_t place) {
    constexpr std::size_t readBeyond = SearchPattern::anchoredLength + positionsPerMask;
    while (bufferEnd_ < place) {
        const TextRope::Chunk chunk = text_.chunkAfter(bufferEnd_);
        const std::string_view bytes = chunk.bytes.substr(static_cast<std::size_t>(bufferEnd_ - chunk.location));
        const auto filled = static_cast<std::size_t>(bufferEnd_ - bufferStart_);
        const std::size_t needed = filled + bytes.size() + readBeyond;
        if (buffer_.size() < needed)
            buffer_.resize(std::max(needed, buffer_.size() * 2));
        std::memcpy(buffer_.data() + filled, bytes.data(), bytes.size());
        bufferEnd_ += static_cast<std::int64_t>(bytes.size());
    }
}

} // namespace quelm
