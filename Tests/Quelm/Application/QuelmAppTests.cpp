#include "Quelm/Application/QuelmApp.h"
#include "Quelm/Application/InstanceClient.h"
#include "Quelm/Recovery/RecoveryFolder.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QMessageBox>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>

namespace quelm {
namespace {

/// What a run of the program printed and returned.
struct ProgramRun {
    int status;
    QString output;
    QString errors;
};

/// Runs the program without a display, unless a platform is asked for.
ProgramRun runQuelm(const QStringList& arguments, const QString& platform = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(variable));
    if (!platform.isEmpty())
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(QUELM_PATH), arguments);
    const bool hasEnded = process.waitForFinished();
    return {hasEnded && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
}

class QuelmAppTests : public testing::Test {
protected:
    QString picture() const { return folder.path(QStringLiteral("captura.png")); }
    TemporaryFolder folder;
};

TEST_F(QuelmAppTests, HelpAndVersionNeedNoDisplay) {
    const ProgramRun help = runQuelm({QStringLiteral("--help")});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.output.startsWith(QStringLiteral("Uso: quelm ")));
    const ProgramRun version = runQuelm({QStringLiteral("--version")});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, QStringLiteral("Quelm " QUELM_VERSION "\n"));
}

TEST_F(QuelmAppTests, WindowsWithoutADisplayAreRefusedInWords) {
    const ProgramRun run = runQuelm({});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, QStringLiteral("quelm: No hay pantalla en la que abrir ventanas.\n"));
}

TEST_F(QuelmAppTests, AnUnknownOptionIsRefusedInWords) {
    const ProgramRun run = runQuelm({QStringLiteral("--fast")}, QStringLiteral("offscreen"));
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errors, QStringLiteral("quelm: No existe la opción --fast.\n"));
}

TEST_F(QuelmAppTests, ACaptureIsAPictureOfTheWindowInTheScaleAskedFor) {
    const QString file = folder.write(QStringLiteral("a.json"), "{\"a\":[1,2]}");
    const ProgramRun once = runQuelm({QStringLiteral("--capture"), picture(), file});
    EXPECT_EQ(once.status, 0);
    EXPECT_EQ(once.errors, QString());
    const QImage single(picture());
    EXPECT_EQ(single.size(), QSize(860, 760));
    const ProgramRun twice =
        runQuelm({QStringLiteral("--capture"), picture(), QStringLiteral("--scale"), QStringLiteral("2"), file});
    EXPECT_EQ(twice.status, 0);
    EXPECT_EQ(QImage(picture()).size(), QSize(1720, 1520));
}

TEST_F(QuelmAppTests, ACaptureShowsTheFile) {
    runQuelm({QStringLiteral("--capture"), picture(), folder.write(QStringLiteral("a.json"), "{\"a\":[1,2]}")});
    const QImage valid(picture());
    runQuelm({QStringLiteral("--capture"), picture(), folder.write(QStringLiteral("a.json"), "{\"a\":[1,2}")});
    const QImage invalid(picture());
    EXPECT_NE(valid, invalid);
    runQuelm({QStringLiteral("--capture"), picture(), QStringLiteral("--appearance"), QStringLiteral("dark"),
              folder.write(QStringLiteral("a.json"), "{\"a\":[1,2]}")});
    EXPECT_LT(QImage(picture()).pixelColor(400, 700).lightness(), 64);
    EXPECT_GT(valid.pixelColor(400, 700).lightness(), 192);
}

TEST_F(QuelmAppTests, AFileThatCannotBeCapturedIsToldOnStandardError) {
    const QString missing = folder.path(QStringLiteral("nada.json"));
    const ProgramRun run = runQuelm({QStringLiteral("--capture"), picture(), missing});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errors, missing + QStringLiteral(": El archivo no existe.\n"));
    const QString latin = folder.write(QStringLiteral("a.json"), "\"\xf1\"");
    EXPECT_EQ(runQuelm({QStringLiteral("--capture"), picture(), latin}).errors,
              latin + QStringLiteral(": Línea 1, columna 1: El archivo no está codificado en UTF-8\n"));
    EXPECT_FALSE(QFile::exists(picture()));
}

TEST_F(QuelmAppTests, APictureThatCannotBeWrittenIsToldOnStandardError) {
    const QString nowhere = folder.path(QStringLiteral("falta/captura.png"));
    const ProgramRun run =
        runQuelm({QStringLiteral("--capture"), nowhere, folder.write(QStringLiteral("a.json"), "[]")});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errors, nowhere + QStringLiteral(": No se pudo escribir la imagen.\n"));
}

/// The end of an application in which nothing else goes on.
class QuelmAppEndTests : public testing::Test {
protected:
    static constexpr int goesOn = 77;

