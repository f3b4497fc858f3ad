#include "Tests/Quelm/Recovery/JournaledDocumentTest.h"
#include "Tests/Quelm/Support/FakeClock.h"

#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>

#include <sys/stat.h>

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DocumentJournalTests : public JournaledDocumentTest {
protected:
    std::string baseLine() { return lineOf(records().front()); }

    static unsigned permissions(const QString& path) {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        return status.st_mode & 07777U;
    }
};

TEST_F(DocumentJournalTests, NothingIsWrittenBeforeTheFirstChange) {
    openText("[1]");
    changeMode(EditorMode::tree);
    EXPECT_FALSE(QFileInfo::exists(folder.path(journalFolder)));
}

TEST_F(DocumentJournalTests, TheFirstChangeBeginsAFileThatOnlyTheUserMayRead) {
    openText("[1]");
    typeAt(2, 0, QStringLiteral(",2"));
    const QStringList files = journalFiles();
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(files.front().endsWith(QStringLiteral(".journal")));
    EXPECT_EQ(permissions(folder.path(journalFolder)), 0700U);
    EXPECT_EQ(permissions(folder.path(journalFolder + u'/' + files.front())), 0600U);
}

TEST_F(DocumentJournalTests, TheBaseIsTheFileInTheEditorOfNow) {
    openTree("{\n\t\"a\": 1\n}\n");
    changeMode(EditorMode::text);
    typeAt(0, 0, QStringLiteral(" "));
    EXPECT_EQ(baseLine(), "base /casa/datos.json text tab of 12");
    EXPECT_THAT(lines(), ElementsAre("text 0-0 ' '"));
}

TEST_F(DocumentJournalTests, ANewDocumentHasABaseWithoutAFile) {
    begin();
    document.applyTreeChange([](JSONTree& tree) { return tree.insertChange(tree.root(), true); });
    EXPECT_EQ(baseLine(), "base - tree twoSpaces");
    EXPECT_THAT(lines(), ElementsAre("tree insert 'clave': \"\" at 0[0]"));
}

TEST_F(DocumentJournalTests, EachEditOfTheTextIsARecord) {
    openText("[\"añ\"]");
    typeAt(4, 0, QStringLiteral("é"));
    typeAt(1, 5, QString());
    EXPECT_THAT(lines(), ElementsAre("text 5-0 'é'", "text 1-7"));
    EXPECT_EQ(recovered(), "[]");
    EXPECT_TRUE(wasModified);
    EXPECT_EQ(recoveredMode, EditorMode::text);
}

TEST_F(DocumentJournalTests, EditsOfTheTreeNameNodesByTheirPlaces) {
    openTree("{\"a\": [1, 2], \"b\": true}");
    const NodeID list = child(0);
    applyEdits({TreeEdit::setValue(tree().children(list)[1], NodeKind::string, "x"), TreeEdit::setKey(list, "c")});
    applyEdits({TreeEdit::remove(list)});
    undoEdits();
    undoEdits();
    EXPECT_THAT(lines(), ElementsAre("tree set 0.0.1 = 'x'; key 0.0 = 'c'", "tree remove 0.0 as 1",
                                     "tree attach 1 at 0[0]", "tree remove 0.0 as 2"));
    EXPECT_EQ(recovered(), "{\"b\":true}");
}

TEST_F(DocumentJournalTests, ANodeThatMovesIsNotWritten) {
    openTree("[[0,1,2],3]");
    applyEdits({TreeEdit::remove(child(0)), TreeEdit::insert(child(0), root(), 1)});
    EXPECT_THAT(lines(), ElementsAre("tree remove 0.0 as 1; attach 1 at 0[1]"));
    EXPECT_EQ(recovered(), "[3,[0,1,2]]");
}

TEST_F(DocumentJournalTests, ANewNodeIsWrittenWithAllThatIsInIt) {
    openTree("{}");
    document.applyTreeChange(
        [](JSONTree& tree) { return tree.pasteChange(*contentOf("[1,{\"é\":null}]").tree, tree.root(), true); });
    EXPECT_THAT(lines(), ElementsAre("tree insert 'pegado': [1,{\"é\":null}] at 0[0]"));
}

