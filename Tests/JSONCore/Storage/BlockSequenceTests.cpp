#include "JSONCore/Storage/BlockSequence.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <unordered_map>
#include <vector>

namespace quelm {
namespace {

using Sequence = BlockSequence<std::uint32_t, IDRange>;

/// A sequence beside a plain vector, and where each item was last reported to stand.
class CheckedSequence {
    /// Forgets items that leave, and notes the block of those that come or move.
    struct Tracker {
        std::unordered_map<std::uint32_t, std::uint32_t>& numberOf;
        void placed(std::uint32_t number, std::span<const std::uint32_t> items) const {
            for (std::uint32_t item : items)
                numberOf[item] = number;
        }
        void dropped(std::span<const std::uint32_t> items) const {
            for (std::uint32_t item : items)
                numberOf.erase(item);
        }
    };
    Tracker tracker() { return {numberOf}; }

public:
    void insert(std::size_t position, std::uint32_t item) {
        sequence.insert(position, item, tracker());
        model.insert(model.begin() + static_cast<std::ptrdiff_t>(position), item);
    }

    void replace(std::size_t position, std::size_t count, const std::vector<std::uint32_t>& items) {
        Sequence other;
        other.append(items);
        sequence.replace(position, count, std::move(other), tracker());
        const auto first = model.begin() + static_cast<std::ptrdiff_t>(position);
        model.insert(model.erase(first, first + static_cast<std::ptrdiff_t>(count)), items.begin(), items.end());
    }

    void expectEqualModel() const {
        ASSERT_EQ(sequence.size(), model.size());
        std::size_t position = 0;
        for (std::size_t ordinal = 0; ordinal < sequence.blockCount(); ++ordinal) {
            const auto block = sequence.block(ordinal);
            ASSERT_FALSE(block.empty());
            ASSERT_LE(block.size(), Sequence::blockCapacity);
            ASSERT_EQ(sequence.blockStart(ordinal), position);
            for (std::uint32_t item : block) {
                ASSERT_EQ(item, model[position]) << "at " << position;
                ASSERT_EQ(sequence.ordinalOf(numberOf.at(item)), ordinal) << "item " << item;
                ASSERT_TRUE(sequence.summary(ordinal).mayContain(item));
                ++position;
            }
        }
        ASSERT_EQ(position, model.size());
        ASSERT_EQ(numberOf.size(), model.size());
    }

    Sequence sequence;
    std::vector<std::uint32_t> model;

private:
    std::unordered_map<std::uint32_t, std::uint32_t> numberOf;
};

std::vector<std::uint32_t> consecutive(std::uint32_t first, std::size_t count) {
    std::vector<std::uint32_t> items(count);
    std::iota(items.begin(), items.end(), first);
    return items;
}

TEST(BlockSequence, IsEmptyAtFirst) {
    const Sequence sequence;
    EXPECT_TRUE(sequence.empty());
    EXPECT_EQ(sequence.blockCount(), 0U);
}

TEST(BlockSequence, BehavesLikeAVectorUnderRandomEdits) {
    std::mt19937 random(20240611);
    CheckedSequence checked;
    std::uint32_t nextItem = 0;
    for (int step = 0; step < 400; ++step) {
        const std::size_t size = checked.model.size();
        const std::size_t position = random() % (size + 1);
        const std::size_t count =
            std::min<std::size_t>(size - position, random() % 3 == 0 ? random() % 20'000 : random() % 4);
        const std::size_t added = random() % 4 == 0 ? random() % 40'000 : random() % 4;
        if (random() % 2 == 0)
            checked.insert(position, nextItem++);
        else
            checked.replace(position, count, consecutive(nextItem, added));
        nextItem += static_cast<std::uint32_t>(added);
        ASSERT_NO_FATAL_FAILURE(checked.expectEqualModel()) << "after step " << step;
    }
}

TEST(BlockSequence, SplitsAFullBlockWhenItemsGoOnBeingInserted) {
    CheckedSequence checked;
    checked.replace(0, 0, consecutive(0, Sequence::blockCapacity));
    for (std::uint32_t item = 0; item < 100; ++item)
        checked.insert(Sequence::blockCapacity / 3, 1'000'000 + item);
    checked.expectEqualModel();
    EXPECT_EQ(checked.sequence.blockCount(), 2U);
}

TEST(BlockSequence, JoinsBlocksThatHaveBecomeSmall) {
    CheckedSequence checked;
    checked.replace(0, 0, consecutive(0, 4 * Sequence::blockCapacity));
    while (checked.model.size() > 100)
        checked.replace(checked.model.size() / 2,
                        std::min<std::size_t>(checked.model.size() - checked.model.size() / 2, 3000), {});
    checked.expectEqualModel();
    EXPECT_EQ(checked.sequence.blockCount(), 1U);
}

TEST(BlockSequence, FindsTheItemOfEveryPosition) {
    Sequence sequence;
    sequence.append(consecutive(7, 3 * Sequence::blockCapacity + 5));
    for (std::size_t position = 0; position < sequence.size(); position += 997)
        EXPECT_EQ(sequence[position], 7 + position);
}

TEST(BlockSequence, ACopyKeepsItsItemsAndCostsTheBlocksTouched) {
    Sequence sequence;
    sequence.append(consecutive(0, 20 * Sequence::blockCapacity));
    const std::size_t before = storageBytesCopied();
    Sequence snapshot = sequence;
    EXPECT_EQ(storageBytesCopied(), before);

    sequence.insert(5, 4'000'000);
    sequence.erase(10 * Sequence::blockCapacity, 3);
    const std::size_t copied = storageBytesCopied() - before;
    EXPECT_GT(copied, 0U);
    EXPECT_LE(copied, 2 * 65'536U + 4096U);

    ASSERT_EQ(snapshot.size(), 20 * Sequence::blockCapacity);
    for (std::size_t position = 0; position < snapshot.size(); ++position)
        ASSERT_EQ(snapshot[position], position);
    EXPECT_EQ(sequence[5], 4'000'000U);
    EXPECT_EQ(sequence.size(), snapshot.size() - 2);
}

TEST(BlockSequence, EditsOfASequenceThatNobodySharesCopyNothing) {
    Sequence sequence;
    sequence.append(consecutive(0, 5 * Sequence::blockCapacity));
    const std::size_t before = storageBytesCopied();
    for (std::uint32_t item = 0; item < 1000; ++item)
        sequence.insert(item * 50, item);
    sequence.erase(100, 3 * Sequence::blockCapacity);
    EXPECT_EQ(storageBytesCopied(), before);
}

TEST(BlockSequenceDeathTest, RefusesAPositionBehindItsEnd) {
    Sequence sequence;
    EXPECT_DEATH(sequence.insert(1, 5), "inserted within the sequence");
    EXPECT_DEATH(sequence.erase(0, 1), "lie within the sequence");
}

} // namespace
} // namespace quelm
