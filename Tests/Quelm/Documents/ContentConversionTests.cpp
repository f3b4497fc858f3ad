#include "JSONCore/JSONSerializer.h"
#include "Quelm/Documents/ContentConversion.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <gtest/gtest.h>
#include <new>
#include <string>

namespace quelm {
namespace {

using Indent = JSONStyle::Indent;

JSONContent contentOf(std::string_view text) {
    return JSONContent::fromText(TextRope(SharedText(text)));
}

/// As the text editor leaves it behind.
JSONContent typed(std::string_view text) {
    JSONContent content;
    content.text = TextRope(SharedText(text));
    return content;
}

/// As the tree editor leaves it behind.
JSONContent edited(std::string_view text) {
    JSONContent content = contentOf(text);
    content.text.reset();
    return content;
}

std::string textOf(const JSONContent& content) {
    return content.text ? std::string(content.text->contiguous().view()) : "no text";
}

std::stop_token stopped() {
    std::stop_source source;
    source.request_stop();
    return source.get_token();
}

/// What is written, piece by piece.
struct Pieces {
    std::string bytes;
    int count = 0;
    std::function<bool(std::string_view)> take = [this](std::string_view piece) {
        bytes += piece;
        ++count;
        return true;
    };
};

TEST(ContentConversionTests, ATextThatIsThereIsKept) {
    for (const char* text : {"[ 1 ,2]", "[1", "", "\xEF\xBB\xBF{}\r\n"}) {
        const JSONContent content = contentOf(text);
        const auto result = ContentConversion::toText(content, {});
        ASSERT_TRUE(result) << text;
        EXPECT_TRUE(result->text->isSameValue(*content.text));
        EXPECT_EQ(result->tree.has_value(), content.tree.has_value());
        EXPECT_EQ(result->parseError, content.parseError);
        EXPECT_EQ(result->style, content.style);
    }
}

TEST(ContentConversionTests, ATreeBecomesTextInTheContentsOwnStyle) {
    JSONContent content = edited(R"({"b":[1,"\u00f1\n"],"a":{}})");
    const auto textIn = [&](const JSONStyle& style) {
        content.style = style;
        const auto result = ContentConversion::toText(content, {});
        EXPECT_TRUE(result->tree->isSameValue(*content.tree));
        return textOf(*result);
    };
    EXPECT_EQ(textIn(JSONStyle::compact()), "{\"b\":[1,\"ñ\\n\"],\"a\":{}}");
    EXPECT_EQ(textIn(JSONStyle::pretty(Indent::tab, false)),
              "{\n\t\"b\": [\n\t\t1,\n\t\t\"ñ\\n\"\n\t],\n\t\"a\": {}\n}\n");
    EXPECT_EQ(textIn(JSONStyle::pretty(Indent::twoSpaces, true)),
              "{\n  \"a\": {},\n  \"b\": [\n    1,\n    \"ñ\\n\"\n  ]\n}\n");
}

TEST(ContentConversionTests, ALongTreeBecomesTheTextThatTheSerializerWrites) {
    const JSONContent content = edited(arrayOfZeros(400'000));
    for (const JSONStyle& style : {JSONStyle::compact(), JSONStyle::pretty(Indent::fourSpaces, false)}) {
        JSONContent styled = content;
        styled.style = style;
        const auto result = ContentConversion::toText(styled, {});
        ASSERT_TRUE(result);
        EXPECT_TRUE(result->text->contiguous().view() ==
                    JSONSerializer::serialize(*content.tree, std::nullopt, style).view());
    }
}

TEST(ContentConversionTests, AContentOfNothingStaysNothing) {
    EXPECT_FALSE(ContentConversion::toText(JSONContent(), {})->text);
    EXPECT_FALSE(ContentConversion::toTree(JSONContent(), {})->tree);
    EXPECT_FALSE(ContentConversion::reformat(JSONContent(), JSONStyle::compact(), {})->text);
    Pieces pieces;
    EXPECT_TRUE(ContentConversion::write(JSONContent(), JSONStyle::compact(), pieces.take, {}));
    EXPECT_EQ(pieces.bytes, "");
}

TEST(ContentConversionTests, ATextIsParsedAndStays) {
    JSONContent content = typed("{\"a\" : 1}");
    content.parseError = JSONParseError{.message = "de antes", .offset = 1, .line = 1, .column = 1};
    const auto result = ContentConversion::toTree(content, {});
    ASSERT_TRUE(result);
    EXPECT_EQ(textOf(*result), "{\"a\" : 1}");
    ASSERT_TRUE(result->tree);
    EXPECT_EQ(result->tree->nodeCount(), 2);
    EXPECT_FALSE(result->parseError);
    EXPECT_EQ(result->style, content.style);
}

TEST(ContentConversionTests, ATreeThatIsThereIsKept) {
    const JSONContent content = contentOf("[1]");
    const auto result = ContentConversion::toTree(content, {});
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->tree->isSameValue(*content.tree));
    EXPECT_TRUE(result->text->isSameValue(*content.text));
}

TEST(ContentConversionTests, TextAndTreeShareTheMemoryOfATextInPieces) {
    const std::string front = "[\"" + std::string(10'000, 'a') + "\",\"";
    const TextRope text = TextRope(SharedText(front)) + TextRope(SharedText(std::string(10'000, 'b') + "\"]"));
    JSONContent content;
    content.text = text;
    const auto result = ContentConversion::toTree(content, {});
    ASSERT_TRUE(result);
    EXPECT_TRUE(*result->text == text);
    const NodeID last = *++result->tree->children(result->tree->root()).begin();
    EXPECT_EQ(result->tree->scalar(last).data(), result->text->contiguous().data() + front.size());
}

TEST(ContentConversionTests, ATextThatIsNotJSONIsAFailureWithItsPlace) {
    const JSONContent content = typed("[1,\n  x]");
    for (const auto& result :
         {ContentConversion::toTree(content, {}), ContentConversion::reformat(content, JSONStyle::compact(), {})}) {
        ASSERT_FALSE(result);
        EXPECT_FALSE(result.error().isCancellation());
        ASSERT_TRUE(result.error().parseError());
        EXPECT_EQ(result.error().parseError()->line, 2);
        EXPECT_EQ(result.error().parseError()->column, 3);
        EXPECT_EQ(result.error().description(), QStringLiteral("Línea 2, columna 3: Valor inesperado"));
    }
}

TEST(ContentConversionTests, ReformattingGivesTextTreeAndStyle) {
    const JSONStyle sorted = JSONStyle::pretty(Indent::twoSpaces, true);
    for (const JSONContent& content : {typed("{\"b\":1,\"a\":2}"), edited("{\"b\":1,\"a\":2}")}) {
        const auto result = ContentConversion::reformat(content, sorted, {});
        ASSERT_TRUE(result);
        EXPECT_EQ(textOf(*result), "{\n  \"a\": 2,\n  \"b\": 1\n}\n");
        ASSERT_TRUE(result->tree);
        EXPECT_EQ(result->tree->key(*result->tree->children(result->tree->root()).begin()), "b");
        EXPECT_EQ(result->style, sorted);
        EXPECT_FALSE(result->parseError);
    }
}

TEST(ContentConversionTests, ATreeThatWasEditedIsReformattedAndNotItsOldText) {
    JSONContent content = contentOf("[1]");
    content.tree = JSONTree(NodeKind::string, "nuevo");
    const auto result = ContentConversion::reformat(content, JSONStyle::compact(), {});
    ASSERT_TRUE(result);
    EXPECT_EQ(textOf(*result), "\"nuevo\"");
}

TEST(ContentConversionTests, WritingGivesTheBytesInPieces) {
    const std::string text = arrayOfZeros(1'500'000);
    for (const JSONContent& content : {typed(text), edited(text)}) {
        Pieces pieces;
        EXPECT_TRUE(ContentConversion::write(content, JSONStyle::compact(), pieces.take, {}));
        EXPECT_TRUE(pieces.bytes == text);
        EXPECT_GT(pieces.count, 1);
    }
}

TEST(ContentConversionTests, NothingIsWrittenOfATextThatIsNotJSON) {
    Pieces pieces;
    const auto written =
        ContentConversion::write(typed("[" + arrayOfZeros(1'500'000)), JSONStyle::compact(), pieces.take, {});
    ASSERT_FALSE(written);
    EXPECT_TRUE(written.error().parseError());
    EXPECT_EQ(pieces.count, 0);
}

TEST(ContentConversionTests, WritingEndsWhenNoMoreIsWanted) {
    int count = 0;
    const auto takeOne = [&](std::string_view) { return ++count < 1; };
    EXPECT_TRUE(ContentConversion::write(edited(arrayOfZeros(1'500'000)), JSONStyle::compact(), takeOne, {}));
    EXPECT_EQ(count, 1);
}

TEST(ContentConversionTests, WhatIsStoppedIsCancelled) {
    const std::stop_token stop = stopped();
    const std::string text = arrayOfZeros(1'500'000);
    for (const JSONContent& content : {typed("[1]"), typed("[x"), edited("[1]"), typed(text), edited(text)}) {
        Pieces pieces;
        const auto isCancelled = [](const auto& result) { return !result && result.error().isCancellation(); };
        EXPECT_TRUE(isCancelled(ContentConversion::toText(content, stop)));
        EXPECT_TRUE(isCancelled(ContentConversion::reformat(edited("[1]"), JSONStyle::compact(), stop)));
        EXPECT_TRUE(isCancelled(ContentConversion::write(edited("[1]"), JSONStyle::compact(), pieces.take, stop)));
        EXPECT_EQ(pieces.count, 0);
    }
    EXPECT_TRUE(ContentConversion::toTree(typed(text), stop).error().isCancellation());
    EXPECT_TRUE(ContentConversion::toTree(contentOf("[1]"), stop).error().isCancellation());
    EXPECT_TRUE(ContentConversion::toTree(typed("[x"), stop).error().isCancellation());
}

TEST(ContentConversionTests, AStopAmidTheWritingCancelsAlsoAtTheLastPiece) {
    for (const std::int64_t count : {1'500'000, 10}) {
        std::stop_source source;
        int taken = 0;
        const auto take = [&](std::string_view) {
            ++taken;
            return source.request_stop();
        };
        const auto written =
            ContentConversion::write(edited(arrayOfZeros(count)), JSONStyle::compact(), take, source.get_token());
        ASSERT_FALSE(written);
        EXPECT_TRUE(written.error().isCancellation());
        EXPECT_EQ(taken, 1);
    }
}

TEST(ContentConversionTests, ALackOfMemoryIsAFailureInWords) {
    const auto take = [](std::string_view) -> bool { throw std::bad_alloc(); };
    const auto written = ContentConversion::write(edited("[1]"), JSONStyle::compact(), take, {});
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), ConversionError::outOfMemory());
    EXPECT_FALSE(written.error().isCancellation());
    EXPECT_FALSE(written.error().parseError());
    EXPECT_EQ(written.error().description(), QStringLiteral("No hay memoria suficiente para convertir el documento."));
}

TEST(ContentConversionTests, ErrorsAreEqualWhenAllOfThemIs) {
    const JSONParseError error{.message = "Valor inesperado", .offset = 1, .line = 1, .column = 2};
    EXPECT_EQ(ConversionError(error), ConversionError(error));
    EXPECT_NE(ConversionError(error), ConversionError::outOfMemory());
    EXPECT_TRUE(ConversionError::cancelled().isCancellation());
    JSONParseError almost = JSONParseError::cancelled();
    almost.line = 1;
    EXPECT_FALSE(ConversionError(almost).isCancellation());
}

} // namespace
} // namespace quelm
