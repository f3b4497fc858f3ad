#include "Quelm/Documents/ContentConversion.h"

#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONSerializer.h"

#include <new>
#include <optional>
#include <type_traits>
#include <utility>

namespace quelm {

namespace {

/// Thrown out of the serialiser: there is no other way to end it early.
struct EndOfWriting {};

using ContentConversion::Result;

/// The result of a conversion that may lack memory or be called off until the last moment.
template <class Convert>
std::invoke_result_t<Convert&> completed(Convert convert, const std::stop_token& stop) {
    try {
        std::invoke_result_t<Convert&> result = convert();
        if (stop.stop_requested())
            return std::unexpected(ConversionError::cancelled());
        return result;
    } catch (const std::bad_alloc&) {
        return std::unexpected(ConversionError::outOfMemory());
    } catch (const EndOfWriting&) {
        return std::unexpected(ConversionError::cancelled());
    }
}

/// Ends with EndOfWriting when stop is requested.
TextRope textOf(const JSONTree& tree, const JSONStyle& style, const std::stop_token& stop) {
    // Made in one piece, with room enough at once: growing would hold it twice.
    TextBuilder builder(JSONSerializer::expectedSize(tree, std::nullopt, style));
    JSONSerializer::serialize(tree, std::nullopt, style, [&](std::string_view bytes) {
        if (stop.stop_requested())
            throw EndOfWriting();
        builder.append(bytes);
    });
    TextRope text(builder.finish());
    text.prepare();
    return text;
}

/// The content with the tree of its text, when it has a text and no tree.
Result parsed(JSONContent content, const std::stop_token& stop) {
    if (content.tree || !content.text)
        return content;
    // Of a text in pieces the parser needs a copy in one: text and tree are to share that memory then.
    const SharedText whole = content.text->contiguous();
    if (content.text->chunkAfter(0).bytes.data() != whole.data())
        content.text = TextRope(whole);
    std::expected<JSONTree, JSONParseError> tree = JSONParser::parse(*content.text, stop);
    if (!tree)
        return std::unexpected(ConversionError(std::move(tree.error())));
    content.tree = *std::move(tree);
    content.parseError.reset();
    return content;
}

Result withTree(JSONContent content, const std::stop_token& stop) {
    Result result = parsed(std::move(content), stop);
    if (result && result->tree)
        ContentConversion::prepareForDisplay(*result->tree);
    return result;
}

} // namespace

void ContentConversion::prepareForDisplay(const JSONTree& tree) {
    if (tree.kind(tree.root()) == NodeKind::object)
        tree.prepareKeyIndex(tree.root());
}

Result ContentConversion::toText(JSONContent content, const std::stop_token& stop) {
    return completed(
        [&]() -> Result {
            if (content.text)
                content.text->prepare();
            else if (content.tree)
                content.text = textOf(*content.tree, content.style, stop);
            return std::move(content);
        },
        stop);
}

Result ContentConversion::toTree(JSONContent content, const std::stop_token& stop) {
    return completed([&] { return withTree(std::move(content), stop); }, stop);
}

Result ContentConversion::reformat(JSONContent content, const JSONStyle& style, const std::stop_token& stop) {
    return completed(
        [&] {
            Result result = withTree(std::move(content), stop);
            if (result && result->tree) {
                result->text = textOf(*result->tree, style, stop);
                result->style = style;
            }
            return result;
        },
        stop);
}

std::expected<void, ConversionError> ContentConversion::write(const JSONContent& content, const JSONStyle& style,
                                                              const std::function<bool(std::string_view)>& take,
                                                              const std::stop_token& stop) {
    return completed(
        [&]() -> std::expected<void, ConversionError> {
            const Result source = parsed(content, stop);
            if (!source)
                return std::unexpected(source.error());
            if (!source->tree)
                return {};
            const auto takeWhileWanted = [&](std::string_view bytes) {
                if (stop.stop_requested() || !take(bytes))
                    throw EndOfWriting();
            };
            try {
                JSONSerializer::serialize(*source->tree, std::nullopt, style, takeWhileWanted);
            } catch (const EndOfWriting&) {
                // Whoever wants no more knows it; a stop is seen to by the caller.
            }
            return {};
        },
        stop);
}

} // namespace quelm
