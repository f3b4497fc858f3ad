#include "JSONCore/JSONTree.h"
#include "Tests/JSONCore/Models/NaiveTree.h"
#include "Tests/JSONCore/Support/JSONText.h"
#include "Tests/JSONCore/Support/Printing.h"
#include "Tests/JSONCore/Support/Random.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace quelm {
namespace {

using test::nodeAt;
using test::parsed;

/// An object with these keys.
JSONTree objectOf(std::span<const std::string> keys) {
    JSONTree tree(NodeKind::object);
    for (const std::string& key : keys)
        tree.attach(tree.addNode(NodeKind::null, key, ""), tree.root(), tree.children(tree.root()).size());
    return tree;
}

/// An object with so many members beside these keys that it needs an index to be quick.
JSONTree largeObjectOf(std::vector<std::string> keys) {
    for (int i = 0; i < 5'000; ++i)
        keys.push_back("relleno " + std::to_string(i));
    return objectOf(keys);
}

void expectUniqueKey(const std::vector<std::string>& taken, std::string_view base, std::string_view expected) {
    SCOPED_TRACE(expected);
    const JSONTree small = objectOf(taken);
    EXPECT_EQ(small.uniqueKey(base, small.root()), expected);
    const JSONTree large = largeObjectOf(taken);
    EXPECT_EQ(large.uniqueKey(base, large.root()), expected);
}

TEST(JSONTreeKeys, AUniqueKeyIsItsBaseWhenThatIsFree) {
    expectUniqueKey({}, "clave", "clave");
    expectUniqueKey({"otra", "clave 2", "Clave", "clave "}, "clave", "clave");
    expectUniqueKey({}, "", "");
}

TEST(JSONTreeKeys, AUniqueKeyTakesTheFirstFreeNumberFromTwo) {
    expectUniqueKey({"clave"}, "clave", "clave 2");
    expectUniqueKey({"clave", "clave 2"}, "clave", "clave 3");
    expectUniqueKey({"clave", "clave 1"}, "clave", "clave 2");
    expectUniqueKey({""}, "", " 2");
}

TEST(JSONTreeKeys, AUniqueKeyFillsTheFirstGap) {
    expectUniqueKey({"clave", "clave 3"}, "clave", "clave 2");
    expectUniqueKey({"clave 4", "clave 2", "clave"}, "clave", "clave 3");
    expectUniqueKey({"clave", "clave 02", "clave +2", "clave  2", "clave 2 "}, "clave", "clave 2");
}

TEST(JSONTreeKeys, AUniqueKeyOfANumberedBaseIsNumberedAgain) {
    expectUniqueKey({"k 2"}, "k 2", "k 2 2");
    expectUniqueKey({"k", "k 2", "k 2 2"}, "k 2", "k 2 3");
}

TEST(JSONTreeKeys, AUniqueKeyIsFreeByCanonicalEquivalence) {
    expectUniqueKey({"e\u0301"}, "\u00E9", "\u00E9 2");
    expectUniqueKey({"\u00E9", "\u00E9 2"}, "e\u0301", "e\u0301 3");
    expectUniqueKey({"E\u0301"}, "\u00E9", "\u00E9");
    // A base that ends in half of a composition, and one that starts with a mark.
    expectUniqueKey({"e", "e 2", "\u00E9"}, "e", "e 3");
    expectUniqueKey({"\u0301"}, "\u0301", "\u0301 2");
}

TEST(JSONTreeKeys, AThousandNumberedKeysFollowOneAnother) {
    JSONTree tree = parsed(R"({"clave 500":0})");
    for (int number = 1; number <= 1'000; ++number) {
        const std::string key = tree.uniqueKey("clave", tree.root());
        const int expected = number < 500 ? number : number + 1;
        ASSERT_EQ(key, number == 1 ? "clave" : "clave " + std::to_string(expected));
        tree.attach(tree.addNode(NodeKind::null, key, ""), tree.root(), 0);
    }
    tree.detach(nodeAt(tree, {400}));
    const std::string gap = tree.uniqueKey("clave", tree.root());
    EXPECT_EQ(tree.keyOccurrences(tree.root(), gap), 0);
    EXPECT_EQ(gap, "clave 601");
}

TEST(JSONTreeKeys, OccurrencesAreCountedByCanonicalEquivalenceAndNeverByCase) {
    const std::vector<std::string> keys{"a", "A", "a", "\u00E9", "e\u0301", "", "a "};
    for (const JSONTree& tree : {objectOf(keys), largeObjectOf(keys)}) {
        EXPECT_EQ(tree.keyOccurrences(tree.root(), "a"), 2);
        EXPECT_EQ(tree.keyOccurrences(tree.root(), "A"), 1);
        EXPECT_EQ(tree.keyOccurrences(tree.root(), "\u00E9"), 2);
        EXPECT_EQ(tree.keyOccurrences(tree.root(), "e\u0301"), 2);
        EXPECT_EQ(tree.keyOccurrences(tree.root(), ""), 1);
        EXPECT_EQ(tree.keyOccurrences(tree.root(), "b"), 0);
    }
}

TEST(JSONTreeKeys, OccurrencesFollowEveryEdit) {
    JSONTree tree = largeObjectOf({"a", "b"});
    const NodeID first = nodeAt(tree, {0});
    const NodeID second = nodeAt(tree, {1});
    tree.prepareKeyIndex(tree.root());
    tree.apply(TreeEdit::setKey(second, "a"));
    EXPECT_EQ(tree.keyOccurrences(tree.root(), "a"), 2);
    EXPECT_EQ(tree.keyOccurrences(tree.root(), "b"), 0);
    tree.apply(TreeEdit::remove(first));
    EXPECT_EQ(tree.keyOccurrences(tree.root(), "a"), 1);
    // A detached node's key is nobody's.
    tree.apply(TreeEdit::setKey(first, "b"));
    EXPECT_EQ(tree.keyOccurrences(tree.root(), "b"), 0);
    tree.apply(TreeEdit::insert(first, tree.root(), 3));
    EXPECT_EQ(tree.keyOccurrences(tree.root(), "b"), 1);
    EXPECT_EQ(tree.uniqueKey("relleno 7", tree.root()), "relleno 7 2");
    tree.checkInvariants();
}

TEST(JSONTreeKeys, OccurrencesInCopiesAreTheirOwn) {
    JSONTree tree = largeObjectOf({"a"});
    ASSERT_EQ(tree.keyOccurrences(tree.root(), "a"), 1);
    JSONTree copy = tree;
    copy.apply(TreeEdit::setKey(nodeAt(copy, {0}), "b"));
    EXPECT_EQ(copy.keyOccurrences(copy.root(), "a"), 0);
    EXPECT_EQ(copy.keyOccurrences(copy.root(), "b"), 1);
    EXPECT_EQ(tree.keyOccurrences(tree.root(), "a"), 1);
    EXPECT_EQ(tree.keyOccurrences(tree.root(), "b"), 0);
    copy = tree;
    EXPECT_EQ(copy.keyOccurrences(copy.root(), "a"), 1);
    EXPECT_EQ(copy.keyOccurrences(copy.root(), "b"), 0);
    const JSONTree moved = std::move(copy);
    EXPECT_EQ(moved.keyOccurrences(moved.root(), "a"), 1);
    tree = parsed("{}");
    EXPECT_EQ(tree.keyOccurrences(tree.root(), "a"), 0);
}

TEST(JSONTreeKeys, OccurrencesFollowAnObjectAcrossTheSizesThatNeedAnIndex) {
    JSONTree tree(NodeKind::object);
    for (int i = 0; i < 200; ++i) {
        tree.attach(tree.addNode(NodeKind::null, "k", ""), tree.root(), 0);
        ASSERT_EQ(tree.keyOccurrences(tree.root(), "k"), i + 1);
    }
    for (int i = 200; i > 0; --i) {
        ASSERT_EQ(tree.keyOccurrences(tree.root(), "k"), i);
        tree.detach(nodeAt(tree, {i / 2}));
        tree.apply(TreeEdit::setKey(tree.root(), "k"));
    }
    EXPECT_EQ(tree.keyOccurrences(tree.root(), "k"), 0);
}

TEST(JSONTreeKeys, MayBeAskedForByManyThreadsAtOnce) {
    const JSONTree tree = largeObjectOf({"clave", "clave 2", "\u00E9", "e\u0301"});
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int round = 0; round < 50; ++round) {
                    wrong += tree.uniqueKey("clave", tree.root()) != "clave 3";
                    wrong += tree.keyOccurrences(tree.root(), "\u00E9") != 2;
                    wrong += JSONTree(tree).keyOccurrences(tree.root(), "relleno 9") != 1;
                    wrong += tree.path(nodeAt(tree, {0})) != "$.clave";
                }
            });
    }
    EXPECT_EQ(wrong, 0);
}