    /// The status with which the application ends by itself within some turns of its event loop, the first of which
    /// does something, else `goesOn`.
    static int statusAfter(const std::function<void()>& operation) {
        QTimer turns;
        int count = 0;
        QObject::connect(&turns, &QTimer::timeout, [&] {
            if (++count == 1)
                operation();
            else if (count == 20)
                QCoreApplication::exit(goesOn);
        });
        turns.start();
        return QApplication::exec();
    }
    void closeFirst() { quelm.documents().windows().front()->close(); }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    QuelmApp quelm;
};

TEST_F(QuelmAppEndTests, NothingEndsBeforeAWindowWasShown) {
    DocumentController& documents = quelm.documents();
    QSignalSpy idle(&documents, &DocumentController::becameIdle);
    const int status = statusAfter([&] {
        documents.open(folder.write(QStringLiteral("a.json"), "[]"));
        ASSERT_FALSE(documents.windows().front()->isVisible());
        delete documents.windows().front();
    });
    EXPECT_EQ(status, goesOn);
    EXPECT_EQ(idle.count(), 1);
    EXPECT_TRUE(documents.isIdle());
    EXPECT_FALSE(quelm.appDelegate().hasShownWindow());
}

TEST_F(QuelmAppEndTests, ItEndsWithTheLastWindowThatWasShown) {
    DocumentController& documents = quelm.documents();
    documents.newDocument();
    documents.newDocument();
    EXPECT_EQ(statusAfter([this] { closeFirst(); }), goesOn);
    ASSERT_EQ(documents.windows().size(), 1u);
    EXPECT_EQ(statusAfter([this] { closeFirst(); }), 0);
}

TEST_F(QuelmAppEndTests, AWindowThatHasOpenedMeanwhileKeepsItGoing) {
    DocumentController& documents = quelm.documents();
    documents.newDocument();
    const int status = statusAfter([&] {
        delete documents.windows().front();
        ASSERT_TRUE(documents.isIdle());
        documents.newDocument();
    });
    EXPECT_EQ(status, goesOn);
}

TEST_F(QuelmAppEndTests, FromItsEndOnOtherProgramsDoForThemselvesWhatTheyWant) {
    const auto address = InstanceAddress::own();
    ASSERT_TRUE(address);
    quelm.answerOthers(*InstanceSocket::claim(*address));
    quelm.documents().newDocument();
    EXPECT_EQ(statusAfter([this] { closeFirst(); }), 0);
    const InstanceClaim claim = claimInstance(*address, {{"/a.json"}}, std::chrono::seconds(60));
    EXPECT_FALSE(claim.isHandedOver);
    EXPECT_TRUE(claim.socket) << "nobody answers there";
}

TEST_F(QuelmAppEndTests, FromASignalOnOtherProgramsDoForThemselvesWhatTheyWant) {
    const auto address = InstanceAddress::own();
    ASSERT_TRUE(address);
    quelm.answerOthers(*InstanceSocket::claim(*address));
    quelm.followSystem();
    quelm.documents().newDocument();
    QTimer::singleShot(0, [] { std::raise(SIGTERM); });
    EXPECT_EQ(QApplication::exec(), 128 + SIGTERM);
    EXPECT_TRUE(claimInstance(*address, {{"/a.json"}}, std::chrono::seconds(60)).socket);
}

TEST_F(QuelmAppEndTests, WhatIsBeingRecoveredIsWaitedFor) {
    QDir(recoveryFolder()).removeRecursively();
    {
        DocumentController crashed([](EditorView&) {});
        crashed.keepJournals(recoveryFolder());
        crashed.newDocument();
        crashed.windows().front()->treeEditor().insert(true);
        crashed.windows().front()->finishEditing();
    }
    quelm.documents().newDocument();
    quelm.recoverWork();
    const auto question = [this] { return quelm.documents().windows().front()->findChild<QMessageBox*>(); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return question() && question()->isVisible(); }));
    const int status = statusAfter([&] {
        for (QAbstractButton* button : question()->buttons())
            if (button->text() == QStringLiteral("Recuperar"))
                button->click();
        // At once, before anything can have been recovered.
        closeFirst();
    });
    EXPECT_EQ(status, goesOn);
    ASSERT_TRUE(QTest::qWaitFor([this] { return quelm.documents().windows().size() == 1; }));
    EXPECT_TRUE(quelm.documents().windows().front()->document().isModified());
}

TEST_F(QuelmAppEndTests, ItEndsWithAnErrorWhenNothingCouldBeOpened) {
    DocumentController& documents = quelm.documents();
    documents.open(folder.path(QStringLiteral("nada.json")));
    const auto alert = [] { return qobject_cast<QMessageBox*>(QApplication::activeWindow()); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return alert() != nullptr; }));
    EXPECT_EQ(statusAfter([] {}), goesOn);
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(statusAfter([&] { alert()->close(); }), 1);
}

} // namespace
} // namespace quelm
