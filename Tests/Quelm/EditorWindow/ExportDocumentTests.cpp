#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/EditorWindow/ExportDocument.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QDir>

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

JSONContent contentOf(std::string_view text) {
    return JSONContent::fromText(TextRope(SharedText(text)));
}

JSONContent textOnly(std::string_view text) {
    JSONContent content;
    content.text = TextRope(SharedText(text));
    return content;
}

std::string written(const ExportDocument& document) {
    std::string bytes;
    const auto take = [&](std::string_view piece) {
        bytes += piece;
        return true;
    };
    EXPECT_TRUE(document.write(take, {}));
    return bytes;
}

TEST(ExportDocumentTests, ItIsWrittenAsADocumentIs) {
    EXPECT_EQ(ExportDocument::contentTypes(), JSONDocument::writableContentTypes());
}

TEST(ExportDocumentTests, ItKeepsTheContentAndTheStyle) {
    const auto style = JSONStyle::pretty(JSONStyle::Indent::tab, true);
    const ExportDocument document(contentOf("[1]"), style);
    EXPECT_EQ(document.content().tree->nodeCount(), 2);
    EXPECT_EQ(document.style(), style);
}

TEST(ExportDocumentTests, TheTreeIsWrittenInItsStyleAndNotInThatOfTheContent) {
    EXPECT_EQ(written(ExportDocument(contentOf("[ 1 ]"), JSONStyle::compact())), "[1]");
    EXPECT_EQ(written(ExportDocument(contentOf("[1]"), JSONStyle::pretty(JSONStyle::Indent::tab, false))),
              "[\n\t1\n]\n");
}

TEST(ExportDocumentTests, TextWithoutATreeIsParsed) {
    EXPECT_EQ(written(ExportDocument(textOnly("{ \"a\" : 1 }"), JSONStyle::compact())), "{\"a\":1}");
}

TEST(ExportDocumentTests, TextThatIsNotJSONIsAnErrorAndGivesNothing) {
    const auto result = ExportDocument(textOnly("[1 2]"), JSONStyle::compact())
                            .write(
                                [](std::string_view) {
                                    ADD_FAILURE() << "something was written";
                                    return true;
                                },
                                {});
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().description(), QStringLiteral("Línea 1, columna 4: Se esperaba ',' o ']'"));
}

TEST(ExportDocumentTests, ALargeFileHasAllPiecesInOrder) {
    const TemporaryFolder folder;
    const QString path = folder.path(QStringLiteral("a.json"));
    const std::string text = arrayOfZeros(2'000'000);
    ASSERT_TRUE(ExportDocument(contentOf(text), JSONStyle::compact()).writeFile(path, {}));
    EXPECT_TRUE(TemporaryFolder::contents(path) == text);
}

TEST(ExportDocumentTests, AnErrorOfTheTextLeavesTheFileAsItWas) {
    const TemporaryFolder folder;
    const QString path = folder.write(QStringLiteral("a.json"), "antes");
    const auto result = ExportDocument(textOnly("[1 2]"), JSONStyle::compact()).writeFile(path, {});
    ASSERT_FALSE(result);
    ASSERT_TRUE(std::holds_alternative<ConversionError>(result.error()));
    EXPECT_TRUE(std::get<ConversionError>(result.error()).parseError());
    EXPECT_EQ(TemporaryFolder::contents(path), "antes");
}

TEST(ExportDocumentTests, AnErrorOfTheFileIsToldAsSuch) {
    const TemporaryFolder folder;
    const auto result = ExportDocument(contentOf("[1]"), JSONStyle::compact())
                            .writeFile(folder.path(QStringLiteral("falta/a.json")), {});
    ASSERT_FALSE(result);
    EXPECT_TRUE(std::holds_alternative<FileError>(result.error()));
}

TEST(ExportDocumentTests, AskedToStopItLeavesTheFileAsItWas) {
    const TemporaryFolder folder;
    const QString path = folder.write(QStringLiteral("a.json"), "antes");
    std::stop_source source;
    source.request_stop();
    const auto result =
        ExportDocument(contentOf("[1]"), JSONStyle::compact()).writeFile(path, {.stop = source.get_token()});
    ASSERT_FALSE(result);
    ASSERT_TRUE(std::holds_alternative<ConversionError>(result.error()));
    EXPECT_TRUE(std::get<ConversionError>(result.error()).isCancellation());
    EXPECT_EQ(TemporaryFolder::contents(path), "antes");
    EXPECT_EQ(QDir(folder.path({})).entryList(QDir::Files), QStringList{QStringLiteral("a.json")});
}

} // namespace
} // namespace quelm
