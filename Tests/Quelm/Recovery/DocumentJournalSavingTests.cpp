#include "Tests/Quelm/Recovery/JournaledDocumentTest.h"

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DocumentJournalSavingTests : public JournaledDocumentTest {
protected:
    static constexpr JSONStyle sorted = JSONStyle::pretty(JSONStyle::Indent::twoSpaces, true);
};

TEST_F(DocumentJournalSavingTests, AfterASaveThereIsNothingToRecover) {
    openText("[1]");
    typeAt(3, 0, QStringLiteral(" "));
    save();
    EXPECT_THAT(journalFiles(), IsEmpty());
    typeAt(4, 0, QStringLiteral("\n"));
    EXPECT_EQ(lineOf(records().front()), "base /casa/datos.json text compact of 4");
    EXPECT_THAT(lines(), ElementsAre("text 4-0 '\n'"));
    EXPECT_EQ(recovered(), "[1] \n");
}

TEST_F(DocumentJournalSavingTests, ASaveWithoutChangesWritesNothing) {
    openText("[1]");
    save();
    EXPECT_THAT(journalFiles(), IsEmpty());
}

TEST_F(DocumentJournalSavingTests, WhileTheFileIsAboutToBeReplacedBothOfItsStatesAreRecovered) {
    openText("[1]");
    typeAt(3, 0, QStringLiteral(" "));
    beginSave();
    typeAt(4, 0, QStringLiteral("\n"));
    replaceFile();
    typeAt(5, 0, QStringLiteral("\t"));
    EXPECT_THAT(lines(), ElementsAre("text 3-0 ' '", "text 4-0 '\n'",
                                     "base /casa/datos.json text compact of 4 before 1", "text 5-0 '\t'"));
    EXPECT_EQ(recovered("[1]", 0), "[1] \n\t");
    EXPECT_EQ(recovered("[1] ", 1), "[1] \n\t");
}

TEST_F(DocumentJournalSavingTests, WhatIsTypedDuringASaveIsStillThereAfterIt) {
    openText("[1]");
    typeAt(3, 0, QStringLiteral(" "));
    beginSave();
    typeAt(4, 0, QStringLiteral("\n"));
    replaceFile();
    endSave();
    EXPECT_TRUE(document.isModified());
    typeAt(5, 0, QStringLiteral("\t"));
    EXPECT_THAT(lines(), ElementsAre("text 3-0 ' '", "text 4-0 '\n'",
                                     "base /casa/datos.json text compact of 4 before 1", "saved", "text 5-0 '\t'"));
    EXPECT_EQ(recovered(), "[1] \n\t");
}

TEST_F(DocumentJournalSavingTests, AJournalThatBeginsDuringASaveKnowsBothStates) {
    openText("[1]");
    beginSave();
    replaceFile();
    typeAt(3, 0, QStringLiteral(" "));
    EXPECT_THAT(lines(), ElementsAre("base /casa/datos.json text compact of 3", "text 3-0 ' '"));
    EXPECT_EQ(recovered("[1]", 0), "[1] ");
    EXPECT_EQ(recovered("[1]", 1), "[1] ");
    endSave();
    EXPECT_EQ(recovered(), "[1] ");
}

TEST_F(DocumentJournalSavingTests, ASaveThatFailsLeavesTheJournalAsItWas) {
    const std::string text = "[\"" + std::string(1000, 'x') + "\"]";
    openText(text);
    const TextRope whole = document.textBuffer()->text();
    typeAt(0, document.textBuffer()->length(), QString());
    beginSave();
    replaceFile();
    journal->didNotSave();
    // What the file holds can be copied again.
    document.textBuffer()->replaceCharacters({0, 0}, whole);
    document.noteTextBufferEdited();
    EXPECT_THAT(lines(), ElementsAre("text 0-1004", "base /casa/datos.json text compact of 0", "not saved",
                                     "text 0-0 file@0+1004"));
    EXPECT_EQ(recovered(text), text);
}

