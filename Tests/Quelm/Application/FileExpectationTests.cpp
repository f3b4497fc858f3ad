#include "Quelm/Application/FileExpectation.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QFile>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class FileExpectationTests : public testing::Test {
protected:
    FileStamp stamp() const { return FileStamp::of(path.toStdString()).value(); }
    void write(std::string_view bytes) const { folder.write(QStringLiteral("datos.json"), bytes); }

    TemporaryFolder folder;
    QString path = folder.write(QStringLiteral("datos.json"), "[1]");
    FileState known{stamp(), ContentChecksum::of("[1]")};
};

TEST_F(FileExpectationTests, IsMetByAFileThatNobodyChanged) {
    FileExpectation expectation(path, known, std::nullopt);
    EXPECT_FALSE(expectation.isChanged());
    write("[1]");
    EXPECT_FALSE(expectation.isChanged()) << "the same bytes again";
    EXPECT_EQ(expectation.change(), std::nullopt);
}

TEST_F(FileExpectationTests, KnowsTheStateOfAFileThatSomebodyChanged) {
    FileExpectation expectation(path, known, std::nullopt);
    write("[1,2]");
    EXPECT_TRUE(expectation.isChanged());
    EXPECT_EQ(expectation.change(), stamp());
}

TEST_F(FileExpectationTests, IsMetByWhatTheUserHasAgreedToLoseAndByNothingElse) {
    write("[1,2]");
    FileExpectation expectation(path, known, stamp());
    EXPECT_FALSE(expectation.isChanged());
    write("[1,2,3]");
    EXPECT_TRUE(expectation.isChanged());
}

TEST_F(FileExpectationTests, LeavesAFileThatIsGoneToSaving) {
    FileExpectation expectation(path, known, std::nullopt);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_FALSE(expectation.isChanged());
}

} // namespace
} // namespace quelm
