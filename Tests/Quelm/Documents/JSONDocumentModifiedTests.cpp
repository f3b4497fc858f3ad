#include "Tests/Quelm/Documents/EditedDocumentTest.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class JSONDocumentModifiedTests : public EditedDocumentTest {
protected:
    void save() {
        document.snapshot();
        document.noteSaved(document.stateToken().current());
    }
    QSignalSpy announcements{&document, &JSONDocument::isModifiedChanged};
};

TEST_F(JSONDocumentModifiedTests, ANewDocumentAndOneJustReadAreUnmodified) {
    EXPECT_FALSE(document.isModified());
    document.apply(contentOf("[1]"));
    EXPECT_FALSE(document.isModified());
    document.apply(contentOf("[2]"));
    EXPECT_EQ(announcements.count(), 0);
}

TEST_F(JSONDocumentModifiedTests, TypingModifiesAndUndoingItDoesNot) {
    edit("[");
    typeStep(QStringLiteral("1"));
    EXPECT_TRUE(document.isModified());
    typeStep(QStringLiteral("]"));
    EXPECT_EQ(announcements.count(), 1);
    manager.undo();
    EXPECT_TRUE(document.isModified());
    manager.undo();
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(announcements.count(), 2);
    EXPECT_EQ(savedText(), "[");
    manager.redo();
    EXPECT_TRUE(document.isModified());
    EXPECT_EQ(announcements.count(), 3);
}

TEST_F(JSONDocumentModifiedTests, AfterASaveTheWayBackIsAModification) {
    edit("[");
    typeStep(QStringLiteral("1"));
    save();
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(announcements.count(), 2);
    typeStep(QStringLiteral("]"));
    manager.undo();
    EXPECT_FALSE(document.isModified());
    manager.undo();
    EXPECT_TRUE(document.isModified());
    manager.redo();
    EXPECT_FALSE(document.isModified());
}

TEST_F(JSONDocumentModifiedTests, ASaveNamesTheStateOfItsSnapshot) {
    edit("[");
    typeStep(QStringLiteral("1"));
    const StateToken::Value token = document.stateToken().current();
    document.snapshot();
    typeStep(QStringLiteral("]"));
    document.noteSaved(token);
    EXPECT_TRUE(document.isModified());
    manager.undo();
    EXPECT_FALSE(document.isModified());
}

TEST_F(JSONDocumentModifiedTests, AReplacementModifiesAndUndoingItDoesNot) {
    edit("[1]");
    document.replaceContent(contentOf("[ 1 ]"), &manager);
    EXPECT_TRUE(document.isModified());
    manager.undo();
    EXPECT_FALSE(document.isModified());
    manager.redo();
    EXPECT_TRUE(document.isModified());
    EXPECT_EQ(announcements.count(), 3);
}

TEST_F(JSONDocumentModifiedTests, AnEditWithoutAStepStaysAModification) {
    edit("[1]");
    document.replaceContent(contentOf("[ 1 ]"), &manager);
    type(QStringLiteral(" "));
    manager.undo();
    EXPECT_TRUE(document.isModified());
}

TEST_F(JSONDocumentModifiedTests, DroppingStepsAndNewFormsOfTheContentLeaveTheMark) {
    edit("[1]");
    typeStep(QStringLiteral(" "));
    manager.removeAllActions();
    EXPECT_TRUE(document.isModified());
    save();
    document.setContent(contentOf("[1] "));
    EXPECT_FALSE(document.isModified());
}

TEST_F(JSONDocumentModifiedTests, ReadingAgainIsUnmodifiedAndAnnouncedOnce) {
    edit("[1]");
    typeStep(QStringLiteral(" "));
    const StateToken::Value typed = document.stateToken().current();
    document.apply(contentOf("[1]"));
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(announcements.count(), 2);
    // A save of what was there before ends when something else has been read.
    document.noteSaved(typed);
    EXPECT_TRUE(document.isModified());
}

} // namespace
} // namespace quelm
