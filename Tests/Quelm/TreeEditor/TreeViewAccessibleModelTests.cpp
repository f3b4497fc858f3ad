#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TreeEditor/TreeRowAccessibleName.h"
#include "Tests/Quelm/TreeEditor/TreeViewAccessibleTest.h"

#include <gtest/gtest.h>
#include <random>
#include <unordered_map>

namespace quelm {
namespace {

/// Edits at random, beside what a row that is made anew would say.
class TreeViewAccessibleModelTests : public TreeViewAccessibleTest {
protected:
    int below(std::int64_t end) { return static_cast<int>(random() % static_cast<std::uint64_t>(end)); }
    NodeID anyNode() { return editor->outline().rowID(below(rowCount())); }

    void edit() {
        editor->setEditing(std::nullopt);
        editor->select(anyNode());
        switch (below(10)) {
        case 0:
            return editor->insert(below(2) == 0);
        case 1:
            return editor->duplicate();
        case 2:
            return editor->remove();
        case 3:
            return editor->move(below(2) == 0 ? 1 : -1);
        case 4:
            return editor->changeType(anyNode(), allNodeKinds[static_cast<std::size_t>(below(6))]);
        case 5:
            return undoManager.undo();
        case 6:
            return undoManager.redo();
        case 7:
            undoManager.removeAllActions(); // of another tree
            return replace(below(20) == 0 ? "[1,[2,{\"a\":3}]]" : "{\"a\":[1,2,[3]],\"b\":{\"c\":null}}");
        default:
            return editor->toggleExpansion(anyNode(), below(2) == 0);
        }
    }

    void checkRow(int index) {
        const NodeID id = editor->outline().rowID(index);
        QAccessibleInterface& row = this->row(index);
        ASSERT_TRUE(row.isValid());
        EXPECT_EQ(dynamic_cast<TreeRowAccessible&>(row).node(), id);
        EXPECT_EQ(row.text(QAccessible::Name), treeRowName(id, *editor->tree()));
        EXPECT_EQ(row.tableCellInterface()->rowIndex(), index);
        EXPECT_EQ(row.state().selected, editor->selection() == id);
        EXPECT_EQ(whole().indexOfChild(&row), index);
        held[QAccessible::uniqueId(&row)] = {id, *editor->outlineRevision()};
    }

    /// Of all rows that were ever asked for, whatever became of them.
    void checkHeldRows() {
        for (const auto& [number, node] : held) {
            const QAccessibleInterface* row = QAccessible::accessibleInterface(number);
            if (!row)
                continue;
            const bool isThere = node.revision == *editor->outlineRevision() && editor->outline().index(node.id);
            EXPECT_EQ(row->isValid(), isThere);
            EXPECT_EQ(row->state().invalid, !isThere);
        }
    }

    struct Node {
        NodeID id;
        std::int64_t revision;
    };
    std::mt19937_64 random{20};
    UndoManager undoManager;
    std::unordered_map<QAccessible::Id, Node> held;
};

TEST_F(TreeViewAccessibleModelTests, RowsStayTrueToTheirNodesThroughRandomEdits) {
    open("{\"a\":[1,2,[3]],\"b\":{\"c\":null,\"d\":true}}");
    editor->setUndoManager(&undoManager);
    for (int round = 0; round < 600; ++round) {
        edit();
        ASSERT_EQ(whole().childCount(), rowCount());
        for (int times = 0; times < 4; ++times)
            checkRow(below(rowCount()));
        checkHeldRows();
        tree().checkInvariants();
        ASSERT_FALSE(HasFailure()) << "in round " << round;
    }
}

} // namespace
} // namespace quelm
