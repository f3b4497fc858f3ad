#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Recovery/LeftBehind.h"
#include "Tests/Quelm/RecoveryVictim/VictimSteps.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

// Processes that edit a document with keys and are killed at a random moment.

namespace quelm {
namespace {

/// How many processes are killed: a few, or as the environment says for a longer run.
int crashCount() {
    const char* asked = std::getenv("QUELM_CRASHES");
    return asked ? std::atoi(asked) : 8;
}

std::int64_t now() {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

class KilledProcesses : public testing::Test {
protected:
    struct Killed {
        /// The steps that were told of: when each was done.
        std::vector<std::int64_t> steps;
        std::int64_t time = 0;

        /// The last step that was done a second before the end; 0 for none.
        std::size_t safeStep() const {
            const auto isSafe = [this](std::int64_t done) { return done <= time - 1000; };
            return static_cast<std::size_t>(std::ranges::find_if_not(steps, isSafe) - steps.begin());
        }
    };

    QString file() const { return home_.filePath(QStringLiteral("datos.json")); }
    QString folder() const { return home_.filePath(QStringLiteral("recovery")); }

    void killOne(const QString& kind, unsigned seed, const std::string& fileBytes, Killed& killed) {
        QDir(folder()).removeRecursively();
        QFile written(file());
        ASSERT_TRUE(written.open(QIODevice::WriteOnly | QIODevice::Truncate));
        written.write(fileBytes.data(), static_cast<qint64>(fileBytes.size()));
        written.close();

        QProcess victim;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home_.path());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        victim.setProcessEnvironment(environment);
        victim.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        victim.start(QStringLiteral(RECOVERY_VICTIM_PATH), {kind, QString::number(seed), file(), folder()});
        ASSERT_TRUE(victim.waitForReadyRead()) << victim.errorString().toStdString();
        const int lifetime = static_cast<int>(random_() % 2500);
        QElapsedTimer age;
        age.start();
        while (age.elapsed() < lifetime)
            ASSERT_TRUE(victim.waitForReadyRead()) << "the victim ended by itself";
        killed.time = now();
        victim.kill();
        ASSERT_TRUE(victim.waitForFinished());
        ASSERT_EQ(victim.exitStatus(), QProcess::CrashExit);
        const QList<QByteArray> lines = victim.readAllStandardOutput().split('\n');
        // The last is empty, or was not printed whole.
        for (const QByteArray& line : lines.first(lines.size() - 1))
            killed.steps.push_back(line.mid(line.indexOf(' ') + 1).toLongLong());
    }

    /// What comes back is the state after a step of the last second, or after the one that was not told of any more.
    template <class Model>
    void expectRecovered(Model model, const Killed& killed) {
        std::vector<std::string> states{Model::file()};
        while (states.size() < killed.steps.size() + 2) {
            model.next();
            states.push_back(model.bytes());
        }
        const std::size_t safe = killed.safeStep();
        std::vector<LeftBehind> found = findLeftBehind(folder());
        if (found.empty()) {
            // All that there was to do may have been undone.
            EXPECT_NE(std::find(states.begin() + static_cast<std::ptrdiff_t>(safe), states.end(), Model::file()),
                      states.end());
            return;
        }
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found.front().path, file());
        const auto recovered = recover(std::move(found.front()));
        ASSERT_TRUE(recovered) << recovered.error().message.toStdString();
        EXPECT_FALSE(recovered->isPartial);
        const std::string bytes(JSONDocument::fileContents(recovered->content).view());
        EXPECT_NE(std::find(states.begin() + static_cast<std::ptrdiff_t>(safe), states.end(), bytes), states.end())
            << "after " << killed.steps.size() << " steps, of which " << safe << " are safe:\n"
            << bytes;
        safeSteps_ += safe;
    }

    std::mt19937 random_{20262};
    QTemporaryDir home_;
    /// How many steps had to come back in all.
    std::size_t safeSteps_ = 0;
};

TEST_F(KilledProcesses, LoseNoMoreThanTheLastSecondOfTyping) {
    for (int crash = 0; crash < (crashCount() + 1) / 2; ++crash) {
        const auto seed = static_cast<unsigned>(crash);
        Killed killed;
        ASSERT_NO_FATAL_FAILURE(killOne(QStringLiteral("text"), seed, VictimTyping::file(), killed));
        ASSERT_NO_FATAL_FAILURE(expectRecovered(VictimTyping(seed), killed)) << "crash " << crash;
    }
    EXPECT_GT(safeSteps_, 0U);
}

TEST_F(KilledProcesses, LoseNoMoreThanTheLastSecondOfEditingATree) {
    for (int crash = 0; crash < (crashCount() + 1) / 2; ++crash) {
        const auto seed = static_cast<unsigned>(crash);
        Killed killed;
        ASSERT_NO_FATAL_FAILURE(killOne(QStringLiteral("tree"), seed, VictimTreeEditing::file(), killed));
        ASSERT_NO_FATAL_FAILURE(expectRecovered(VictimTreeEditing(seed), killed)) << "crash " << crash;
    }
    EXPECT_GT(safeSteps_, 0U);
}

} // namespace
} // namespace quelm