TEST_F(DocumentJournalTests, TheTopLevelValueCanChangeItsKind) {
    openTree("{\"a\": 1}");
    document.applyTreeChange([](JSONTree& tree) { return tree.kindChange(tree.root(), NodeKind::string); });
    EXPECT_THAT(lines(), ElementsAre("tree remove 0 as 1; insert '': \"\" at top[0]"));
    EXPECT_EQ(recovered(), "\"\"");
}

TEST_F(DocumentJournalTests, ANodeThatWasEditedWhileDetachedIsWrittenAnew) {
    openTree("[[1],2]");
    const NodeID list = child(0);
    applyEdits({TreeEdit::remove(list), TreeEdit::setValue(tree().children(list)[0], NodeKind::number, "5"),
                TreeEdit::insert(list, root(), 1)});
    EXPECT_THAT(lines(), ElementsAre("tree remove 0.0 as 1; insert '': [5] at 0[1]"));
    EXPECT_EQ(recovered(), "[2,[5]]");
}

TEST_F(DocumentJournalTests, AFormatAndItsUndoTakeNothingOfTheContent) {
    openText("{\"b\":1,\"a\":[2]}");
    reformat(JSONStyle::pretty(JSONStyle::Indent::tab, true));
    typeAt(0, 0, QStringLiteral(" "));
    manager.undo();
    manager.redo();
    EXPECT_EQ(baseLine(), "base /casa/datos.json text compact of 15");
    EXPECT_THAT(lines(), ElementsAre("reformat 2->3 tab sorted", "text 0-0 ' '", "return 3->2", "return 2->3"));
    EXPECT_EQ(recovered(), bufferText());
    EXPECT_EQ(bufferText(), " {\n\t\"a\": [\n\t\t2\n\t],\n\t\"b\": 1\n}\n");
}

TEST_F(DocumentJournalTests, AContentThatIsNotKnownIsWrittenWhole) {
    openText("[1]");
    document.replaceContent(contentOf("{\"a\":2}"), &manager);
    EXPECT_THAT(lines(), ElementsAre("replace 2->3 compact text tree '{\"a\":2}'"));
    EXPECT_EQ(recovered(), "{\"a\":2}");
}

TEST_F(DocumentJournalTests, ChangesOfTheModeAreTold) {
    openText("[1]");
    typeAt(2, 0, QStringLiteral("0"));
    changeMode(EditorMode::tree);
    applyEdits({TreeEdit::setValue(child(0), NodeKind::number, "7")});
    changeMode(EditorMode::text);
    EXPECT_THAT(lines(), ElementsAre("text 2-0 '0'", "mode tree", "tree set 0.0 = '7'", "mode text"));
    EXPECT_EQ(recovered(), "[7]");
}

TEST_F(DocumentJournalTests, NumbersOfNodesGoWithTheirTree) {
    openTree("[1,2]");
    const NodeID first = child(0);
    applyEdits({TreeEdit::remove(first)});
    changeMode(EditorMode::text);
    typeAt(1, 0, QStringLiteral("8,9,"));
    changeMode(EditorMode::tree);
    // Another node of the new tree by the same id.
    applyEdits({TreeEdit::remove(first)});
    undoEdits();
    EXPECT_THAT(lines(), ElementsAre("tree remove 0.0 as 1", "mode text", "text 1-0 '8,9,'", "mode tree",
                                     "tree remove 0.0 as 2", "tree attach 2 at 0[0]"));
    EXPECT_EQ(recovered(), "[8,9,2]");
}

TEST_F(DocumentJournalTests, UndoingEverythingIsToldAndSoIsDoingItAgain) {
    openText("[1]");
    typeStep(QStringLiteral(" "));
    manager.undo();
    EXPECT_THAT(lines(), ElementsAre("text 3-0 ' '", "text 0-4 '[1]'", "unmodified"));
    EXPECT_EQ(recovered(), "[1]");
    EXPECT_FALSE(wasModified);
    manager.redo();
    EXPECT_EQ(recovered(), "[1] ");
    EXPECT_TRUE(wasModified);
}

