#include "Quelm/Application/FileTitles.h"
#include "Quelm/Application/RecentFiles.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"

#include <QDir>
#include <QFontMetrics>
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class RecentFilesTests : public testing::Test {
protected:
    TemporaryPreferences preferences;
};

TEST_F(RecentFilesTests, AreNoneAtFirst) {
    EXPECT_EQ(RecentFiles::paths(), QStringList());
}

TEST_F(RecentFilesTests, TheLastOneComesFirstAndEachIsThereOnce) {
    for (const char* path : {"/x/a.json", "/x/b, c.json", "/x/./a.json"})
        RecentFiles::note(QString::fromUtf8(path));
    EXPECT_EQ(RecentFiles::paths(), (QStringList{QStringLiteral("/x/a.json"), QStringLiteral("/x/b, c.json")}));
}

TEST_F(RecentFilesTests, AreKeptByTheirAbsolutePaths) {
    RecentFiles::note(QStringLiteral("año.json"));
    EXPECT_EQ(RecentFiles::paths(), QStringList{QDir::current().absoluteFilePath(QStringLiteral("año.json"))});
    RecentFiles::remove(QStringLiteral("año.json"));
    EXPECT_EQ(RecentFiles::paths(), QStringList());
}

TEST_F(RecentFilesTests, TheOldestOnesAreForgotten) {
    for (int index = 0; index <= RecentFiles::maximumCount; ++index)
        RecentFiles::note(QStringLiteral("/x/%1.json").arg(index));
    EXPECT_EQ(RecentFiles::paths().size(), RecentFiles::maximumCount);
    EXPECT_EQ(RecentFiles::paths().back(), QStringLiteral("/x/1.json"));
}

TEST_F(RecentFilesTests, CanBeForgottenTogetherAndOneByOne) {
    RecentFiles::note(QStringLiteral("/x/a.json"));
    RecentFiles::note(QStringLiteral("/x/b.json"));
    RecentFiles::remove(QStringLiteral("/x/a.json"));
    EXPECT_EQ(RecentFiles::paths(), QStringList{QStringLiteral("/x/b.json")});
    RecentFiles::clear();
    EXPECT_EQ(RecentFiles::paths(), QStringList());
}

TEST(FileTitlesTests, AreNamesWithTheirFoldersWhereTheyAreAlike) {
    const QString home = QDir::homePath();
    EXPECT_EQ(fileTitles({QStringLiteral("/x/a.json"), QStringLiteral("/x/b.json"), home + QStringLiteral("/y/a.json"),
                          home + QStringLiteral("/a.json")}),
              (QStringList{QStringLiteral("a.json (/x)"), QStringLiteral("b.json"), QStringLiteral("a.json (~/y)"),
                           QStringLiteral("a.json (~)")}));
}

TEST(FileTitlesTests, AreNeitherTooWideNorUnderlinedInAMenu) {
    const QFontMetrics metrics(QGuiApplication::font());
    EXPECT_EQ(menuTitle(QStringLiteral("a&b.json"), metrics), QStringLiteral("a&&b.json"));
    const QString shortened = menuTitle(QString(250, u'x') + QStringLiteral(".json"), metrics);
    EXPECT_LT(shortened.size(), 120);
    EXPECT_TRUE(shortened.endsWith(QStringLiteral(".json")));
}

} // namespace
} // namespace quelm
