#include "Quelm/Application/FileExpectation.h"
#include "Quelm/Application/FileFollower.h"
#include "Quelm/Application/OutsideChanges.h"
#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/EditorWindow/EditorView.h"
#include "Tests/Quelm/Support/FakeClock.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QAbstractButton>
#include <QFile>
#include <QMessageBox>
#include <QTest>

#include <gtest/gtest.h>

// What follows from what, with the time in the hands of the tests.

namespace quelm {
namespace {

class FileFollowerTests : public testing::Test {
protected:
    FileFollowerTests() {
        auto loaded = loadDocument(path);
        document->configuration().setFileState(loaded->state);
        document->apply(std::move(loaded->content));
        window = std::make_unique<EditorView>(document);
        changes.add(*window);
        window->showDocument();
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        checkAndWait();
    }
    ~FileFollowerTests() override { window.reset(); }

    FileFollower& follower() const { return changes.follower(*window); }
    /// A check that sees what is there now, and all that follows but for what takes time.
    void checkAndWait() const {
        const auto before = follower().checkCount();
        follower().check();
        EXPECT_TRUE(QTest::qWaitFor([&] { return follower().checkCount() > before && !follower().isAtWork(); }));
    }
    void write(std::string_view bytes) const { folder.write(QStringLiteral("datos.json"), bytes); }
    std::string content() const { return std::string(JSONDocument::fileContents(document->snapshot()).view()); }
    void edit() const {
        TreeEditor& tree = window->treeEditor();
        tree.select(tree.tree()->children(tree.tree()->root()).front());
        tree.duplicate();
        EXPECT_TRUE(document->isModified());
    }
    QMessageBox* box() const {
        for (QMessageBox* box : window->findChildren<QMessageBox*>())
            if (box->isVisible())
                return box;
        return nullptr;
    }

    TemporaryPreferences preferences;
    TemporaryFolder folder;
    QString path = folder.write(QStringLiteral("datos.json"), "[1]");
    FakeClock clock;
    bool isHeld = false;
    int savesAs = 0;
    OutsideChanges changes{
        {.isHeld = [this](EditorView&) { return isHeld; }, .saveAs = [this](EditorView&) { ++savesAs; }}, clock};
    std::shared_ptr<JSONDocument> document =
        std::make_shared<JSONDocument>(std::make_shared<DocumentConfiguration>(path));
    std::unique_ptr<EditorView> window;
};

TEST_F(FileFollowerTests, AWindowThatBecomesActiveLooksAtItsFile) {
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    write("[1,2]");
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return content() == "[1,2]"; })) << "no time has passed for the watch";
}

TEST_F(FileFollowerTests, AnEditWhileTheFileIsReadIsNotLost) {
    write("[1,2]");
    follower().check();
    ASSERT_TRUE(QTest::qWaitFor([&] { return follower().isReloading(); }, 5000)) << "seen before it is delivered";
    edit();
    ASSERT_TRUE(QTest::qWaitFor([&] { return box() != nullptr; }));
    EXPECT_EQ(content(), "[1,1]");
}

TEST_F(FileFollowerTests, ALossIsToldWhenItHasLasted) {
    ASSERT_TRUE(QFile::remove(path));
    checkAndWait();
    checkAndWait();
    EXPECT_EQ(box(), nullptr) << "no time has passed";
    EXPECT_FALSE(document->isModified());
    clock.advance(FileFollower::confirmation);
    ASSERT_TRUE(QTest::qWaitFor([&] { return box() != nullptr; }));
    EXPECT_TRUE(document->isModified());
    box()->close();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !box(); }));
    clock.advance(FileFollower::confirmation);
    checkAndWait();
    EXPECT_EQ(box(), nullptr) << "it is told once";
}

TEST_F(FileFollowerTests, ALossThatHasNotLastedIsNotTold) {
    ASSERT_TRUE(QFile::remove(path));
    checkAndWait();
    write("[1]");
    clock.advance(FileFollower::confirmation);
    checkAndWait();
    EXPECT_EQ(box(), nullptr);
    EXPECT_FALSE(document->isModified());
}

TEST_F(FileFollowerTests, TextThatIsNotJSONTakesTheTreeAwayWhenItHasLasted) {
    write("[1,");
    checkAndWait();
    checkAndWait();
    EXPECT_EQ(document->mode(), EditorMode::tree);
    clock.advance(FileFollower::confirmation);
    EXPECT_TRUE(QTest::qWaitFor([&] { return document->mode() == EditorMode::text; }));
    EXPECT_EQ(content(), "[1,");
    EXPECT_FALSE(document->isModified());
}

