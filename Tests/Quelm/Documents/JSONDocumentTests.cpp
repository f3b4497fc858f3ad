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
    TemporaryPreferences preferences;
    JSONDocument document;
};

TEST_F(JSONDocumentTests, ANewDocumentIsAnEmptyObjectShownAsATree) {
    EXPECT_EQ(document.revision(), 0);
    EXPECT_EQ(document.mode(), EditorMode::tree);
    ASSERT_TRUE(document.content().tree);
    EXPECT_EQ(document.content().tree->kind(document.content().tree->root()), NodeKind::object);
    EXPECT_FALSE(document.content().text);
    EXPECT_EQ(document.baseName(), QStringLiteral("Sin título"));
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
    QObject::connect(&document, &JSONDocument::contentChanged, [&] {
        EXPECT_EQ(document.mode(), EditorMode::tree);
        EXPECT_EQ(document.revision(), 0);
        events.emplace_back("content");
    });
    QObject::connect(&document, &JSONDocument::modeChanged, [&] {
        EXPECT_TRUE(document.content().parseError);
        EXPECT_EQ(document.revision(), 0);
        events.emplace_back("mode");
    });
    QObject::connect(&document, &JSONDocument::revisionChanged, [&] { events.emplace_back("revision"); });
    document.apply(contentOf("[1 2]"));
    EXPECT_THAT(events, testing::ElementsAre("content", "mode", "revision"));
    EXPECT_EQ(document.revision(), 1);
}

TEST_F(JSONDocumentTests, TheModeIsAnnouncedOnlyWhenItChanges) {
    QSignalSpy modes(&document, &JSONDocument::modeChanged);
    document.apply(contentOf("[]"));
    EXPECT_EQ(modes.count(), 0);
    document.apply(contentOf("["));
    document.apply(contentOf("{"));
    EXPECT_EQ(modes.count(), 1);
    document.apply(contentOf("{}"));
    EXPECT_EQ(modes.count(), 2);
    EXPECT_EQ(document.mode(), EditorMode::tree);
}

TEST_F(JSONDocumentTests, EveryApplyAddsOneToTheRevisionEvenOfTheSameContent) {
    const JSONContent content = contentOf("[1]");
    document.apply(content);
    QSignalSpy contents(&document, &JSONDocument::contentChanged);
    QSignalSpy revisions(&document, &JSONDocument::revisionChanged);
    document.apply(content);
    EXPECT_EQ(contents.count(), 0);
    EXPECT_EQ(revisions.count(), 1);
    EXPECT_EQ(document.revision(), 2);
}

TEST_F(JSONDocumentTests, AContentSetAgainAnnouncesNothing) {
    const JSONContent content = contentOf("[1]");
    document.setContent(content);
    QSignalSpy contents(&document, &JSONDocument::contentChanged);
    document.setContent(content);
    EXPECT_EQ(contents.count(), 0);
    JSONContent other = content;
    other.style = JSONStyle::pretty(JSONStyle::Indent::tab, false);
    document.setContent(other);
    EXPECT_EQ(contents.count(), 1);
    document.setContent(contentOf("[2]"));
    EXPECT_EQ(contents.count(), 2);
    EXPECT_EQ(document.revision(), 0);
}

struct ModeCase {
    InitialMode preference;
    const char* text;
    EditorMode mode;
};

class JSONDocumentInitialModeTests : public JSONDocumentTests, public testing::WithParamInterface<ModeCase> {};

TEST_P(JSONDocumentInitialModeTests, TheEditorFollowsPreferenceAndValidity) {
    Preferences::setInitialMode(GetParam().preference);
    document.apply(contentOf(GetParam().text));
    EXPECT_EQ(document.mode(), GetParam().mode);
}

INSTANTIATE_TEST_SUITE_P(Modes, JSONDocumentInitialModeTests,
                         testing::Values(ModeCase{InitialMode::automatic, "{}", EditorMode::tree},
                                         ModeCase{InitialMode::automatic, "{", EditorMode::text},
                                         ModeCase{InitialMode::tree, "[1]", EditorMode::tree},
                                         ModeCase{InitialMode::tree, "[1", EditorMode::text},
                                         ModeCase{InitialMode::text, "[1]", EditorMode::text},
                                         ModeCase{InitialMode::text, "[1", EditorMode::text},
                                         ModeCase{InitialMode::automatic, "", EditorMode::text}));

TEST_F(JSONDocumentTests, AnOpenDocumentKeepsItsEditorWhenThePreferenceChanges) {
    document.apply(contentOf("{}"));
    Preferences::setInitialMode(InitialMode::text);
    EXPECT_EQ(document.mode(), EditorMode::tree);
    document.apply(contentOf("{}"));
    EXPECT_EQ(document.mode(), EditorMode::text);
}

TEST_F(JSONDocumentTests, AnEmptyFileOpensAsTextWithTheParsersError) {
    auto content = JSONDocument::read(SharedText());
    ASSERT_TRUE(content);
    document.apply(*std::move(content));
    EXPECT_EQ(document.mode(), EditorMode::text);
    ASSERT_TRUE(document.content().parseError);
    EXPECT_EQ(document.content().parseError->errorDescription(), "Línea 1, columna 1: Se esperaba un valor");
    EXPECT_EQ(bytesOf(document.snapshot()), "");
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
        document.apply(*std::move(content));
        EXPECT_EQ(bytesOf(document.snapshot()), text);
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
    EXPECT_EQ(bytesOf(document.snapshot()), "{}\n");
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
