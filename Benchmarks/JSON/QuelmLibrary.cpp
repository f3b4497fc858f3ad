#include "Benchmarks/JSON/QuelmLibrary.h"

#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONSerializer.h"
#include "TextCore/Check.h"

#include <utility>

namespace quelm::bench {

namespace {

JSONStyle style(WriteLayout layout) {
    if (layout == WriteLayout::compact)
        return JSONStyle::compact();
    return JSONStyle::pretty(JSONStyle::Indent::twoSpaces, layout == WriteLayout::sorted);
}

} // namespace

QuelmLibrary::QuelmLibrary(SharedText text) : text_(std::move(text)) {
    static_assert(SharedText::padding >= JSONLibrary::padding);
    require(text_.isPadded(), "text to measure on is padded");
}

bool QuelmLibrary::parse(std::string_view paddedText) {
    require(paddedText.data() == text_.data() && paddedText.size() == text_.size(), "the text is the library's own");
    auto parsed = JSONParser::parse(TextRope(text_));
    if (!parsed)
        return false;
    tree_ = std::move(*parsed);
    return true;
}

bool QuelmLibrary::write(WriteLayout layout) {
    output_ = JSONSerializer::serialize(*tree_, std::nullopt, style(layout));
    return true;
}

} // namespace quelm::bench
