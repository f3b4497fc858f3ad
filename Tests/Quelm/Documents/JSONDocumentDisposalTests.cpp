#include "Tests/Quelm/Documents/EditedDocumentTest.h"

#include <QTest>

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace quelm {
namespace {

/// Contents whose memory tells on which thread it is freed.
class JSONDocumentDisposalTests : public EditedDocumentTest {
protected:
    JSONContent notedContent() {
        static const std::string bytes = "[1, 2]";
        const std::shared_ptr<const void> owner(
            bytes.data(), [freedOn = freedOn](const void*) { *freedOn = std::this_thread::get_id(); });
        JSONContent content;
        content.text = TextRope(SharedText(owner, bytes));
        return content;
    }
    bool isFreed() const { return freedOn->load() != std::thread::id(); }
    bool isFreedElsewhere() const {
        return QTest::qWaitFor([this] { return isFreed(); }) && freedOn->load() != std::this_thread::get_id();
    }

    const std::shared_ptr<std::atomic<std::thread::id>> freedOn = std::make_shared<std::atomic<std::thread::id>>();
};

TEST_F(JSONDocumentDisposalTests, AContentThatIsSetAnewGoesOffTheMainThread) {
    document.setContent(notedContent());
    EXPECT_FALSE(isFreed());
    document.setContent(JSONContent::empty());
    EXPECT_TRUE(isFreedElsewhere());
}

TEST_F(JSONDocumentDisposalTests, AContentThatIsAppliedOverGoesOffTheMainThread) {
    document.apply(notedContent());
    document.apply(JSONContent::empty());
    EXPECT_TRUE(isFreedElsewhere());
}

TEST_F(JSONDocumentDisposalTests, AContentThatIsReplacedForGoodGoesOffTheMainThread) {
    document.setContent(notedContent());
    document.replaceContent(JSONContent::empty(), nullptr);
    EXPECT_TRUE(isFreedElsewhere());
}

TEST_F(JSONDocumentDisposalTests, ADroppedStepLetsGoOfItsContentOffTheMainThread) {
    document.setContent(notedContent());
    document.replaceContent(JSONContent::empty(), &manager);
    EXPECT_FALSE(isFreed());
    manager.removeAllActions();
    EXPECT_TRUE(isFreedElsewhere());
}

TEST_F(JSONDocumentDisposalTests, AStepThatWasUndoneLetsGoOfItsContentOffTheMainThread) {
    document.replaceContent(notedContent(), &manager);
    manager.undo();
    EXPECT_FALSE(isFreed());
    document.replaceContent(contentOf("[3]"), &manager);
    EXPECT_TRUE(isFreedElsewhere());
}

TEST_F(JSONDocumentDisposalTests, TheTextOfAnEditedTreeGoesOffTheMainThread) {
    JSONContent content = notedContent();
    content.tree = JSONTree(NodeKind::array);
    document.setContent(std::move(content));
    ASSERT_TRUE(document.applyTreeChange([](JSONTree& tree) { return tree.insertChange(tree.root(), true); }));
    EXPECT_TRUE(isFreedElsewhere());
}

TEST_F(JSONDocumentDisposalTests, ADocumentLetsGoOfItsContentOffTheMainThread) {
    auto brief = std::make_unique<JSONDocument>();
    brief->setContent(notedContent());
    brief.reset();
    EXPECT_TRUE(isFreedElsewhere());
}

TEST_F(JSONDocumentDisposalTests, UndoingGivesTheVeryContentBack) {
    document.setContent(notedContent());
    const TextRope text = *document.content().text;
    document.replaceContent(contentOf("[3]"), &manager);
    for (int round = 0; round < 2; ++round) {
        manager.undo();
        EXPECT_TRUE(document.content().text->isSameValue(text));
        manager.redo();
        EXPECT_EQ(contentText(), "[3]");
    }
}

} // namespace
} // namespace quelm
