#include "Quelm/Recovery/WholeContent.h"

#include "JSONCore/JSONSerializer.h"

#include <cstddef>
#include <string_view>

namespace quelm {

namespace {

/// Thrown out of the serialiser at the first difference.
struct Difference {};

/// Whether the text is the tree in the style, byte by byte.
bool isTextOfTree(const TextRope& text, const JSONTree& tree, const JSONStyle& style) {
    std::int64_t position = 0;
    try {
        JSONSerializer::serialize(tree, std::nullopt, style, [&](std::string_view bytes) {
            const ByteRange range{position, static_cast<std::int64_t>(bytes.size())};
            if (range.end() > text.byteCount())
                throw Difference();
            text.forEachChunk(range, [&](std::string_view chunk) {
                if (!bytes.starts_with(chunk))
                    throw Difference();
                bytes.remove_prefix(chunk.size());
            });
            position = range.end();
        });
    } catch (const Difference&) {
        return false;
    }
    return position == text.byteCount();
}

} // namespace

journal::Replace wholeContent(const JSONContent& content, std::int64_t numberBefore, std::int64_t number,
                              TextSources& sources) {
    journal::Replace record{.numberBefore = numberBefore,
                            .number = number,
                            .style = content.style,
                            .hasText = content.text.has_value(),
                            .hasTree = content.tree.has_value(),
                            .isTextMadeOfTree = false,
                            .text = {}};
    // A style that sorts writes members in another order than the tree has them. Otherwise the text tells it all.
    record.isTextMadeOfTree = content.text && content.tree && content.style.sortsKeys() &&
                              isTextOfTree(*content.text, *content.tree, content.style);
    if (content.tree && (!content.text || record.isTextMadeOfTree)) {
        const SharedText json = JSONSerializer::serialize(*content.tree, std::nullopt, JSONStyle::compact());
        record.text.push_back(
            {.origin = journal::TextSource::Origin::literal, .bytes = json, .location = 0, .length = 0});
    } else if (content.text) {
        record.text = sources.describe(*content.text, {});
    }
    return record;
}

} // namespace quelm