TEST_F(DocumentJournalSavingTests, ASaveThatFailsBeforeItsEndIsNotToldOf) {
    openText("[1]");
    typeAt(3, 0, QStringLiteral(" "));
    beginSave();
    journal->didNotSave();
    typeAt(4, 0, QStringLiteral("\n"));
    EXPECT_THAT(lines(), ElementsAre("text 3-0 ' '", "text 4-0 '\n'"));
}

TEST_F(DocumentJournalSavingTests, DuringASaveNothingOfBeforeIsReferredTo) {
    openTree("[[1,2],3]");
    const NodeID list = child(0);
    applyEdits({TreeEdit::remove(list)});
    const std::vector<TreeEdit> back = undoList;
    reformat(JSONStyle::compact());
    beginSave();
    manager.undo();
    document.applyTreeEdits(back);
    replaceFile();
    EXPECT_THAT(lines(),
                ElementsAre("tree remove 0.0 as 1", "reformat 2->3 compact", "replace 3->2 compact tree '[3]'",
                            "tree insert '': [1,2] at 0[0]", "base /casa/datos.json tree compact of 3 before 2"));
    EXPECT_EQ(recovered("[[1,2],3]", 0), "[[1,2],3]");
    EXPECT_EQ(recovered("[3]", 1), "[[1,2],3]");
}

TEST_F(DocumentJournalSavingTests, AfterAFailedSaveWhatWasKnownIsReferredToAgain) {
    openTree("[[1,2],3]");
    const NodeID list = child(0);
    applyEdits({TreeEdit::remove(list)});
    beginSave();
    applyEdits({TreeEdit::remove(child(0))});
    const std::vector<TreeEdit> back = undoList;
    journal->didNotSave();
    document.applyTreeEdits(back);
    document.applyTreeEdits(std::vector{TreeEdit::insert(list, root(), 0)});
    EXPECT_THAT(lines(), ElementsAre("tree remove 0.0 as 1", "tree remove 0.0 as 2", "tree attach 2 at 0[0]",
                                     "tree attach 1 at 0[0]"));
    EXPECT_EQ(recovered(), "[[1,2],3]");
}

TEST_F(DocumentJournalSavingTests, WhatIsUndoneDuringASaveIsAChangeOfWhatIsSaved) {
    openText("[1]");
    typeStep(QStringLiteral(" "));
    beginSave();
    manager.undo();
    EXPECT_FALSE(document.isModified());
    replaceFile();
    EXPECT_THAT(lines(), ElementsAre("text 3-0 ' '", "text 0-4 '[1]'",
                                     "base /casa/datos.json text compact of 4 before 1"));
    EXPECT_EQ(recovered("[1] ", 1), "[1]");
    EXPECT_TRUE(wasModified);
    endSave();
    EXPECT_TRUE(document.isModified());
    EXPECT_EQ(recovered(), "[1]");
    EXPECT_TRUE(wasModified);
    manager.redo();
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(recovered(), "[1] ");
    EXPECT_FALSE(wasModified);
}

TEST_F(DocumentJournalSavingTests, WhatIsUndoneDuringASaveThatFailsIsNoChange) {
    openText("[1]");
    typeStep(QStringLiteral(" "));
    beginSave();
    manager.undo();
    journal->didNotSave();
    EXPECT_THAT(lines(), ElementsAre("text 3-0 ' '", "text 0-4 '[1]'", "unmodified"));
}

TEST_F(DocumentJournalSavingTests, ATreeWhoseFileIsSortedIsWrittenWholeBeforeItsNextEdit) {
    openTree("{\"b\":1,\"a\":2}");
    reformat(sorted);
    save();
    applyEdits({TreeEdit::setValue(child(0), NodeKind::number, "3")});
    EXPECT_THAT(lines(), ElementsAre("replace 3->3 twoSpaces sorted text tree made '{\"b\":1,\"a\":2}'",
                                     "tree set 0.0 = '3'"));
    EXPECT_EQ(recovered(), "{\n  \"a\": 2,\n  \"b\": 3\n}\n");
    undoEdits();
    save();
    EXPECT_THAT(journalFiles(), IsEmpty());
    applyEdits({TreeEdit::remove(child(0))});
    EXPECT_THAT(lines(),
                ElementsAre("replace 3->3 twoSpaces sorted tree '{\"b\":1,\"a\":2}'", "tree remove 0.0 as 1"));
    EXPECT_EQ(recovered(), "{\n  \"a\": 2\n}\n");
}

