#include "JSONCore/JSONSerializer.h"
#include "Tests/JSONCore/Models/NaiveParser.h"
#include "Tests/JSONCore/Models/NaiveWriter.h"
#include "Tests/JSONCore/Support/AllStyles.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"
#include "Tests/JSONCore/Support/RandomJSON.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

using Indent = JSONStyle::Indent;
using test::allStyles;
using test::parsed;
using test::Random;
using test::written;

TEST(JSONSerializerModel, WritesTheSameBytesAsTheModel) {
    test::forEachRound(1'000, [](Random& random) {
        const std::string text = test::randomJSON(random, {1 + random.below(200), 1 + random.below(40), true});
        const JSONTree tree = parsed(text);
        const auto model = test::naiveParse(text);
        ASSERT_TRUE(model);
        for (const JSONStyle& style : allStyles()) {
            ASSERT_EQ(written(tree, style), test::naiveText(*model, model->root(), style));
            const NodeID some{static_cast<std::int32_t>(1 + random.below(tree.nodeCount()))};
            ASSERT_EQ(written(tree, some, style), test::naiveText(*model, some, style));
        }
    });
}

TEST(JSONSerializerModel, WritesTheSameBytesOfLargeTrees) {
    test::forEachRound(3, [](Random& random) {
        const std::string text = test::randomJSON(random, {60'000, random.oneIn(2) ? 40'000 : 300, random.oneIn(2)});
        const JSONTree tree = parsed(text);
        const auto model = test::naiveParse(text);
        ASSERT_TRUE(model);
        for (const JSONStyle& style : allStyles())
            ASSERT_TRUE(written(tree, style) == test::naiveText(*model, model->root(), style));
    });
}

TEST(JSONSerializerModel, WhatIsWrittenParsesToAnEqualTree) {
    test::forEachRound(1'000, [](Random& random) {
        const JSONTree tree = parsed(test::randomJSON(random, {1 + random.below(300), 1 + random.below(60), true}));
        for (const JSONStyle& style : allStyles()) {
            const JSONTree again = parsed(written(tree, style));
            if (!style.sortsKeys()) {
                ASSERT_EQ(again, tree);
            }
            ASSERT_EQ(again.nodeCount(), tree.nodeCount());
            ASSERT_EQ(written(again, style), written(tree, style));
        }
    });
}

TEST(JSONSerializerModel, ItsOwnStyleIsDetectedInPrettyOutput) {
    test::forEachRound(500, [](Random& random) {
        const JSONTree tree = parsed("[" + test::randomJSON(random, {20, 5, true}) + "]");
        for (const JSONStyle& style : allStyles()) {
            const JSONStyle unsorted = style.isCompact() ? style : JSONStyle::pretty(*style.prettyIndent(), false);
            ASSERT_EQ(JSONStyle::detect(written(tree, style)), unsorted);
        }
    });
}

TEST(JSONSerializerModel, CompactOutputHasNoWhiteSpaceOutsideStrings) {
    test::forEachRound(500, [](Random& random) {
        const std::string text = written(parsed(test::randomJSON(random, {100, 20, true})));
        bool isInString = false;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (isInString && text[i] == '\\')
                ++i;
            else if (text[i] == '"')
                isInString = !isInString;
            else if (!isInString) {
                ASSERT_EQ(std::string_view(" \t\n\r").find(text[i]), std::string_view::npos) << text;
            }
        }
    });
}

} // namespace
} // namespace quelm