TEST_F(FileFollowerTests, AFileThatIsStillBeingWrittenIsWaitedFor) {
    for (const std::string_view bytes : {"[1,", "[1,2,", "[1,2,3,"}) {
        write(bytes);
        clock.advance(FileFollower::confirmation);
        checkAndWait();
        EXPECT_EQ(document->mode(), EditorMode::tree) << bytes;
    }
    write("[1,2,3,4]");
    checkAndWait();
    EXPECT_EQ(content(), "[1,2,3,4]");
}

TEST_F(FileFollowerTests, NothingHappensWhileTheOwnerHasTheDocumentInHand) {
    isHeld = true;
    write("[1,2]");
    follower().check();
    EXPECT_FALSE(follower().isAtWork());
    isHeld = false;
    follower().resume();
    EXPECT_TRUE(QTest::qWaitFor([&] { return content() == "[1,2]"; }));
}

TEST_F(FileFollowerTests, AChangeWhileTheFileIsOpenedIsSeenAfterwards) {
    auto loaded = loadDocument(path);
    const auto opened = std::make_shared<JSONDocument>(std::make_shared<DocumentConfiguration>(path));
    EditorView opening(opened);
    changes.add(opening);
    write("[1,2]");
    changes.follower(opening).check();
    EXPECT_FALSE(changes.follower(opening).isAtWork());
    opened->configuration().setFileState(loaded->state);
    opened->apply(std::move(loaded->content));
    opening.showDocument();
    changes.follower(opening).resume();
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return std::string(JSONDocument::fileContents(opened->snapshot()).view()) == "[1,2]";
    }));
}

TEST_F(FileFollowerTests, AnOpenFieldIsWaitedFor) {
    TreeEditor& tree = window->treeEditor();
    tree.select(tree.tree()->children(tree.tree()->root()).front());
    tree.activate(TreeEditor::Field::value);
    write("[1,2]");
    checkAndWait();
    EXPECT_EQ(content(), "[1]");
    ASSERT_TRUE(tree.editing().has_value());
    tree.setEditing(std::nullopt);
    clock.advance(FileFollower::retryDelay);
    EXPECT_TRUE(QTest::qWaitFor([&] { return content() == "[1,2]"; }));
}

TEST_F(FileFollowerTests, AnotherQuestionIsWaitedFor) {
    edit();
    auto* other = new QMessageBox(window.get());
    other->open();
    write("[1,2]");
    checkAndWait();
    EXPECT_EQ(box(), other);
    other->close();
    delete other;
    clock.advance(FileFollower::retryDelay);
    EXPECT_TRUE(QTest::qWaitFor([&] { return box() != nullptr; }));
}

TEST_F(FileFollowerTests, AChangeWhileItIsAskedIsPartOfTheAnswer) {
    edit();
    write("[1,2]");
    checkAndWait();
    QMessageBox* asked = box();
    ASSERT_NE(asked, nullptr);
    write("[1,2,3]");
    checkAndWait();
    EXPECT_EQ(box(), asked);
    EXPECT_TRUE(follower().expectation(path)->isChanged());
    for (QAbstractButton* button : asked->buttons())
        if (button->text() == QStringLiteral("Conservar lo mío"))
            QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !box(); }));
    EXPECT_FALSE(follower().expectation(path)->isChanged()) << "the user has agreed to it";
    write("[1,2,3,4]");
    EXPECT_TRUE(follower().expectation(path)->isChanged());
}

TEST_F(FileFollowerTests, ADocumentWithoutAFileIsLeftAlone) {
    document->configuration().setFileState(std::nullopt);
    write("[1,2]");
    follower().check();
    EXPECT_FALSE(follower().isAtWork());
    EXPECT_EQ(follower().expectation(path), nullptr);
}

TEST_F(FileFollowerTests, NothingIsExpectedOfAFileThatIsNotTheDocuments) {
    EXPECT_EQ(follower().expectation(folder.path(QStringLiteral("otro.json"))), nullptr);
    EXPECT_NE(follower().expectation(path), nullptr);
}

TEST_F(FileFollowerTests, TheWatchFollowsTheDocumentToAnotherFile) {
    const QString other = folder.write(QStringLiteral("otro.json"), "[1]");
    EXPECT_TRUE(changes.watch().watchedPaths().contains(path));
    document->configuration().setFileLocation(other);
    EXPECT_TRUE(changes.watch().watchedPaths().contains(other));
    EXPECT_FALSE(changes.watch().watchedPaths().contains(path));
    window.reset();
    EXPECT_TRUE(changes.watch().watchedPaths().isEmpty());
}

} // namespace
} // namespace quelm
