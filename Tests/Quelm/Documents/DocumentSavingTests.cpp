#include "Quelm/Documents/DocumentSaving.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

JSONContent contentOf(std::string_view text) {
    return JSONContent::fromText(TextRope(SharedText(text)));
}

class DocumentSavingTests : public testing::Test {
protected:
    std::string saved(const JSONContent& snapshot) const {
        const QString path = folder.path(QStringLiteral("a.json"));
        EXPECT_TRUE(saveDocument(path, snapshot));
        return TemporaryFolder::contents(path);
    }

    TemporaryFolder folder;
};

TEST_F(DocumentSavingTests, ATextIsSavedAsItIs) {
    EXPECT_EQ(saved(contentOf("[ 1 ]\r\n")), "[ 1 ]\r\n");
    EXPECT_EQ(saved(contentOf("[ 1")), "[ 1");
    EXPECT_EQ(saved(contentOf("")), "");
}

TEST_F(DocumentSavingTests, ATreeIsSavedInItsStyle) {
    for (const auto& style : {JSONStyle::compact(), JSONStyle::pretty(JSONStyle::Indent::tab, true)}) {
        JSONContent content = contentOf("{\"b\": [1], \"a\": \"ñ\"}");
        content.text.reset();
        content.style = style;
        EXPECT_EQ(saved(content), JSONDocument::fileContents(content).view());
    }
}

TEST_F(DocumentSavingTests, ALargeTreeIsSavedWhole) {
    const std::string text = arrayOfZeros(2'000'000);
    JSONContent content = contentOf(text);
    content.text.reset();
    content.style = JSONStyle::compact();
    EXPECT_TRUE(saved(content) == text);
}

TEST_F(DocumentSavingTests, AnEditedTextOfManyPiecesIsSavedWhole) {
    TextRope text(SharedText(arrayOfZeros(2'000'000)));
    std::string expected = arrayOfZeros(2'000'000);
    for (const std::int64_t place : {3'000'001, 1'500'000, 7}) {
        text = text.replacing({place, 0}, TextRope(SharedText(" ñ ")));
        expected.insert(static_cast<std::size_t>(place), " ñ ");
    }
    JSONContent content;
    content.text = text;
    EXPECT_TRUE(saved(content) == expected);
}

TEST_F(DocumentSavingTests, TheStateIsThatOfTheFileAfterwards) {
    const QString path = folder.path(QStringLiteral("a.json"));
    const auto result = saveDocument(path, contentOf("[1]"));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->stamp, FileStamp::of(path.toStdString()));
    EXPECT_EQ(result->checksum, ContentChecksum::of("[1]"));
}

TEST_F(DocumentSavingTests, AFailureSaysWhatHappenedAndThatNothingWasLost) {
    JSONContent content = contentOf("[1]");
    content.text.reset();
    const auto result = saveDocument(folder.path(QStringLiteral("falta/a.json")), content);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().message,
              QStringLiteral("La carpeta «%1» no existe. No se ha perdido nada: tus cambios siguen abiertos.")
                  .arg(folder.path(QStringLiteral("falta"))));
    EXPECT_FALSE(result.error().isCancellation);
}

TEST_F(DocumentSavingTests, ARefusedReplacementLeavesTheFileAndSaysSo) {
    const QString path = folder.write(QStringLiteral("a.json"), "antes");
    SaveOptions options;
    options.willReplace = [](const ContentChecksum&) { return false; };
    const auto result = saveDocument(path, contentOf("[1]"), options);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().message,
              QStringLiteral("No se llegó a escribir todo el archivo. No se ha perdido nada: el archivo sigue como "
                             "estaba y tus cambios siguen abiertos."));
    EXPECT_EQ(TemporaryFolder::contents(path), "antes");
}

TEST_F(DocumentSavingTests, AStoppedSaveIsACancellation) {
    std::stop_source source;
    source.request_stop();
    const QString path = folder.write(QStringLiteral("a.json"), "antes");
    JSONContent tree = contentOf("[1]");
    tree.text.reset();
    for (const JSONContent& content : {contentOf("[1]"), tree}) {
        SaveOptions options;
        options.stop = source.get_token();
        const auto result = saveDocument(path, content, options);
        ASSERT_FALSE(result);
        EXPECT_TRUE(result.error().isCancellation);
        EXPECT_EQ(TemporaryFolder::contents(path), "antes");
    }
}

TEST_F(DocumentSavingTests, NeitherTextNorTreeIsAnEmptyFile) {
    EXPECT_EQ(saved(JSONContent()), "");
}

} // namespace
} // namespace quelm