TEST_F(DocumentJournalTests, AtTheEndTheFileIsLeftIfThereIsAnythingToRecover) {
    openText("[1]");
    typeStep(QStringLiteral(" "));
    journal.reset();
    EXPECT_EQ(journalFiles().size(), 1);
}

TEST_F(DocumentJournalTests, AtTheEndTheFileGoesIfEverythingIsUndone) {
    openText("[1]");
    typeStep(QStringLiteral(" "));
    manager.undo();
    journal.reset();
    EXPECT_THAT(journalFiles(), IsEmpty());
}

TEST_F(DocumentJournalTests, DiscardingTakesTheFileAway) {
    openText("[1]");
    typeStep(QStringLiteral(" "));
    journal->discard();
    EXPECT_THAT(journalFiles(), IsEmpty());
    journal.reset();
    EXPECT_THAT(journalFiles(), IsEmpty());
}

TEST_F(DocumentJournalTests, WhatIsChangedAfterDiscardingIsWrittenWhole) {
    openText("[1]");
    typeStep(QStringLiteral(" "));
    journal->discard();
    typeStep(QStringLiteral("\n"));
    type(QStringLiteral("2"));
    EXPECT_THAT(lines(), ElementsAre("replace 2->2 compact text '[1] \n'", "text 5-0 '2'"));
    EXPECT_EQ(recovered(), "[1] \n2");
}

TEST_F(DocumentJournalTests, ADocumentThatIsReadAnewBeginsAnew) {
    openText("[1]");
    typeAt(0, 0, QStringLiteral(" "));
    describeFile("[2]");
    edit("[2]");
    EXPECT_THAT(journalFiles(), IsEmpty());
    typeAt(0, 0, QStringLiteral("\n"));
    EXPECT_THAT(lines(), ElementsAre("text 0-0 '\n'"));
    EXPECT_EQ(recovered(), "\n[2]");
}

TEST_F(DocumentJournalTests, ADocumentThatIsModifiedFromTheBeginningIsWrittenWhole) {
    describeFile("[1]");
    begin();
    document.applyUnsaved(contentOf("[1"), EditorMode::text);
    QCoreApplication::processEvents();
    EXPECT_EQ(baseLine(), "base /casa/datos.json text compact of 3");
    EXPECT_THAT(lines(), ElementsAre("replace 2->2 compact text '[1'"));
    EXPECT_EQ(recovered(), "[1");
    journal = std::make_unique<DocumentJournal>(document, folder.path(QStringLiteral("otra")), thread);
    thread.wait();
    EXPECT_EQ(QDir(folder.path(QStringLiteral("otra"))).entryList(QDir::Files).size(), 1);
}

TEST_F(DocumentJournalTests, ADocumentWhoseFileIsGoneIsWrittenWholeForItself) {
    openText("[1]");
    document.noteUnsaved();
    ASSERT_TRUE(QTest::qWaitFor([&] { return journalFiles().size() == 1; }));
    EXPECT_EQ(baseLine(), "base /casa/datos.json text compact");
    EXPECT_THAT(lines(), ElementsAre("replace 2->2 compact text tree '[1]'"));
    EXPECT_EQ(recovered(""), "[1]");
}

TEST_F(DocumentJournalTests, AnEditedDocumentCanBeMadeIndependentOfItsFile) {
    openText("[1]");
    typeAt(3, 0, QStringLiteral(" "));
    journal->standAlone();
    typeAt(4, 0, QStringLiteral("\n"));
    EXPECT_EQ(baseLine(), "base /casa/datos.json text compact");
    EXPECT_EQ(recovered(""), "[1] \n");
}

TEST_F(DocumentJournalTests, AnUneditedDocumentIsIndependentFromItsNextChangeOn) {
    openTree("[1]");
    journal->standAlone();
    EXPECT_FALSE(QFileInfo::exists(folder.path(journalFolder)));
    applyEdits({TreeEdit::setValue(child(0), NodeKind::number, "2")});
    EXPECT_EQ(baseLine(), "base /casa/datos.json tree compact");
    EXPECT_THAT(lines(), ElementsAre("replace 2->2 compact tree '[2]'"));
    EXPECT_EQ(recovered(""), "[2]");
}

