#include "JSONCore/JSONContent.h"

#include "JSONCore/JSONParser.h"
#include "TextCore/UTF8.h"

#include <utility>

namespace quelm {

JSONContent JSONContent::empty() {
    return {.text = std::nullopt,
            .tree = JSONTree(NodeKind::object),
            .parseError = std::nullopt,
            .style = JSONStyle::pretty(JSONStyle::Indent::twoSpaces, false)};
}

JSONContent JSONContent::fromText(TextRope text, std::stop_token stop) {
    const SharedText whole = text.contiguous();
    JSONContent content{.text = TextRope(whole),
                        .tree = std::nullopt,
                        .parseError = std::nullopt,
                        .style = JSONStyle::detect(whole.view())};
    auto parsed = JSONParser::parse(*content.text, std::move(stop));
    if (parsed)
        content.tree = std::move(*parsed);
    else
        content.parseError = std::move(parsed.error());
    return content;
}

std::expected<JSONContent, JSONParseError> JSONContent::fromData(SharedText bytes, std::stop_token stop) {
    if (!utf8::isValid(bytes.view()))
        return std::unexpected(JSONParseError::notUTF8());
    return fromText(TextRope(std::move(bytes)), std::move(stop));
}

} // namespace quelm
