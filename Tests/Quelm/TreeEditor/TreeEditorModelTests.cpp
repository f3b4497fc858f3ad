// Random operations of the tree editor beside a plain model.

#include "Tests/Quelm/Support/MirroredTreeTest.h"

namespace quelm {
namespace {

class TreeEditorModelTests : public MirroredTreeTest, public testing::WithParamInterface<unsigned> {
protected:
    TreeEditorModelTests() : MirroredTreeTest(GetParam()) {}

    void grow() {
        constexpr std::int64_t manyNodes = 120;
        if (std::ssize(nodes) > manyNodes)
            remove();
        else if (oneIn(2))
            insert();
        else if (oneIn(2))
            duplicate();
        else
            paste();
    }
    void renew() {
        if (oneIn(2))
            format();
        else
            reload();
    }
    void takeRandomStep() {
        if (oneIn(2))
            selectAtRandom();
        const std::int64_t choice = below(100);
        if (choice < 22) {
            grow();
        } else if (choice < 30) {
            move();
        } else if (choice < 36) {
            remove();
        } else if (choice < 42) {
            changeType();
        } else if (choice < 48) {
            activate();
        } else if (choice < 58) {
            commitSomething();
        } else if (choice < 60) {
            cancel();
        } else if (choice < 66) {
            toggle();
        } else if (choice < 67) {
            expandAll();
        } else if (choice < 71) {
            expandSelection();
        } else if (choice < 76) {
            collapseOrSelectParent();
        } else if (choice < 77) {
            renew();
        } else if (choice < 90) {
            undo();
        } else if (choice < 98) {
            redo();
        } else {
            save();
        }
    }

    // What must be the same.

    void check() {
        ASSERT_EQ(json(), model->root().json());
        ASSERT_EQ(editor->selection(), selection);
        ASSERT_EQ(editor->editing(), editing);
        const auto nameOf = [](const NaiveDocument::Step* step) {
            return step ? QString::fromStdString(step->name) : QString();
        };
        ASSERT_EQ(manager->canUndo(), model->undoable() != nullptr);
        ASSERT_EQ(manager->canRedo(), model->redoable() != nullptr);
        ASSERT_EQ(manager->undoActionName(), nameOf(model->undoable()));
        ASSERT_EQ(manager->redoActionName(), nameOf(model->redoable()));
        ASSERT_EQ(document->isModified(), model->isModified());
        ASSERT_EQ(errors.size(), expectedErrors);

        const auto rows = expectedRows();
        const TreeOutline& outline = editor->outline();
        ASSERT_EQ(outline.rowCount(), std::ssize(rows));
        for (std::int64_t row = 0; row < outline.rowCount(); ++row) {
            const auto& [id, depth] = rows[static_cast<std::size_t>(row)];
            ASSERT_EQ(outline.rowID(row), id) << row;
            ASSERT_EQ(outline.rowDepth(row), depth) << row;
        }
    }
};

TEST_P(TreeEditorModelTests, RandomOperationsDoWhatThePlainModelDoes) {
    start(R"({"a":[1,{"b":true,"c":[]},null],"d":"x","e":{"a":{"a":{}}}})");
    const JSONTree first = tree();
    constexpr int steps = 20'000;
    for (int step = 0; step < steps; ++step) {
        takeRandomStep();
        check();
        if (step % 100 == 0)
            checkInvariants();
        ASSERT_FALSE(HasFailure()) << "at step " << step;
    }
    while (manager->canUndo()) {
        undo();
        check();
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_EQ(tree(), first);
    checkInvariants();
    while (manager->canRedo()) {
        redo();
        check();
        ASSERT_FALSE(HasFailure());
    }
    checkInvariants();
}

INSTANTIATE_TEST_SUITE_P(Seeds, TreeEditorModelTests, testing::Range(1U, 4U));

} // namespace
} // namespace quelm