TEST_F(DocumentJournalTests, AnIndependentJournalCopiesNothingOfTheFile) {
    const std::string text = "[\"" + std::string(1000, 'x') + "\"]";
    openText(text);
    typeAt(1004, 0, QStringLiteral("\n"));
    journal->standAlone();
    EXPECT_EQ(recovered(""), text + "\n");
    // Nor after a save that came to nothing.
    beginSave();
    journal->standAlone();
    journal->didNotSave();
    const TextRope whole = document.textBuffer()->text();
    typeAt(0, document.textBuffer()->length(), QString());
    document.textBuffer()->replaceCharacters({0, 0}, whole);
    document.noteTextBufferEdited();
    EXPECT_EQ(recovered(""), text + "\n");
}

TEST_F(DocumentJournalTests, ADocumentThatIsNotWhatItsFileHoldsCopiesNothingOfIt) {
    const std::string held = "[\"" + std::string(1000, 'x') + "\"]";
    describeFile(held);
    document.applyUnsaved(contentOf("[\"" + std::string(1006, 'y') + "\"]"), EditorMode::text);
    begin();
    ASSERT_TRUE(document.isModified());
    EXPECT_EQ(recovered(), "[\"" + std::string(1006, 'y') + "\"]");
}

TEST_F(DocumentJournalTests, AFileThatTheDocumentWasNotMadeFromIsNoBase) {
    describeFile("[1]");
    document.configuration().setFileState(FileState::unknown());
    document.applyUnsaved(contentOf("[2]"), EditorMode::text);
    begin();
    EXPECT_EQ(baseLine(), "base /casa/datos.json text compact");
    EXPECT_EQ(recovered(""), "[2]");
}

TEST_F(DocumentJournalTests, WhatIsCopiedFromTheFileIsNotWritten) {
    const std::string text = "[\"" + std::string(10'000, 'x') + "\"]";
    openText(text);
    typeStep(QStringLiteral("\n"));
    const TextRope whole = document.textBuffer()->text();
    typeAt(0, document.textBuffer()->length(), QString());
    document.textBuffer()->replaceCharacters({0, 0}, whole);
    document.noteTextBufferEdited();
    EXPECT_THAT(lines(), ElementsAre("text 10004-0 '\n'", "text 0-10005", "text 0-0 file@0+10004 '\n'"));
    EXPECT_EQ(recovered(), text + "\n");
}

TEST_F(DocumentJournalTests, AJournalThatWasRecoveredFromIsContinued) {
    openText("[1]");
    typeAt(3, 0, QStringLiteral(" "));
    journal.reset();
    const QString path = folder.path(journalFolder + u'/' + journalFiles().front());
    auto left = JournalRecovery::open(QFile::encodeName(path).toStdString());
    ASSERT_TRUE(left && *left);
    auto file = (**std::move(left)).continueWriting();
    ASSERT_TRUE(file);

    document.applyUnsaved(contentOf("[1] "), EditorMode::text);
    document.attachTextBuffer(std::make_shared<TextStorage>(*document.content().text));
    journal = std::make_unique<DocumentJournal>(document, folder.path(journalFolder), thread, *std::move(file),
                                                JournalNumbers{.nextContent = 9, .nextDetached = 5});
    typeAt(4, 0, QStringLiteral("\n"));
    reformat(JSONStyle::compact());
    manager.undo();
    changeMode(EditorMode::tree);
    applyEdits({TreeEdit::remove(child(0))});
    EXPECT_THAT(lines(), ElementsAre("text 3-0 ' '", "text 4-0 '\n'", "reformat 9->10 compact", "return 10->9",
                                     "mode tree", "tree remove 0.0 as 5"));
    EXPECT_EQ(recovered(), "[]");
    EXPECT_TRUE(wasModified);
    journal.reset();
    EXPECT_EQ(journalFiles().size(), 1);
}

TEST_F(DocumentJournalTests, AFailureIsToldOnceAndTheDocumentGoesOn) {
    folder.write(QStringLiteral("estado"), "no folder");
    openText("[1]");
    QSignalSpy failures(journal.get(), &DocumentJournal::didFail);
    typeAt(3, 0, QStringLiteral(" "));
    typeAt(3, 0, QStringLiteral(" "));
    thread.wait();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !failures.isEmpty(); }));
    typeAt(3, 0, QStringLiteral(" "));
    save();
    typeAt(3, 0, QStringLiteral(" "));
    thread.wait();
    QCoreApplication::processEvents();
    ASSERT_EQ(failures.size(), 1);
    const QString message = failures.front().front().toString();
    EXPECT_TRUE(message.startsWith(QStringLiteral("Los cambios de “datos.json” no se pueden anotar"))) << message.toStdString();
    EXPECT_EQ(bufferText(), "[1]    ");
}

