// Edits a document with keys until it is killed, and prints each step when it is done:
//
//     RecoveryVictim text|tree SEED FILE FOLDER
//
// A line a step, of its number and the time in milliseconds of the clock that all processes share.

#include "FileCore/FileStamp.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/Foundation/Preferences.h"
#include "Quelm/Recovery/DocumentJournal.h"
#include "Quelm/Recovery/JournalThread.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "Tests/Quelm/RecoveryVictim/VictimSteps.h"
#include "TextCore/Check.h"

#include <QApplication>
#include <QFile>
#include <QTest>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace quelm {
namespace {

void press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
}

void noteDone(int step) {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("%d %lld\n", step,
                static_cast<long long>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()));
    std::fflush(stdout);
}

[[noreturn]] void type(unsigned seed) {
    VictimTyping typing(seed);
    press(Qt::Key_End, Qt::ControlModifier);
    for (int step = 1;; ++step) {
        const char key = typing.next();
        if (key == '\b')
            press(Qt::Key_Backspace);
        else
            QTest::keyClick(QApplication::focusWidget(), key);
        noteDone(step);
        QCoreApplication::processEvents();
    }
}

[[noreturn]] void editTree(unsigned seed) {
    VictimTreeEditing editing(seed);
    for (int step = 1;; ++step) {
        const VictimTreeEditing::Step next = editing.next();
        press(Qt::Key_Home);
        for (std::size_t row = 0; row <= next.index; ++row)
            press(Qt::Key_Down);
        if (next.value.empty()) {
            press(Qt::Key_Delete);
        } else {
            press(Qt::Key_Return);
            press(Qt::Key_A, Qt::ControlModifier);
            QTest::keyClicks(QApplication::focusWidget(), QString::fromStdString(next.value));
            press(Qt::Key_Return);
        }
        noteDone(step);
        QCoreApplication::processEvents();
    }
}

[[noreturn]] void edit(bool isText, unsigned seed, const QString& path, const QString& folder) {
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "the victim's file can be read");
    const std::string bytes = file.readAll().toStdString();
    Preferences::setInitialMode(isText ? Preferences::InitialMode::text : Preferences::InitialMode::tree);

    const auto document = std::make_shared<JSONDocument>(std::make_shared<DocumentConfiguration>(path));
    document->configuration().setFileState(
        FileState{.stamp = FileStamp::of(path.toStdString()).value(), .checksum = ContentChecksum::of(bytes)});
    document->apply(JSONContent::fromData(SharedText(bytes)).value());
    EditorView window(document);
    window.showDocument();
    window.show();
    window.activateWindow();
    require(QTest::qWaitForWindowActive(&window), "the victim's window is active");
    JournalThread thread;
    const DocumentJournal journal(*document, folder, thread);
    if (isText)
        window.textEditor()->textView().setFocus();
    else
        window.treeView()->setFocus();
    isText ? type(seed) : editTree(seed);
}

} // namespace
} // namespace quelm

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    quelm::require(argc == 5, "a victim is told what to do");
    quelm::edit(std::string_view(argv[1]) == "text", static_cast<unsigned>(std::atoi(argv[2])),
                QString::fromUtf8(argv[3]), QString::fromUtf8(argv[4]));
}
