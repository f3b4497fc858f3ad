#include "TextCore/CanonicalText.h"

#include "TextCore/CanonicalTextForms.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>

namespace quelm::canonical {

namespace {

bool isASCIIAt(std::string_view text, std::size_t position) {
    return position < text.size() && U8_IS_SINGLE(text[position]);
}

/// Whether what stands at `position` is in the text's form as it is, with a boundary before it: its end, or
/// an ASCII character that no mark can follow.
bool isSettledAt(std::string_view text, std::size_t position) {
    if (position == text.size())
        return true;
    return isASCIIAt(text, position) && (position + 1 == text.size() || isASCIIAt(text, position + 1));
}

/// The last place up to `position`, before which both texts are the same, where the forms of both may be cut.
std::size_t lastSharedBoundary(std::string_view left, std::string_view right, std::size_t position) {
    position = sharedCharacterStart(left, right, position);
    while (position > 0 && !(hasBoundaryAt(left, position) && hasBoundaryAt(right, position)))
        position = sharedCharacterStart(left, right, position - 1);
    return position;
}

std::weak_ordering compareForms(std::string_view left, std::string_view right) {
    FormPieces leftPieces(left);
    FormPieces rightPieces(right);
    std::string_view leftPiece;
    std::string_view rightPiece;
    for (;;) {
        if (leftPiece.empty())
            leftPiece = leftPieces.next();
        if (rightPiece.empty())
            rightPiece = rightPieces.next();
        const std::size_t size = std::min(leftPiece.size(), rightPiece.size());
        if (size == 0)
            return leftPiece.size() <=> rightPiece.size();
        if (const int order = std::memcmp(leftPiece.data(), rightPiece.data(), size); order != 0)
            return order <=> 0;
        leftPiece.remove_prefix(size);
        rightPiece.remove_prefix(size);
    }
}

} // namespace

std::weak_ordering compare(std::string_view left, std::string_view right) {
    const std::size_t same = commonPrefixLength(left, right);
    if (same == left.size() && same == right.size())
        return std::weak_ordering::equivalent;
    if (isSettledAt(left, same) && isSettledAt(right, same))
        return left.substr(same, 1) <=> right.substr(same, 1);
    const std::size_t start = lastSharedBoundary(left, right, same);
    return compareForms(left.substr(start), right.substr(start));
}

std::uint64_t hash(std::string_view text) {
    std::string storage;
    return std::hash<std::string_view>{}(form(text, storage));
}

std::string_view form(std::string_view text, std::string& storage) {
    FormPieces pieces(text);
    std::size_t sameSize = 0;
    bool isCopied = false;
    for (std::string_view piece = pieces.next(); !piece.empty(); piece = pieces.next()) {
        if (!isCopied && piece.data() == text.data() + sameSize) {
            sameSize += piece.size();
            continue;
        }
        if (!isCopied)
            storage.assign(text.substr(0, sameSize));
        isCopied = true;
        storage.append(piece);
    }
    return isCopied ? std::string_view(storage) : text;
}

} // namespace quelm::canonical
