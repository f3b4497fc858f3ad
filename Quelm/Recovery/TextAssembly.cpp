#include "Quelm/Recovery/TextAssembly.h"

#include "TextCore/UTF8.h"

#include <optional>

namespace quelm {

namespace {

using journal::TextSource;

std::optional<TextRope> copyOf(const TextRope& text, const TextSource& source) {
    if (!isRangeOfCharacters(text, source.location, source.length))
        return std::nullopt;
    return text.slice({source.location, source.length});
}

std::optional<TextRope> textOf(const TextSource& source, const TextRope& removed, const TextRope& file) {
    switch (source.origin) {
    case TextSource::Origin::literal:
        if (!utf8::isValid(source.bytes.view()))
            return std::nullopt;
        return TextRope(source.bytes);
    case TextSource::Origin::removed:
        return copyOf(removed, source);
    case TextSource::Origin::file:
        return copyOf(file, source);
    }
    return std::nullopt;
}

} // namespace

bool isBetweenCharacters(const TextRope& text, std::int64_t byteOffset) {
    if (byteOffset < 0 || byteOffset > text.byteCount())
        return false;
    if (byteOffset == 0 || byteOffset == text.byteCount())
        return true;
    const TextRope::Chunk chunk = text.chunkAfter(byteOffset);
    const char byte = chunk.bytes[static_cast<std::size_t>(byteOffset - chunk.location)];
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

bool isRangeOfCharacters(const TextRope& text, std::int64_t location, std::int64_t length) {
    // The length is compared first: the sum of two numbers of unknown size may not be one.
    return length >= 0 && length <= text.byteCount() && isBetweenCharacters(text, location) &&
           isBetweenCharacters(text, location + length);
}

std::expected<TextRope, ReplayError> assembleText(std::span<const TextSource> sources, const TextRope& removed,
                                                  const TextRope& file, std::int64_t longest) {
    TextRope whole;
    for (const TextSource& source : sources) {
        const std::optional<TextRope> text = textOf(source, removed, file);
        if (!text)
            return std::unexpected(ReplayError::impossible);
        if (text->byteCount() > longest - whole.byteCount())
            return std::unexpected(ReplayError::tooLarge);
        whole = whole + *text;
    }
    return whole;
}

} // namespace quelm
