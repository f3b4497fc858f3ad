#include "Tests/JSONCore/Support/JSONText.h"

#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONSerializer.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

namespace quelm::test {

TextRope rope(std::string_view text) {
    return TextRope(SharedText(text));
}

JSONTree parsed(std::string_view text) {
    auto tree = JSONParser::parse(rope(text));
    if (!tree) {
        std::fprintf(stderr, "not valid JSON: %.*s\n%s\n", static_cast<int>(text.size()), text.data(),
                     tree.error().errorDescription().c_str());
        std::abort();
    }
    return *std::move(tree);
}

JSONParseError parseError(std::string_view text) {
    const auto tree = JSONParser::parse(rope(text));
    if (tree) {
        ADD_FAILURE() << "parsed without an error: " << text;
        return {};
    }
    return tree.error();
}

std::string written(const JSONTree& tree, const JSONStyle& style) {
    return std::string(JSONSerializer::serialize(tree, std::nullopt, style).view());
}

std::string written(const JSONTree& tree, NodeID from, const JSONStyle& style) {
    return std::string(JSONSerializer::serialize(tree, from, style).view());
}

NodeID nodeAt(const JSONTree& tree, std::initializer_list<std::int64_t> positions) {
    NodeID node = tree.root();
    for (const std::int64_t position : positions)
        node = tree.children(node)[position];
    return node;
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

} // namespace quelm::test
