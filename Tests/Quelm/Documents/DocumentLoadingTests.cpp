#include "Quelm/Documents/DocumentLoading.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace quelm {
namespace {

class DocumentLoadingTests : public testing::Test {
protected:
    TemporaryFolder folder;
};

TEST_F(DocumentLoadingTests, AValidFileComesWithTextTreeAndStyle) {
    const auto loaded = loadDocument(folder.write(QStringLiteral("a.json"), "{\n\t\"a\": 1\n}\n"));
    ASSERT_TRUE(loaded);
    EXPECT_TRUE(loaded->content.text);
    EXPECT_TRUE(loaded->content.tree);
    EXPECT_EQ(loaded->content.style, JSONStyle::pretty(JSONStyle::Indent::tab, false));
}

TEST_F(DocumentLoadingTests, InvalidJSONIsNoFailure) {
    const auto loaded = loadDocument(folder.write(QStringLiteral("a.json"), "[1,]"));
    ASSERT_TRUE(loaded);
    EXPECT_FALSE(loaded->content.tree);
    EXPECT_EQ(loaded->content.parseError->message, "Valor inesperado");
}

TEST_F(DocumentLoadingTests, AnotherEncodingIsAFailureInWords) {
    const auto content = loadDocument(folder.write(QStringLiteral("a.json"), "\"a\xf1o\""));
    ASSERT_FALSE(content);
    EXPECT_EQ(content.error().message, QStringLiteral("Línea 1, columna 1: El archivo no está codificado en UTF-8"));
}

TEST_F(DocumentLoadingTests, AMissingFileIsAFailureInWords) {
    const auto content = loadDocument(folder.path(QStringLiteral("nada.json")));
    ASSERT_FALSE(content);
    EXPECT_EQ(content.error().message, QStringLiteral("El archivo no existe."));
}

TEST_F(DocumentLoadingTests, TheStateIsThatOfTheFile) {
    const QString path = folder.write(QStringLiteral("a.json"), "[1]");
    const auto loaded = loadDocument(path);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->state.stamp, FileStamp::of(path.toStdString()));
    EXPECT_EQ(loaded->state.checksum, ContentChecksum::of("[1]"));
}

TEST_F(DocumentLoadingTests, FoldersAndDevicesAreFailuresInWords) {
    EXPECT_EQ(loadDocument(folder.path(QStringLiteral("."))).error().message,
              QStringLiteral("Es una carpeta, no un archivo."));
    EXPECT_EQ(loadDocument(QStringLiteral("/dev/zero")).error().message,
              QStringLiteral("No es un archivo normal, sino un dispositivo, una tubería o algo parecido."));
}

TEST_F(DocumentLoadingTests, AFileThatIsTooLargeIsAFailureInWords) {
    const QString path = folder.write(QStringLiteral("a.json"), "");
    std::filesystem::resize_file(path.toStdString(), std::uintmax_t{1} << 40);
    EXPECT_EQ(loadDocument(path).error(), FileError{QStringLiteral("El archivo es demasiado grande.")});
}

TEST_F(DocumentLoadingTests, ATreeThatWouldBeTooLargeIsAFailureToo) {
    // What a parse says of a text with 2^31 values or more.
    JSONContent content;
    content.text = TextRope(SharedText("[]"));
    content.parseError = JSONParseError::tooLarge();
    const auto opened = openableContent(content);
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error(), FileError{QStringLiteral("El archivo es demasiado grande.")});
    content.parseError = JSONParseError::cancelled();
    EXPECT_TRUE(openableContent(content).error().isCancellation);
}

TEST_F(DocumentLoadingTests, AStoppedLoadingIsACancellation) {
    std::stop_source source;
    source.request_stop();
    const auto loaded = loadDocument(folder.write(QStringLiteral("a.json"), "[1]"), source.get_token());
    ASSERT_FALSE(loaded);
    EXPECT_TRUE(loaded.error().isCancellation);
}

TEST_F(DocumentLoadingTests, TheProgressIsAtItsEndWhenAllIsParsed) {
    WorkProgress progress;
    ASSERT_TRUE(loadDocument(folder.write(QStringLiteral("a.json"), arrayOfZeros(100'000)), {}, &progress));
    EXPECT_EQ(progress.fraction(), 1.0);
}

} // namespace
} // namespace quelm
