#include "Quelm/Documents/FileWatch.h"
#include "Tests/Quelm/Support/FakeClock.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quelm {
namespace {

/// Watches a file in a folder of its own, so that nothing else happens there.
class FileWatchTests : public testing::Test {
protected:
    FileWatchTests() {
        EXPECT_TRUE(QDir().mkpath(folder.path(QStringLiteral("a/b"))));
        path = write(QStringLiteral("a/b/datos.json"), "[1]");
    }
    QString write(const QString& name, std::string_view bytes) const { return folder.write(name, bytes); }

    /// Until the watch has heard of something, and then until it tells.
    bool waitForChange() {
        const auto before = changes.count();
        return QTest::qWaitFor([&] {
            clock.advance(FileWatch::pause);
            return changes.count() > before;
        });
    }
    /// What the system has to tell is heard of.
    void settle() {
        const QString probe = folder.path(QStringLiteral("a/b/testigo"));
        FileWatch other(otherClock);
        other.add(probe);
        QSignalSpy heard(&other, &FileWatch::mayHaveChanged);
        std::ofstream(probe.toStdString()) << "x";
        ASSERT_TRUE(QTest::qWaitFor([&] {
            otherClock.advance(FileWatch::pause);
            return heard.count() > 0;
        }));
        clock.advance(FileWatch::longestDelay);
    }

