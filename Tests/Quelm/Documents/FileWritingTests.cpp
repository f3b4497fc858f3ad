#include "Quelm/Documents/FileWriting.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace quelm {
namespace {

class FileWritingTests : public testing::Test {
protected:
    TemporaryFolder folder;
};

TEST_F(FileWritingTests, ANewFileHasTheBytes) {
    const QString path = folder.path(QStringLiteral("nuevo.json"));
    const std::string bytes("a\0b\r\n", 5);
    ASSERT_TRUE(writeFile(path, SharedText(bytes)));
    EXPECT_EQ(TemporaryFolder::contents(path), bytes);
}

TEST_F(FileWritingTests, AnOldFileIsReplacedWhole) {
    const QString path = folder.write(QStringLiteral("a.json"), "mucho más largo que lo nuevo");
    ASSERT_TRUE(writeFile(path, SharedText("[]")));
    EXPECT_EQ(TemporaryFolder::contents(path), "[]");
    ASSERT_TRUE(writeFile(path, SharedText()));
    EXPECT_EQ(TemporaryFolder::contents(path), "");
}

TEST_F(FileWritingTests, AFolderThatIsNotThereIsNamed) {
    const auto written = writeFile(folder.path(QStringLiteral("falta/a.json")), SharedText("[]"));
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().message,
              QStringLiteral("La carpeta «%1» no existe.").arg(folder.path(QStringLiteral("falta"))));
}

TEST_F(FileWritingTests, AFolderOfThatNameIsLeftAlone) {
    const QString path = folder.path(QStringLiteral("carpeta.json"));
    ASSERT_TRUE(QDir().mkdir(path));
    const auto written = writeFile(path, SharedText("[]"));
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().message, QStringLiteral("Ya hay una carpeta con ese nombre."));
    EXPECT_TRUE(QDir(path).exists());
}

#ifdef Q_OS_UNIX
TEST_F(FileWritingTests, APipeIsNotReplacedByAFile) {
    const QString path = folder.path(QStringLiteral("tubo"));
    ASSERT_EQ(mkfifo(qUtf8Printable(path), 0600), 0);
    const auto written = writeFile(path, SharedText("[]"));
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().message, QStringLiteral("Ya hay algo con ese nombre que no es un archivo normal."));
    EXPECT_FALSE(QFileInfo(path).isFile());
}

TEST_F(FileWritingTests, ALinkStaysALinkAndItsFileIsReplaced) {
    const QString file = folder.write(QStringLiteral("a.json"), "antes");
    const QString link = folder.path(QStringLiteral("enlace.json"));
    ASSERT_TRUE(QFile::link(file, link));
    ASSERT_TRUE(writeFile(link, SharedText("después")));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(TemporaryFolder::contents(file), "después");
}
#endif

} // namespace
} // namespace quelm