TEST(JSONTreeKeys, AgreeWithAWalkOverAllMembers) {
    test::forEachRound(20, [](test::Random& random) {
        const std::string stems[] = {"k", "k 2", "clave", "\u00E9", "e\u0301", "", "\u1112\u1161", "\uD558", "A", "a"};
        const auto randomKey = [&] {
            std::string key = random.oneOf(stems);
            for (std::int64_t i = random.below(3); i > 0; --i)
                key += " " + std::to_string(random.below(8));
            return key;
        };
        test::NaiveTree model(NodeKind::object, "");
        JSONTree tree(NodeKind::object);
        const std::int64_t size = random.oneIn(2) ? 60 : 400;
        std::vector<NodeID> detached;
        for (int step = 0; step < 1'500; ++step) {
            const auto members = model[model.root()].children;
            const auto apply = [&](const TreeEdit& edit) {
                tree.apply(edit);
                model.apply(edit);
            };
            if (random.oneIn(4) && !members.empty()) {
                apply(TreeEdit::setKey(random.oneOf(members), randomKey()));
            } else if (random.below(size) < static_cast<std::int64_t>(members.size()) && !members.empty()) {
                detached.push_back(random.oneOf(members));
                apply(TreeEdit::remove(detached.back()));
            } else if (random.oneIn(3) && !detached.empty()) {
                apply(TreeEdit::insert(detached.back(), model.root(), 0));
                detached.pop_back();
            } else {
                const std::string key = randomKey();
                const NodeID added = tree.addNode(NodeKind::null, key, "");
                ASSERT_EQ(model.addNode(NodeKind::null, key, ""), added);
                apply(
                    TreeEdit::insert(added, model.root(), random.below(static_cast<std::int64_t>(members.size()) + 1)));
            }
            if (random.oneIn(200))
                tree = JSONTree(tree);
            const std::string asked = randomKey();
            ASSERT_EQ(tree.keyOccurrences(tree.root(), asked), model.keyOccurrences(model.root(), asked)) << asked;
            if (random.oneIn(4)) {
                ASSERT_EQ(tree.uniqueKey(asked, tree.root()), model.uniqueKey(asked, model.root())) << asked;
            }
        }
        test::expectSameNodes(tree, model);
        tree.checkInvariants();
    });
}

} // namespace
} // namespace quelm
