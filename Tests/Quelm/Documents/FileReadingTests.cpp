#include "Quelm/Documents/FileReading.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <gtest/gtest.h>

namespace quelm {
namespace {

class FileReadingTests : public testing::Test {
protected:
    TemporaryFolder folder;
};

TEST_F(FileReadingTests, AFileIsReadWholeAndPadded) {
    const std::string bytes("uno\0dos\r\n\xff", 10);
    const auto read = readFile(folder.write(QStringLiteral("a.json"), bytes));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->view(), bytes);
    EXPECT_TRUE(read->isPadded());
}

TEST_F(FileReadingTests, AnEmptyFileIsNoBytes) {
    const auto read = readFile(folder.write(QStringLiteral("vacío.json"), ""));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->empty());
}

TEST_F(FileReadingTests, AFileLongerThanOneReadIsReadWhole) {
    std::string bytes(40 * 1024 * 1024 + 3, 'x');
    bytes.back() = 'y';
    const auto read = readFile(folder.write(QStringLiteral("largo.json"), bytes));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->view() == bytes);
}

#ifdef Q_OS_LINUX
TEST_F(FileReadingTests, AFileThatStatesNoSizeIsReadToItsEnd) {
    const auto read = readFile(QStringLiteral("/proc/self/status"));
    ASSERT_TRUE(read);
    EXPECT_NE(read->view().find("Pid:"), std::string_view::npos);
}
#endif

TEST_F(FileReadingTests, AFileThatIsNotThereIsNamedAsSuch) {
    const auto read = readFile(folder.path(QStringLiteral("nada.json")));
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().message, QStringLiteral("El archivo no existe."));
}

TEST_F(FileReadingTests, AFolderIsNotAFile) {
    const auto read = readFile(folder.path(QStringLiteral(".")));
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().message, QStringLiteral("Es una carpeta, no un archivo."));
}

TEST_F(FileReadingTests, AStoppedReadingEndsEarly) {
    std::stop_source source;
    source.request_stop();
    const auto read = readFile(folder.write(QStringLiteral("a.json"), "[1,2,3]"), source.get_token());
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->empty());
}

} // namespace
} // namespace quelm
