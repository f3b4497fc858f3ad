#include "Fuzzing/OpeningTarget.h"

#include "Fuzzing/ContentCheck.h"
#include "JSONCore/JSONSerializer.h"
#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Documents/ParseErrorText.h"
#include "TextCore/Check.h"
#include "TextCore/UTF8.h"

#include <array>

namespace quelm::fuzzing {

namespace {

JSONStyle styleOf(char choice) {
    using enum JSONStyle::Indent;
    constexpr std::array styles{JSONStyle::compact(), JSONStyle::pretty(twoSpaces, false),
                                JSONStyle::pretty(tab, false), JSONStyle::pretty(fourSpaces, true)};
    return styles[static_cast<unsigned char>(choice) % styles.size()];
}

// What the formatting of a valid text is read back as is the same tree.
void checkFormatting(const JSONContent& content, const JSONStyle& style) {
    const auto formatted = ContentConversion::reformat(content, style, {});
    require(formatted && formatted->text && formatted->tree, "a tree can be formatted");
    checkContent(*formatted);
    const auto again = JSONDocument::read(JSONDocument::fileContents(*formatted));
    require(again && again->tree, "what was formatted is valid");
    const auto rewritten = ContentConversion::reformat(*again, style, {});
    require(rewritten && rewritten->text, "what was formatted can be formatted");
    require(rewritten->text->contiguous().view() == formatted->text->contiguous().view(), "formatting is done at once");
    if (!style.sortsKeys())
        require(*again->tree == *content.tree, "formatting keeps the tree");
}

void checkWriting(const JSONContent& content, const JSONStyle& style) {
    std::string written;
    const auto take = [&](std::string_view piece) {
        written += piece;
        return true;
    };
    require(ContentConversion::write(content, style, take, {}).has_value(), "a tree can be written");
    require(written == JSONSerializer::serialize(*content.tree, {}, style).view(), "pieces make the whole");
}

} // namespace

void feedOpening(std::string_view input) {
    if (input.empty())
        return;
    const JSONStyle style = styleOf(input.front());
    const std::string_view file = input.substr(1);

    const auto content = JSONDocument::read(SharedText(file));
    require(content.has_value() == utf8::isValid(file), "what is UTF-8 can be opened, nothing else");
    if (!content) {
        require(!parseErrorText(content.error()).isEmpty(), "an error has words");
        return;
    }
    checkContent(*content);
    require(JSONDocument::fileContents(*content).view() == file, "opening and saving changes nothing");
    require(content->tree.has_value() != content->parseError.has_value(), "a text is valid or has an error");

    const auto text = ContentConversion::toText(*content, {});
    require(text && text->text && text->text->contiguous().view() == file, "the text is that of the file");
    const auto tree = ContentConversion::toTree(*content, {});
    require(tree.has_value() == content->tree.has_value(), "what is valid has a tree");
    if (!tree) {
        require(!tree.error().description().isEmpty(), "an error has words");
        return;
    }
    ContentConversion::prepareForDisplay(*tree->tree);
    checkFormatting(*content, style);
    checkWriting(*content, style);
}

std::string openingInput(unsigned char style, std::string_view file) {
    return std::string(1, static_cast<char>(style)) + std::string(file);
}

} // namespace quelm::fuzzing
