#include "Quelm/EditorWindow/PathTail.h"
#include "Quelm/Foundation/VisibleText.h"
#include "Tests/Quelm/Support/Printing.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace quelm {
namespace {

NodeID addMember(JSONTree& tree, NodeID parent, std::string_view key) {
    const NodeID id = tree.addNode(NodeKind::object, key, {});
    tree.attach(id, parent, tree.children(parent).size());
    return id;
}

NodeID addElement(JSONTree& tree, NodeID parent) {
    const NodeID id = tree.addNode(NodeKind::array, {}, {});
    tree.attach(id, parent, tree.children(parent).size());
    return id;
}

QString wholePath(const JSONTree& tree, NodeID id) {
    return visibleCharacters(QString::fromStdString(tree.path(id)));
}

TEST(PathTailTests, AShortPathIsWhole) {
    JSONTree tree(NodeKind::object);
    EXPECT_EQ(pathTail(tree, tree.root(), 100), QStringLiteral("$"));
    const NodeID list = addMember(tree, tree.root(), "a b");
    EXPECT_EQ(pathTail(tree, list, 100), QStringLiteral("$[\"a b\"]"));
}

TEST(PathTailTests, ItIsTheEndOfThePathOfTheTreeWhateverTheKeysAndTheLength) {
    const std::array<std::string, 12> keys{
        "a",     "clave_larga_$1", "",        "1a",          "con espacio",  "\"",
        "ñandú", "\\\\",           "x\ty\nz", "clave\x7F.b", "日本語のキー", std::string(150, 'k')};
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        JSONTree tree(NodeKind::array);
        NodeID id = tree.root();
        for (auto depth = random() % 12; depth > 0; --depth) {
            const bool isArray = tree.kind(id) == NodeKind::array;
            const bool isNextArray = random() % 2 == 0;
            const std::string& key = isArray ? std::string() : keys[random() % keys.size()];
            const NodeID child = tree.addNode(isNextArray ? NodeKind::array : NodeKind::object, key, {});
            for (auto siblings = random() % 3; siblings > 0; --siblings)
                addElement(tree, id);
            tree.attach(child, id, tree.children(id).size());
            id = child;
        }
        const QString whole = wholePath(tree, id);
        for (const std::size_t bytes : {std::size_t{1}, std::size_t{7}, std::size_t{40}, std::size_t{100000}}) {
            QString tail = pathTail(tree, id, bytes);
            if (tail != whole) {
                ASSERT_TRUE(tail.startsWith(u'…')) << tail.toStdString();
                tail.remove(0, 1);
                EXPECT_LE(std::size_t(tail.size()), bytes);
                EXPECT_LT(tail.size(), whole.size());
            }
            EXPECT_TRUE(whole.endsWith(tail)) << whole.toStdString() << " / " << tail.toStdString();
            EXPECT_EQ(tail == whole, tree.path(id).size() <= bytes);
        }
    }
}

TEST(PathTailTests, OfAHugeKeyOnlyTheEndIsTaken) {
    constexpr std::size_t megabytes = 10'000'000;
    JSONTree tree(NodeKind::object);
    const NodeID plain = addMember(tree, tree.root(), std::string(megabytes, 'a'));
    const NodeID spaced = addMember(tree, tree.root(), " " + std::string(megabytes, 'a'));
    const NodeID below = addMember(tree, spaced, "hijo");
    EXPECT_EQ(pathTail(tree, plain, 5), QStringLiteral("…aaaaa"));
    EXPECT_EQ(pathTail(tree, spaced, 5), QStringLiteral("…aaa\"]"));
    EXPECT_EQ(pathTail(tree, below, 10), QStringLiteral("…aaa\"].hijo"));
}

TEST(PathTailTests, ACharacterIsNeverCutInTwo) {
    JSONTree tree(NodeKind::object);
    const NodeID id = addMember(tree, tree.root(), "ñññ");
    EXPECT_EQ(pathTail(tree, id, 5), QStringLiteral("…ñ\"]"));
    EXPECT_EQ(pathTail(tree, id, 6), QStringLiteral("…ññ\"]"));
}

TEST(PathTailTests, WhatWouldBreakALineIsASign) {
    JSONTree tree(NodeKind::object);
    const NodeID id = addMember(tree, tree.root(), "a\nb\tc");
    EXPECT_EQ(pathTail(tree, id, 100), QStringLiteral("$[\"a⏎b⇥c\"]"));
}

} // namespace
} // namespace quelm
