#include "Quelm/Documents/FileWriting.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif
#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/resource.h>
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

// In pieces.

TEST_F(FileWritingTests, PiecesBecomeTheFileInTheirOrder) {
    const QString path = folder.write(QStringLiteral("a.json"), "antes");
    const auto written = writeFileInPieces(path, [](const TakeBytes& take) {
        EXPECT_TRUE(take("uno,"));
        EXPECT_TRUE(take(""));
        EXPECT_TRUE(take("dos"));
        return true;
    });
    EXPECT_EQ(written, (std::expected<bool, FileError>(true)));
    EXPECT_EQ(TemporaryFolder::contents(path), "uno,dos");
}

TEST_F(FileWritingTests, TheFileIsAsItWasUntilAllPiecesAreThere) {
    const QString path = folder.write(QStringLiteral("a.json"), "antes");
    ASSERT_TRUE(writeFileInPieces(path, [&](const TakeBytes& take) {
        take("después");
        EXPECT_EQ(TemporaryFolder::contents(path), "antes");
        return true;
    }));
    EXPECT_EQ(TemporaryFolder::contents(path), "después");
}

TEST_F(FileWritingTests, PiecesThatEndEarlyLeaveNoTrace) {
    const QString path = folder.write(QStringLiteral("a.json"), "antes");
    const auto written = writeFileInPieces(path, [](const TakeBytes& take) {
        take("a medias");
        return false;
    });
    EXPECT_EQ(written, (std::expected<bool, FileError>(false)));
    EXPECT_EQ(TemporaryFolder::contents(path), "antes");
    EXPECT_EQ(QDir(folder.path({})).entryList(QDir::Files), QStringList{QStringLiteral("a.json")});
}

TEST_F(FileWritingTests, WhatIsThrownLeavesTheFileAsItWas) {
    const QString path = folder.write(QStringLiteral("a.json"), "antes");
    const auto produce = [](const TakeBytes& take) -> bool {
        take("a medias");
        throw std::bad_alloc();
    };
    EXPECT_THROW((void)writeFileInPieces(path, produce), std::bad_alloc);
    EXPECT_EQ(TemporaryFolder::contents(path), "antes");
    EXPECT_EQ(QDir(folder.path({})).entryList(QDir::Files), QStringList{QStringLiteral("a.json")});
}

TEST_F(FileWritingTests, NothingIsProducedForAFileThatCannotBeBegun) {
    const auto written = writeFileInPieces(folder.path(QStringLiteral("falta/a.json")), [](const TakeBytes&) {
        ADD_FAILURE() << "produced";
        return true;
    });
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().message,
              QStringLiteral("La carpeta «%1» no existe.").arg(folder.path(QStringLiteral("falta"))));
}

#ifdef Q_OS_LINUX
TEST_F(FileWritingTests, NoMorePiecesAreWantedWhenTheDiskIsFull) {
    // Files of this process may not grow beyond that for the time being.
    rlimit before;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit little{.rlim_cur = 1000, .rlim_max = before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &little), 0);
    int count = 0;
    const QString path = folder.path(QStringLiteral("a.json"));
    const auto written = writeFileInPieces(path, [&](const TakeBytes& take) {
        const std::string piece(600, ' ');
        while (take(piece))
            ++count;
        EXPECT_FALSE(take("más"));
        return true;
    });
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);

    EXPECT_EQ(count, 1);
    ASSERT_FALSE(written);
    EXPECT_THAT(written.error().message.toStdString(), testing::StartsWith("La escritura del archivo falló: "));
    EXPECT_TRUE(QDir(folder.path({})).isEmpty());
}
#endif

} // namespace
} // namespace quelm
