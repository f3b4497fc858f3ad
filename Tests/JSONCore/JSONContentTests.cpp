#include "JSONCore/JSONContent.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace quelm {
namespace {

using Indent = JSONStyle::Indent;
using test::rope;
using test::written;

TEST(JSONContent, OfANewDocumentIsAnEmptyObjectWithoutText) {
    const JSONContent content = JSONContent::empty();
    EXPECT_FALSE(content.text);
    EXPECT_FALSE(content.parseError);
    EXPECT_EQ(content.style, JSONStyle::pretty(Indent::twoSpaces, false));
    ASSERT_TRUE(content.tree);
    EXPECT_EQ(content.tree->kind(content.tree->root()), NodeKind::object);
    EXPECT_EQ(content.tree->scalar(content.tree->root()), "");
    EXPECT_EQ(content.tree->nodeCount(), 1);
}

TEST(JSONContent, KeepsTextTreeAndStyle) {
    const TextRope text = rope("{\n\t\"b\": 1,\n\t\"a\": [2]\n}\n");
    const JSONContent content = JSONContent::fromText(text);
    ASSERT_TRUE(content.text);
    EXPECT_EQ(*content.text, text);
    EXPECT_TRUE(content.text->contiguous().isSamePiece(text.contiguous())) << "nothing is copied";
    EXPECT_EQ(content.style, JSONStyle::pretty(Indent::tab, false));
    EXPECT_FALSE(content.parseError);
    ASSERT_TRUE(content.tree);
    EXPECT_EQ(written(*content.tree), R"({"b":1,"a":[2]})");
}

TEST(JSONContent, KeepsTextErrorAndStyleOfATextThatDoesNotParse) {
    const JSONContent content = JSONContent::fromText(rope("[\n    1,\n]"));
    ASSERT_TRUE(content.text);
    EXPECT_EQ(*content.text, rope("[\n    1,\n]"));
    EXPECT_FALSE(content.tree);
    EXPECT_EQ(content.style, JSONStyle::pretty(Indent::fourSpaces, false));
    EXPECT_EQ(content.parseError, (JSONParseError{"Valor inesperado", 9, 3, 1}));
}

TEST(JSONContent, OfAnEmptyTextIsAnErrorInCompactStyle) {
    const JSONContent content = JSONContent::fromText(TextRope());
    EXPECT_EQ(content.text, TextRope());
    EXPECT_FALSE(content.tree);
    EXPECT_EQ(content.parseError, (JSONParseError{"Se esperaba un valor", 0, 1, 1}));
    EXPECT_EQ(content.style, JSONStyle::compact());
}

TEST(JSONContent, OfAFileKeepsItsByteOrderMarkInTheText) {
    const auto content = JSONContent::fromData(SharedText(std::string_view("\uFEFF{\"a\":1}")));
    ASSERT_TRUE(content);
    EXPECT_EQ(content->text, rope("\uFEFF{\"a\":1}"));
    ASSERT_TRUE(content->tree);
    EXPECT_EQ(written(*content->tree), R"({"a":1})");
    EXPECT_EQ(content->style, JSONStyle::compact());
}

TEST(JSONContent, OfAFileThatDoesNotParseIsStillAContent) {
    const auto content = JSONContent::fromData(SharedText(std::string_view("\uFEFF{\"a\":é}")));
    ASSERT_TRUE(content);
    EXPECT_FALSE(content->tree);
    EXPECT_EQ(content->parseError, (JSONParseError{"Valor inesperado", 8, 1, 7}));
}

TEST(JSONContent, OfAFileThatIsNotUTF8IsAnError) {
    const std::string_view foreign[] = {
        "\xFF\xFE{\0}",     "\"caf\xE9\"",
        "\"\xC3\"",         "\"\xC0\xAF\"",
        "\"\xE0\x80\xAF\"", "\"\xED\xA0\x80\"",
        "\"\xED\xBF\xBF\"", "\"\xF4\x90\x80\x80\"",
        "\"\x80\"",         "\"\xF8\x88\x80\x80\x80\"",
        "\"\xE2\x82\"",     "{} \xE2\x82",
        "\xF0\x9F\x98",     "{}\xFE",
    };
    for (const std::string_view bytes : foreign) {
        const auto content = JSONContent::fromData(SharedText(bytes));
        ASSERT_FALSE(content) << testing::PrintToString(bytes);
        EXPECT_EQ(content.error(), (JSONParseError{"El archivo no está codificado en UTF-8", 0, 1, 1}));
    }
}

TEST(JSONContent, FindsAForeignByteFarIntoAFile) {
    std::string bytes = "[\"" + test::repeated("áéíóú ", 100'000) + "\"]";
    EXPECT_TRUE(JSONContent::fromData(SharedText(bytes)));
    bytes[bytes.size() - 4] = '\xFF';
    EXPECT_FALSE(JSONContent::fromData(SharedText(bytes)));
}

TEST(JSONContent, SharesTheMemoryOfAPaddedFile) {
    const SharedText bytes(std::string_view(R"({"clave":"un texto"})"));
    ASSERT_TRUE(bytes.isPadded());
    const auto content = JSONContent::fromData(bytes);
    ASSERT_TRUE(content && content->tree);
    EXPECT_EQ(content->text->contiguous().data(), bytes.data());
    const std::string_view scalar = content->tree->scalar(test::nodeAt(*content->tree, {0}));
    EXPECT_EQ(scalar, "un texto");
    EXPECT_TRUE(scalar.data() > bytes.data() && scalar.data() < bytes.data() + bytes.size());
}

TEST(JSONContent, ACancelledParseIsAnErrorOfTheContent) {
    std::stop_source source;
    source.request_stop();
    const std::string text = "[" + test::repeated("1,", 1'048'576) + "1]";
    const JSONContent content = JSONContent::fromText(rope(text), source.get_token());
    EXPECT_FALSE(content.tree);
    EXPECT_EQ(content.parseError, JSONParseError::cancelled());
    const auto fromFile = JSONContent::fromData(SharedText(text), source.get_token());
    ASSERT_TRUE(fromFile);
    EXPECT_EQ(fromFile->parseError, JSONParseError::cancelled());
    EXPECT_TRUE(JSONContent::fromText(rope("[1]"), source.get_token()).tree);
}

TEST(JSONContent, MayBeMadeOnOneThreadAndUsedOnAnother) {
    std::optional<JSONContent> content;
    std::jthread([&] { content = JSONContent::fromText(rope(R"({"a":[1,2],"b\n":"c"})")); }).join();
    ASSERT_TRUE(content && content->tree);
    content->tree->apply(TreeEdit::remove(test::nodeAt(*content->tree, {0, 0})));
    EXPECT_EQ(written(*content->tree), R"({"a":[2],"b\n":"c"})");
    EXPECT_EQ(*content->text, rope(R"({"a":[1,2],"b\n":"c"})"));
}

TEST(JSONContent, CopiesDoNotFollowEachOther) {
    JSONContent content = JSONContent::fromText(rope("[1,2]"));
    const JSONContent copy = content;
    content.tree->apply(TreeEdit::remove(test::nodeAt(*content.tree, {0})));
    content.text.reset();
    EXPECT_EQ(written(*content.tree), "[2]");
    EXPECT_EQ(written(*copy.tree), "[1,2]");
    EXPECT_TRUE(copy.text);
}

} // namespace
} // namespace quelm
