#include "Quelm/Documents/JSONDocument.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace quelm {
namespace {

using Preferences::InitialMode;

JSONContent contentOf(std::string_view text) {
    return JSONContent::fromText(TextRope(SharedText(text)));
}

std::string bytesOf(const JSONContent& content) {
    return std::string(JSONDocument::fileContents(content).view());
}

class JSONDocumentTests : public testing::Test {
protected:
    TemporaryPreferences preferences_;
    JSONDocument document_;
};

TEST_F(JSONDocumentTests, ANewDocumentIsAnEmptyObjectShownAsATree) {
    EXPECT_EQ(document_.revision(), 0);
    EXPECT_EQ(document_.mode(), EditorMode::tree);
    ASSERT_TRUE(document_.content().tree);
    EXPECT_EQ(document_.content().tree->kind(document_.content().tree->root()), NodeKind::object);
    EXPECT_FALSE(document_.content().text);
    EXPECT_EQ(document_.baseName(), QStringLiteral("Sin título"));
}

TEST_F(JSONDocumentTests, ItReadsAndWritesJSONFiles) {
    EXPECT_EQ(JSONDocument::readableContentTypes(), QStringList{QStringLiteral("application/json")});
    EXPECT_EQ(JSONDocument::writableContentTypes(), JSONDocument::readableContentTypes());
    EXPECT_EQ(JSONDocument::fileNamePattern(), QStringLiteral("*.json"));
}

TEST_F(JSONDocumentTests, TheConfigurationStaysTheOneItWasMadeWith) {
    const auto configuration = std::make_shared<DocumentConfiguration>(QStringLiteral("/datos/a.json"));
    const JSONDocument document(configuration);
    EXPECT_EQ(&document.configuration(), configuration.get());
    EXPECT_EQ(document.baseName(), QStringLiteral("a"));
}

TEST_F(JSONDocumentTests, ApplyingInstallsContentThenModeThenRevision) {
    std::vector<std::string> events;
    QObject::connect(&document_, &JSONDocument::contentChanged, [&] {
        EXPECT_EQ(document_.mode(), EditorMode::tree);
        EXPECT_EQ(document_.revision(), 0);
        events.emplace_back("content");
    });
    QObject::connect(&document_, &JSONDocument::modeChanged, [&] {
        EXPECT_TRUE(document_.content().parseError);
        EXPECT_EQ(document_.revision(), 0);
        events.emplace_back("mode");
    });
    QObject::connect(&document_, &JSONDocument::revisionChanged, [&] { events.emplace_back("revision"); });
    document_.apply(contentOf("[1 2]"));
    EXPECT_THAT(events, testing::ElementsAre("content", "mode", "revision"));
    EXPECT_EQ(document_.revision(), 1);
}

TEST_F(JSONDocumentTests, TheModeIsAnnouncedOnlyWhenItChanges) {
    QSignalSpy modes(&document_, &JSONDocument::modeChanged);
    document_.apply(contentOf("[]"));
    EXPECT_EQ(modes.count(), 0);
    document_.apply(contentOf("["));
    document_.apply(contentOf("{"));
    EXPECT_EQ(modes.count(), 1);
    document_.apply(contentOf("{}"));
    EXPECT_EQ(modes.count(), 2);
    EXPECT_EQ(document_.mode(), EditorMode::tree);
}

TEST_F(JSONDocumentTests, EveryApplyAddsOneToTheRevisionEvenOfTheSameContent) {
    const JSONContent content = contentOf("[1]");
    document_.apply(content);
    QSignalSpy contents(&document_, &JSONDocument::contentChanged);
    QSignalSpy revisions(&document_, &JSONDocument::revisionChanged);
    document_.apply(content);
    EXPECT_EQ(contents.count(), 0);
    EXPECT_EQ(revisions.count(), 1);
    EXPECT_EQ(document_.revision(), 2);
}

TEST_F(JSONDocumentTests, AContentSetAgainAnnouncesNothing) {
    const JSONContent content = contentOf("[1]");
    document_.setContent(content);
    QSignalSpy contents(&document_, &JSONDocument::contentChanged);
    document_.setContent(content);
    EXPECT_EQ(contents.count(), 0);
    JSONContent other = content;
    other.style = JSONStyle::pretty(JSONStyle::Indent::tab, false);
    document_.setContent(other);
    EXPECT_EQ(contents.count(), 1);
    document_.setContent(contentOf("[2]"));
    EXPECT_EQ(contents.count(), 2);
    EXPECT_EQ(document_.revision(), 0);
}

struct ModeCase {
    InitialMode preference;
    const char* text;
    EditorMode mode;
};

class JSONDocumentModeTests : public JSONDocumentTests, public testing::WithParamInterface<ModeCase> {};

TEST_P(JSONDocumentModeTests, TheEditorFollowsPreferenceAndValidity) {
    Preferences::setInitialMode(GetParam().preference);
    document_.apply(contentOf(GetParam().text));
    EXPECT_EQ(document_.mode(), GetParam().mode);
}

INSTANTIATE_TEST_SUITE_P(Modes, JSONDocumentModeTests,
                         testing::Values(ModeCase{InitialMode::automatic, "{}", EditorMode::tree},
                                         ModeCase{InitialMode::automatic, "{", EditorMode::text},
                                         ModeCase{InitialMode::tree, "[1]", EditorMode::tree},
                                         ModeCase{InitialMode::tree, "[1", EditorMode::text},
                                         ModeCase{InitialMode::text, "[1]", EditorMode::text},
                                         ModeCase{InitialMode::text, "[1", EditorMode::text},
                                         ModeCase{InitialMode::automatic, "", EditorMode::text}));

TEST_F(JSONDocumentTests, AnOpenDocumentKeepsItsEditorWhenThePreferenceChanges) {
    document_.apply(contentOf("{}"));
    Preferences::setInitialMode(InitialMode::text);
    EXPECT_EQ(document_.mode(), EditorMode::tree);
    document_.apply(contentOf("{}"));
    EXPECT_EQ(document_.mode(), EditorMode::text);
}

TEST_F(JSONDocumentTests, AnEmptyFileOpensAsTextWithTheParsersError) {
    auto content = JSONDocument::read(SharedText());
    ASSERT_TRUE(content);
    document_.apply(*std::move(content));
    EXPECT_EQ(document_.mode(), EditorMode::text);
    ASSERT_TRUE(document_.content().parseError);
    EXPECT_EQ(document_.content().parseError->errorDescription(), "Línea 1, columna 1: Se esperaba un valor");
    EXPECT_EQ(bytesOf(document_.snapshot()), "");
}

TEST_F(JSONDocumentTests, BytesThatAreNotUTF8CannotBeRead) {
    const auto content = JSONDocument::read(SharedText("{\"a\":\"\xff\"}"));
    ASSERT_FALSE(content);
    EXPECT_EQ(content.error(), JSONParseError::notUTF8());
    EXPECT_EQ(content.error().message, "El archivo no está codificado en UTF-8");
}

TEST_F(JSONDocumentTests, AReadFileIsWrittenBackByteForByte) {
    for (const char* text : {"{\"a\" : 1.0e+2 ,\r\n\t\"b\":[ ]}", "\xEF\xBB\xBF[1]", "[1 2", "  ", "\"\\u00e1\"\n\n"}) {
        auto content = JSONDocument::read(SharedText(text));
        ASSERT_TRUE(content) << text;
        document_.apply(*std::move(content));
        EXPECT_EQ(bytesOf(document_.snapshot()), text);
    }
}

TEST_F(JSONDocumentTests, AContentWithoutTextIsWrittenFromItsTreeInItsStyle) {
    JSONContent content = contentOf("{\"a\":[1,2]}");
    content.text.reset();
    content.style = JSONStyle::pretty(JSONStyle::Indent::fourSpaces, false);
    EXPECT_EQ(bytesOf(content), "{\n    \"a\": [\n        1,\n        2\n    ]\n}\n");
    content.style = JSONStyle::compact();
    EXPECT_EQ(bytesOf(content), "{\"a\":[1,2]}");
}

TEST_F(JSONDocumentTests, AContentWithNeitherTextNorTreeIsNoBytes) {
    EXPECT_EQ(bytesOf(JSONContent()), "");
}

TEST_F(JSONDocumentTests, ANewDocumentIsWrittenAsAnEmptyObject) {
    EXPECT_EQ(bytesOf(document_.snapshot()), "{}\n");
}

TEST_F(JSONDocumentTests, TextAndFileShareTheMemoryTheyWereReadInto) {
    TextBuilder builder;
    builder.append("[1,2,3]");
    const SharedText bytes = builder.finish();
    const auto content = JSONDocument::read(bytes);
    ASSERT_TRUE(content);
    EXPECT_EQ(JSONDocument::fileContents(*content).data(), bytes.data());
}

} // namespace
} // namespace quelm
