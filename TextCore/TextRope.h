#pragma once

#include "TextCore/SharedText.h"

#include <string_view>

namespace quelm {

/// The text of a document: an immutable value of well-formed UTF-8 that is copied in O(1). Values may be used on any
/// thread.
class TextRope {
public:
    TextRope() = default;

    /// `text` must be well-formed UTF-8 (a programming error otherwise is found wherever it is decoded, not here).
    explicit TextRope(SharedText text) : piece_(std::move(text)) {}

    /// Well-formed UTF-8 is copied as it is; ill-formed sequences are replaced by U+FFFD.
    static TextRope repairing(std::string_view bytes);

    /// The length in UTF-8 bytes.
    std::size_t byteCount() const { return piece_.size(); }
    bool isEmpty() const { return piece_.empty(); }

    /// The whole text as one padded piece of memory, shared with this value where it is stored so already; otherwise
    /// O(n).
    SharedText contiguous() const { return piece_.paddedCopy(); }

    /// Whether both are the same value in memory: O(1), and false says nothing about the texts.
    bool isSameValue(const TextRope& other) const { return piece_.isSamePiece(other.piece_); }

    /// Equal bytes.
    friend bool operator==(const TextRope& left, const TextRope& right) {
        return left.isSameValue(right) || left.piece_.view() == right.piece_.view();
    }

private:
    SharedText piece_;
};

} // namespace quelm
