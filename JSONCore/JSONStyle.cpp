#include "JSONCore/JSONStyle.h"

#include <algorithm>
#include <string>

namespace quelm {

std::optional<JSONStyle::Indent> JSONStyle::indentFromRawValue(std::string_view rawValue) {
    const auto found =
        std::ranges::find(allIndents, rawValue, [](Indent indent) { return JSONStyle::rawValue(indent); });
    return found == allIndents.end() ? std::nullopt : std::optional(*found);
}

JSONStyle JSONStyle::detect(std::string_view text) {
    constexpr std::size_t examined = 65'536;
    text = text.substr(0, examined);
    bool hasUnindentedLine = false;
    // The first line normally holds only the opening bracket.
    for (std::size_t lineFeed = text.find('\n'); lineFeed != std::string_view::npos;
         lineFeed = text.find('\n', lineFeed + 1)) {
        std::size_t spaces = 0;
        std::size_t tabs = 0;
        std::size_t at = lineFeed + 1;
        for (; at < text.size() && (text[at] == ' ' || text[at] == '\t' || text[at] == '\r'); ++at) {
            spaces += text[at] == ' ';
            tabs += text[at] == '\t';
        }
        if (at == text.size())
            break;
        if (text[at] == '\n')
            continue;
        if (tabs > 0)
            return pretty(Indent::tab, false);
        if (spaces > 0)
            return pretty(spaces == 4 ? Indent::fourSpaces : Indent::twoSpaces, false);
        hasUnindentedLine = true;
    }
    return hasUnindentedLine ? pretty(Indent::twoSpaces, false) : compact();
}

} // namespace quelm

std::size_t std::hash<quelm::JSONStyle>::operator()(const quelm::JSONStyle& style) const noexcept {
    const auto indent = style.prettyIndent();
    if (!indent)
        return 0;
    const std::size_t name = std::hash<std::string_view>{}(quelm::JSONStyle::rawValue(*indent));
    return 1 + 31 * (name + 31 * static_cast<std::size_t>(style.sortsKeys()));
}
