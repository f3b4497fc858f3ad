#include "Quelm/Documents/SameFile.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QFile>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quelm {
namespace {

class SameFileTests : public testing::Test {
protected:
    TemporaryFolder folder;
    QString path = folder.write(QStringLiteral("datos.json"), "[1]");
};

TEST_F(SameFileTests, APathLeadsToTheSameAsItsOtherSpellings) {
    EXPECT_TRUE(leadToSameFile(path, path));
    EXPECT_TRUE(leadToSameFile(path, folder.path(QStringLiteral("./datos.json"))));
}

TEST_F(SameFileTests, LinksLeadToTheFileThatTheyAreOf) {
    const QString link = folder.path(QStringLiteral("enlace.json"));
    ASSERT_TRUE(QFile::link(path, link));
    EXPECT_TRUE(leadToSameFile(path, link));
    const QString name = folder.path(QStringLiteral("otro nombre.json"));
    ASSERT_EQ(::link(path.toLocal8Bit(), name.toLocal8Bit()), 0);
    EXPECT_TRUE(leadToSameFile(path, name));
    EXPECT_TRUE(leadToSameFile(link, name));
}

TEST_F(SameFileTests, AnEqualFileIsAnother) {
    EXPECT_FALSE(leadToSameFile(path, folder.write(QStringLiteral("copia.json"), "[1]")));
}

TEST_F(SameFileTests, PathsWithNothingAtThemAreThoseOfTheirPlaces) {
    EXPECT_TRUE(leadToSameFile(folder.path(QStringLiteral("nada")), folder.path(QStringLiteral("nada"))));
    EXPECT_FALSE(leadToSameFile(folder.path(QStringLiteral("nada")), folder.path(QStringLiteral("otra"))));
    EXPECT_FALSE(leadToSameFile(folder.path(QStringLiteral("nada")), path));
}

} // namespace
} // namespace quelm