TEST_F(DocumentJournalTests, AfterAFailureItIsTriedAgainInAWhile) {
    folder.write(QStringLiteral("estado"), "no folder");
    FakeClock clock;
    describeFile("[1]");
    edit("[1]");
    journal = std::make_unique<DocumentJournal>(document, folder.path(journalFolder), thread, clock);
    QSignalSpy failures(journal.get(), &DocumentJournal::didFail);
    const auto failAt = [&](qint64 location) {
        typeAt(location, 0, QStringLiteral(" "));
        // Told to the program or not, the clock is asked for the next time.
        ASSERT_TRUE(QTest::qWaitFor([&] { return clock.pendingCount() == 1; }));
    };
    failAt(3);
    clock.advance(DocumentJournal::retryDelay);
    failAt(4);
    ASSERT_TRUE(QFile::remove(folder.path(QStringLiteral("estado"))));
    clock.advance(DocumentJournal::retryDelay - std::chrono::seconds(1));
    typeAt(5, 0, QStringLiteral(" "));
    EXPECT_THAT(journalFiles(), IsEmpty());
    clock.advance(std::chrono::seconds(1));
    typeAt(6, 0, QStringLiteral("\n"));
    typeAt(7, 0, QStringLiteral("\t"));
    EXPECT_THAT(lines(), ElementsAre("replace 2->2 compact text '[1]   \n'", "text 7-0 '\t'"));
    EXPECT_EQ(recovered(), "[1]   \n\t");
    EXPECT_EQ(failures.size(), 1);
}

TEST_F(DocumentJournalTests, ADamagedJournalIsKeptAsideOnceTheDocumentIsSafe) {
    const QString place = folder.path(journalFolder);
    ASSERT_TRUE(QDir().mkpath(place));
    folder.write(journalFolder + QStringLiteral("/viejo.journal"), "damaged");
    describeFile("[1]");
    document.applyUnsaved(contentOf("[1] "), EditorMode::text);
    begin();
    auto left = JournalRecovery::open((place + QStringLiteral("/viejo.journal")).toStdString());
    ASSERT_TRUE(left && *left);
    journal->takePlaceOf(**std::move(left));
    const QStringList files = journalFiles();
    EXPECT_EQ(files.size(), 2);
    EXPECT_TRUE(files.contains(QStringLiteral("viejo.journal.apartado")));
}

TEST_F(DocumentJournalTests, AfterAFailureASaveBeginsAnew) {
    folder.write(QStringLiteral("estado"), "no folder");
    openText("[1]");
    QSignalSpy failures(journal.get(), &DocumentJournal::didFail);
    typeAt(3, 0, QStringLiteral(" "));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !failures.isEmpty(); }));
    ASSERT_TRUE(QFile::remove(folder.path(QStringLiteral("estado"))));
    beginSave();
    typeAt(4, 0, QStringLiteral("\n"));
    replaceFile();
    endSave();
    EXPECT_THAT(lines(), ElementsAre("replace 2->2 compact text '[1] \n'"));
    EXPECT_EQ(recovered(), "[1] \n");
}

} // namespace
} // namespace quelm
