#include "JSONCore/TreeEdit.h"
#include "Tests/JSONCore/Support/Printing.h"

#include <gtest/gtest.h>
#include <vector>

namespace quelm {
namespace {

TEST(TreeEdit, ShowsThePayloadOfItsCaseAlone) {
    const TreeEdit setKey = TreeEdit::setKey(NodeID{3}, "clave");
    ASSERT_TRUE(setKey.asSetKey());
    EXPECT_EQ(setKey.asSetKey()->id, NodeID{3});
    EXPECT_EQ(setKey.asSetKey()->key.view(), "clave");
    EXPECT_FALSE(setKey.asSetValue() || setKey.asInsert() || setKey.asRemove());

    const TreeEdit setValue = TreeEdit::setValue(NodeID{4}, NodeKind::number, "1.5");
    ASSERT_TRUE(setValue.asSetValue());
    EXPECT_EQ(setValue.asSetValue()->id, NodeID{4});
    EXPECT_EQ(setValue.asSetValue()->kind, NodeKind::number);
    EXPECT_EQ(setValue.asSetValue()->text.view(), "1.5");
    EXPECT_FALSE(setValue.asSetKey() || setValue.asInsert() || setValue.asRemove());

    const TreeEdit insert = TreeEdit::insert(NodeID{5}, NodeID{1}, 2);
    ASSERT_TRUE(insert.asInsert());
    EXPECT_EQ(insert.asInsert()->id, NodeID{5});
    EXPECT_EQ(insert.asInsert()->parent, NodeID{1});
    EXPECT_EQ(insert.asInsert()->at, 2);
    EXPECT_FALSE(insert.asSetKey() || insert.asSetValue() || insert.asRemove());

    const TreeEdit remove = TreeEdit::remove(NodeID{6});
    ASSERT_TRUE(remove.asRemove());
    EXPECT_EQ(remove.asRemove()->id, NodeID{6});
    EXPECT_FALSE(remove.asSetKey() || remove.asSetValue() || remove.asInsert());
}

TEST(TreeEdit, TellsWhichNodeItIsAbout) {
    EXPECT_EQ(TreeEdit::setKey(NodeID{3}, "a").id(), NodeID{3});
    EXPECT_EQ(TreeEdit::setValue(NodeID{4}, NodeKind::null, "").id(), NodeID{4});
    EXPECT_EQ(TreeEdit::insert(NodeID{5}, NodeID{1}, 0).id(), NodeID{5});
    EXPECT_EQ(TreeEdit::remove(NodeID{6}).id(), NodeID{6});
}

TEST(TreeEdit, EqualsOnlyTheSameCaseWithTheSamePayload) {
    const std::vector<TreeEdit> edits{
        TreeEdit::setKey(NodeID{1}, "a"),
        TreeEdit::setKey(NodeID{2}, "a"),
        TreeEdit::setKey(NodeID{1}, "A"),
        TreeEdit::setKey(NodeID{1}, ""),
        TreeEdit::setValue(NodeID{1}, NodeKind::string, "a"),
        TreeEdit::setValue(NodeID{2}, NodeKind::string, "a"),
        TreeEdit::setValue(NodeID{1}, NodeKind::number, "a"),
        TreeEdit::setValue(NodeID{1}, NodeKind::string, "b"),
        TreeEdit::insert(NodeID{1}, NodeID{2}, 3),
        TreeEdit::insert(NodeID{2}, NodeID{2}, 3),
        TreeEdit::insert(NodeID{1}, NodeID{1}, 3),
        TreeEdit::insert(NodeID{1}, NodeID{2}, 4),
        TreeEdit::remove(NodeID{1}),
        TreeEdit::remove(NodeID{2}),
    };
    for (std::size_t left = 0; left < edits.size(); ++left) {
        for (std::size_t right = 0; right < edits.size(); ++right)
            EXPECT_EQ(edits[left] == TreeEdit(edits[right]), left == right) << left << " and " << right;
    }
}

TEST(TreeEdit, ComparesTextsByCanonicalEquivalence) {
    EXPECT_EQ(TreeEdit::setKey(NodeID{1}, "\u00E9"), TreeEdit::setKey(NodeID{1}, "e\u0301"));
    EXPECT_EQ(TreeEdit::setValue(NodeID{1}, NodeKind::string, "\u212B"),
              TreeEdit::setValue(NodeID{1}, NodeKind::string, "A\u030A"));
    EXPECT_NE(TreeEdit::setKey(NodeID{1}, "\u00E9"), TreeEdit::setKey(NodeID{1}, "e"));
    EXPECT_NE(TreeEdit::setKey(NodeID{1}, "\uFB01"), TreeEdit::setKey(NodeID{1}, "fi"));
}

TEST(TreeEdit, KeepsItsTextWhenTheSourceIsGone) {
    std::vector<TreeEdit> edits;
    {
        const std::string key(1'000, 'k');
        edits.push_back(TreeEdit::setKey(NodeID{1}, key));
        edits.push_back(TreeEdit::setValue(NodeID{1}, NodeKind::string, key));
    }
    EXPECT_EQ(edits[0].asSetKey()->key.view(), std::string(1'000, 'k'));
    EXPECT_EQ(edits[1].asSetValue()->text.view(), std::string(1'000, 'k'));
}

TEST(TreeChange, EqualsAnotherWithTheSameEditsInOrderAndTheSameFocus) {
    const TreeEdit remove = TreeEdit::remove(NodeID{1});
    const TreeEdit insert = TreeEdit::insert(NodeID{1}, NodeID{2}, 3);
    const TreeChange change{{remove, insert}, NodeID{1}};
    EXPECT_EQ(change, (TreeChange{{remove, insert}, NodeID{1}}));
    EXPECT_NE(change, (TreeChange{{insert, remove}, NodeID{1}}));
    EXPECT_NE(change, (TreeChange{{remove}, NodeID{1}}));
    EXPECT_NE(change, (TreeChange{{remove, insert, remove}, NodeID{1}}));
    EXPECT_NE(change, (TreeChange{{remove, insert}, NodeID{2}}));
    EXPECT_NE(change, (TreeChange{{remove, insert}, std::nullopt}));
    EXPECT_EQ((TreeChange{{}, std::nullopt}), (TreeChange{{}, std::nullopt}));
    EXPECT_EQ((TreeChange{{TreeEdit::setKey(NodeID{1}, "e\u0301")}, std::nullopt}),
              (TreeChange{{TreeEdit::setKey(NodeID{1}, "\u00E9")}, std::nullopt}));
}

} // namespace
} // namespace quelm