    TemporaryFolder folder;
    QString path;
    FakeClock clock;
    FakeClock otherClock;
    FileWatch watch{clock};
    QSignalSpy changes{&watch, &FileWatch::mayHaveChanged};
};

TEST_F(FileWatchTests, TellsOfAFileThatIsWrittenInPlace) {
    watch.add(path);
    std::ofstream(path.toStdString(), std::ios::app) << " ";
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(changes.at(0).at(0).toString(), path);
}

TEST_F(FileWatchTests, TellsOfEveryReplacement) {
    watch.add(path);
    for (int round = 0; round < 4; ++round) {
        const QString fresh = write(QStringLiteral("a/b/nuevo"), "[2]");
        ASSERT_EQ(std::rename(fresh.toLocal8Bit(), path.toLocal8Bit()), 0);
        ASSERT_TRUE(waitForChange()) << round;
    }
    std::ofstream(path.toStdString(), std::ios::app) << " ";
    EXPECT_TRUE(waitForChange()) << "written in place afterwards";
}

TEST_F(FileWatchTests, TellsOfAFileThatGoesAndComesBack) {
    watch.add(path);
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(waitForChange());
    write(QStringLiteral("a/b/datos.json"), "[2]");
    EXPECT_TRUE(waitForChange());
}

TEST_F(FileWatchTests, TellsOfAFolderThatIsRenamedAndComesBack) {
    watch.add(path);
    ASSERT_TRUE(QDir().rename(folder.path(QStringLiteral("a/b")), folder.path(QStringLiteral("a/c"))));
    ASSERT_TRUE(waitForChange());
    EXPECT_TRUE(watch.watchedPaths().contains(folder.path(QStringLiteral("a")))) << "the nearest that is left";
    ASSERT_TRUE(QDir().rename(folder.path(QStringLiteral("a/c")), folder.path(QStringLiteral("a/b"))));
    ASSERT_TRUE(waitForChange());
    std::ofstream(path.toStdString(), std::ios::app) << " ";
    EXPECT_TRUE(waitForChange());
}

TEST_F(FileWatchTests, TellsOfAFileBelowFoldersThatAreStillToBeMade) {
    const QString later = folder.path(QStringLiteral("a/x/y/datos.json"));
    watch.add(later);
    ASSERT_TRUE(QDir().mkdir(folder.path(QStringLiteral("a/x"))));
    ASSERT_TRUE(waitForChange());
    ASSERT_TRUE(QDir().mkdir(folder.path(QStringLiteral("a/x/y"))));
    ASSERT_TRUE(waitForChange());
    write(QStringLiteral("a/x/y/datos.json"), "1");
    EXPECT_TRUE(waitForChange());
}

TEST_F(FileWatchTests, TellsOfWhatASymbolicLinkLeadsTo) {
    ASSERT_TRUE(QDir().mkdir(folder.path(QStringLiteral("enlaces"))));
    const QString link = folder.path(QStringLiteral("enlaces/e.json"));
    ASSERT_TRUE(QFile::link(path, link));
    watch.add(link);
    std::ofstream(path.toStdString(), std::ios::app) << " ";
    ASSERT_TRUE(waitForChange());
    const QString fresh = write(QStringLiteral("a/b/nuevo"), "[2]");
    ASSERT_EQ(std::rename(fresh.toLocal8Bit(), path.toLocal8Bit()), 0);
    ASSERT_TRUE(waitForChange());

    const QString other = write(QStringLiteral("otro.json"), "[3]");
    const QString newLink = folder.path(QStringLiteral("enlaces/nuevo"));
    ASSERT_TRUE(QFile::link(other, newLink));
    ASSERT_EQ(std::rename(newLink.toLocal8Bit(), link.toLocal8Bit()), 0);
    ASSERT_TRUE(waitForChange()) << "the link leads elsewhere";
    std::ofstream(other.toStdString(), std::ios::app) << " ";
    EXPECT_TRUE(waitForChange());
}

TEST_F(FileWatchTests, EndsWithLinksThatLeadRoundInACircle) {
    const QString link = folder.path(QStringLiteral("a/b/circulo"));
    ASSERT_TRUE(QFile::link(link, link));
    watch.add(link);
    ASSERT_TRUE(QFile::remove(link));
    EXPECT_TRUE(waitForChange());
}

TEST_F(FileWatchTests, TellsOnceOfManyChangesWhenTheyHaveEnded) {
    watch.add(path);
    for (int round = 0; round < 20; ++round)
        std::ofstream(path.toStdString(), std::ios::app) << " ";
    ASSERT_TRUE(QTest::qWaitFor([&] { return clock.pendingCount() > 0; }));
    EXPECT_EQ(changes.count(), 0);
    clock.advance(FileWatch::pause - std::chrono::milliseconds(1));
    EXPECT_EQ(changes.count(), 0);
    settle();
    EXPECT_EQ(changes.count(), 1);
    clock.advance(2 * FileWatch::longestDelay);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(FileWatchTests, DoesNotWaitForAnEndThatNeverComes) {
    watch.add(path);
    FileWatch other(otherClock);
    other.add(path);
    QSignalSpy heard(&other, &FileWatch::mayHaveChanged);
    auto time = std::chrono::milliseconds(0);
    for (; changes.count() == 0 && time <= 2 * FileWatch::longestDelay; time += FileWatch::pause / 2) {
        const auto before = heard.count();
        std::ofstream(path.toStdString(), std::ios::app) << " ";
        ASSERT_TRUE(QTest::qWaitFor([&] {
            otherClock.advance(FileWatch::pause);
            return heard.count() > before;
        }));
        clock.advance(FileWatch::pause / 2);
    }
    EXPECT_EQ(changes.count(), 1);
    EXPECT_GE(time, FileWatch::longestDelay - FileWatch::pause);
}

TEST_F(FileWatchTests, DoesNotTellOfWhatItDoesNotWatchAnyMore) {
    watch.add(path);
    watch.add(path);
    watch.remove(path);
    std::ofstream(path.toStdString(), std::ios::app) << " ";
    ASSERT_TRUE(waitForChange()) << "it was added twice";
    watch.remove(path);
    EXPECT_TRUE(watch.watchedPaths().isEmpty());
    std::ofstream(path.toStdString(), std::ios::app) << " ";
    settle();
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(FileWatchTests, TellsTwoFilesOfOneFolder) {
    const QString other = write(QStringLiteral("a/b/otro.json"), "1");
    watch.add(path);
    watch.add(other);
    watch.remove(path);
    std::ofstream(other.toStdString(), std::ios::app) << " ";
    ASSERT_TRUE(waitForChange());
    EXPECT_EQ(changes.at(0).at(0).toString(), other);
}

TEST_F(FileWatchTests, DoesNotReadAPipe) {
    const QString pipe = folder.path(QStringLiteral("a/b/tubo"));
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit(), 0600), 0);
    watch.add(pipe);
    EXPECT_FALSE(watch.watchedPaths().contains(pipe));
}

} // namespace
} // namespace quelm