TEST_F(DocumentJournalSavingTests, ATextOfASortedStyleIsEditedAsItIs) {
    openText("{\"b\":1,\"a\":2}");
    reformat(sorted);
    save();
    typeAt(0, 0, QStringLiteral(" "));
    EXPECT_THAT(lines(), ElementsAre("text 0-0 ' '"));
}

TEST_F(DocumentJournalSavingTests, ADocumentThatIsReadAnewDuringASaveForgetsIt) {
    openText("[1]");
    typeAt(3, 0, QStringLiteral(" "));
    beginSave();
    edit("[2]");
    replaceFile();
    journal->didSave();
    EXPECT_THAT(journalFiles(), IsEmpty());
    describeFile("[2]");
    typeAt(3, 0, QStringLiteral("\n"));
    EXPECT_EQ(recovered(), "[2]\n");
}

TEST_F(DocumentJournalSavingTests, ASaveElsewhereMovesTheDocument) {
    begin();
    document.applyTreeChange([](JSONTree& tree) { return tree.insertChange(tree.root(), true); });
    beginSave();
    document.applyTreeChange([](JSONTree& tree) { return tree.insertChange(tree.root(), true); });
    replaceFile();
    EXPECT_EQ(lineOf(records().front()), "base - tree twoSpaces");
    const std::string expected = "{\n  \"clave\": \"\",\n  \"clave 2\": \"\"\n}\n";
    EXPECT_EQ(recovered("", 0), expected);
    EXPECT_EQ(recovered(fileText, 1), expected);
    endSave();
    EXPECT_EQ(recovered(), expected);
}

// A save that a loss of power may undo.

TEST_F(DocumentJournalSavingTests, ASaveInDoubtLeavesTheJournalForTheFileOfBefore) {
    const std::string text = "[\"" + std::string(1000, 'x') + "\"]";
    openText(text);
    typeAt(1004, 0, QStringLiteral(" "));
    beginSave();
    replaceFile();
    describeFile(std::string(fileText));
    journal->didSaveInDoubt();
    document.noteSaved(savedToken);
    EXPECT_FALSE(document.isModified());
    QCoreApplication::processEvents();
    EXPECT_EQ(recovered(text, 0), text + " ");
    EXPECT_TRUE(wasModified);
    recovered(text + " ", 1);
    EXPECT_FALSE(wasModified);
    // What follows holds from both, copies of the text included.
    const TextRope whole = document.textBuffer()->text();
    typeAt(0, document.textBuffer()->length(), QString());
    document.textBuffer()->replaceCharacters({0, 0}, whole);
    typeAt(1005, 0, QStringLiteral("\n"));
    EXPECT_EQ(recovered(text, 0), text + " \n");
    EXPECT_EQ(recovered(text + " ", 1), text + " \n");
    save();
    EXPECT_THAT(journalFiles(), IsEmpty());
}

TEST_F(DocumentJournalSavingTests, ADocumentThatIsClosedAfterASaveInDoubtLeavesItsJournal) {
    openText("[1]");
    typeAt(3, 0, QStringLiteral(" "));
    beginSave();
    replaceFile();
    describeFile(std::string(fileText));
    journal->didSaveInDoubt();
    document.noteSaved(savedToken);
    journal->discard();
    journal.reset();
    EXPECT_EQ(recovered("[1]", 0), "[1] ");
    EXPECT_TRUE(wasModified);
}

TEST_F(DocumentJournalSavingTests, ChangesAfterASaveInDoubtThatAreNotWantedAreNotOffered) {
    openText("[1]");
    typeAt(3, 0, QStringLiteral(" "));
    beginSave();
    replaceFile();
    describeFile(std::string(fileText));
    journal->didSaveInDoubt();
    document.noteSaved(savedToken);
    typeAt(4, 0, QStringLiteral("\n"));
    journal->discard();
    EXPECT_THAT(journalFiles(), IsEmpty());
}

} // namespace
} // namespace quelm
