// What is left of a tree when memory runs out in the middle of a change: the tree as it was.

#include "JSONCore/JSONParser.h"
#include "JSONCore/JSONTree.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <optional>
#include <string>

namespace {

/// Allocations until one fails; negative when none is to.
thread_local long allocationsLeft = -1;

bool isRefused() {
    return allocationsLeft >= 0 && allocationsLeft-- == 0;
}

void* allocated(std::size_t size) {
    void* memory = isRefused() ? nullptr : std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void* allocated(std::size_t size, std::align_val_t alignment) {
    const auto step = static_cast<std::size_t>(alignment);
    void* memory = isRefused() ? nullptr : std::aligned_alloc(step, (size + step - 1) / step * step);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

// The whole program's operators: those of other tests never refuse.
void* operator new(std::size_t size) {
    return allocated(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocated(size, alignment);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return isRefused() ? nullptr : std::malloc(size);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}

namespace quelm {
namespace {

JSONTree parsed(const std::string& text) {
    return JSONParser::parse(TextRope(SharedText(text))).value();
}

/// Makes the change on a fresh copy of the tree again and again, each time with one more allocation before the one that
/// fails, until none fails; after each failure the tree must be what it was.
void expectAllOrNothing(const JSONTree& original, const std::function<void(JSONTree&)>& change) {
    bool failed = true;
    int failures = 0;
    for (long allocations = 0; failed; ++allocations) {
        ASSERT_LT(allocations, 1000) << "the change never came to its end";
        JSONTree tree = original;
        tree.prepareKeyIndex(tree.root());
        failed = false;
        allocationsLeft = allocations;
        try {
            change(tree);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        allocationsLeft = -1;
        tree.checkInvariants();
        if (failed) {
            ++failures;
            EXPECT_EQ(tree.nodeCount(), original.nodeCount()) << "after " << allocations << " allocations";
            EXPECT_TRUE(tree == original) << "after " << allocations << " allocations";
        }
    }
    EXPECT_GT(failures, 0);
}

std::string arrayOf(int count) {
    std::string text = "[0";
    for (int i = 1; i < count; ++i)
        text += "," + std::to_string(i);
    return text + "]";
}

std::string objectOf(int count, const std::string& key) {
    std::string text = "{";
    for (int i = 0; i < count; ++i)
        text += (i ? ",\"" : "\"") + key + std::to_string(i) + "\":" + std::to_string(i);
    return text + "}";
}

TEST(MemoryShortage, AnAttachOfALargeListHappensWholeOrNotAtAll) {
    JSONTree tree = parsed(arrayOf(32'768));
    const NodeID fresh = tree.addNode(NodeKind::null, {}, {});
    expectAllOrNothing(tree, [&](JSONTree& changed) { changed.attach(fresh, changed.root(), 100); });
}

TEST(MemoryShortage, ADetachOfAnIndexedMemberHappensWholeOrNotAtAll) {
    const JSONTree tree = parsed(objectOf(61, "cafe\u0301 "));
    expectAllOrNothing(tree, [](JSONTree& changed) { changed.detach(changed.children(changed.root())[30]); });
}

TEST(MemoryShortage, AListOfEditsHappensWholeOrNotAtAll) {
    const JSONTree tree = parsed(arrayOf(32'768));
    expectAllOrNothing(tree, [](JSONTree& changed) {
        const NodeID first = changed.children(changed.root())[0];
        const auto move = changed.moveChange(first, 20'000);
        changed.apply(move->edits);
    });
}

TEST(MemoryShortage, ANewKeyIsSetWholeOrNotAtAll) {
    const JSONTree tree = parsed(objectOf(60, "clave "));
    expectAllOrNothing(tree, [](JSONTree& changed) {
        const NodeID member = changed.children(changed.root())[5];
        changed.apply(TreeEdit::setKey(member, std::string(100, 'x')));
    });
}

TEST(MemoryShortage, AnAssignmentKeepsTheOldTreeWithItsKeys) {
    const JSONTree other = parsed(objectOf(60, "otra "));
    const JSONTree tree = parsed(objectOf(60, "clave "));
    expectAllOrNothing(tree, [&other](JSONTree& changed) {
        changed = other;
        allocationsLeft = -1; // the question below may fail as well, and changes nothing
        EXPECT_EQ(changed.keyOccurrences(changed.root(), "otra 7"), 1);
    });
}

TEST(MemoryShortage, AParseThatFailsLeavesNothingBehind) {
    const TextRope text{SharedText(objectOf(5000, "clave con \\u00e1 "))};
    for (long allocations = 0; allocations < 12; ++allocations) {
        allocationsLeft = allocations;
        EXPECT_THROW((void)JSONParser::parse(text), std::bad_alloc) << allocations;
        allocationsLeft = -1;
    }
    EXPECT_TRUE(JSONParser::parse(text).has_value());
}

} // namespace
} // namespace quelm
