#include "TextCore/SummaryTree.h"

#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <vector>

namespace quelm {
namespace {

/// Numbers from 1, and their sum.
struct Numbers {
    using Element = std::int64_t;
    struct Summary {
        std::int64_t count = 0;
        std::int64_t sum = 0;
        Summary& operator+=(const Summary& other) {
            count += other.count;
            sum += other.sum;
            return *this;
        }
        friend bool operator==(const Summary&, const Summary&) = default;
    };
    static Summary summarize(const Element& element) { return {1, element}; }
    static constexpr std::uint32_t leafCapacity = 4;
};
using Tree = SummaryTree<Numbers>;

constexpr auto count = [](const Numbers::Summary& summary) { return summary.count; };
constexpr auto sum = [](const Numbers::Summary& summary) { return summary.sum; };

std::vector<std::int64_t> elements(const Tree& tree) {
    std::vector<std::int64_t> all;
    tree.forEach([&all](std::int64_t element) { all.push_back(element); });
    return all;
}

std::vector<std::int64_t> randomElements(std::mt19937& random, std::size_t size) {
    std::vector<std::int64_t> all(size);
    for (std::int64_t& element : all)
        element = 1 + static_cast<std::int64_t>(random() % 9);
    return all;
}

TEST(SummaryTree, IsMadeOfAnyNumberOfElements) {
    std::mt19937 random(1);
    for (std::size_t size = 0; size < 700; ++size) {
        const auto all = randomElements(random, size);
        const Tree tree{std::span<const std::int64_t>(all)};
        tree.checkInvariants();
        ASSERT_EQ(elements(tree), all);
        ASSERT_EQ(tree.isEmpty(), size == 0);
    }
}

TEST(SummaryTree, FindsTheElementThatASumFallsInto) {
    std::mt19937 random(2);
    const auto all = randomElements(random, 500);
    const Tree tree{std::span<const std::int64_t>(all)};
    std::int64_t before = 0;
    for (std::size_t index = 0; index < all.size(); ++index) {
        for (std::int64_t target = before; target < before + all[index]; ++target) {
            const Tree::Place place = tree.find(sum, target);
            ASSERT_EQ(place.before.count, static_cast<std::int64_t>(index));
            ASSERT_EQ(place.before.sum, before);
            ASSERT_EQ(*place.element, all[index]);
        }
        before += all[index];
    }
    EXPECT_EQ(tree.find(sum, before).element, nullptr);
    EXPECT_EQ(tree.find(sum, before).before, tree.summary());
    EXPECT_EQ(Tree().find(sum, 0).element, nullptr);
}

TEST(SummaryTree, SplittingAndJoiningAtRandomMatchesAVector) {
    std::mt19937 random(3);
    std::vector<std::int64_t> model = randomElements(random, 300);
    Tree tree{std::span<const std::int64_t>(model)};
    for (int step = 0; step < 20'000; ++step) {
        const auto first = static_cast<std::ptrdiff_t>(random() % (model.size() + 1));
        const auto last =
            first + static_cast<std::ptrdiff_t>(
                        random() % std::min<std::size_t>(model.size() - static_cast<std::size_t>(first) + 1, 60));
        const auto inserted = randomElements(random, model.size() < 600 ? random() % 60 : random() % 20);
        const auto [front, rest] = tree.split(count, first);
        const Tree back = rest.split(count, last - first).second;
        tree = front + Tree{std::span<const std::int64_t>(inserted)} + back;
        model.erase(model.begin() + first, model.begin() + last);
        model.insert(model.begin() + first, inserted.begin(), inserted.end());
        tree.checkInvariants();
        ASSERT_EQ(tree.summary().count, static_cast<std::int64_t>(model.size()));
        ASSERT_EQ(tree.summary().sum, std::accumulate(model.begin(), model.end(), std::int64_t{0}));
        if (step % 50 == 0) {
            ASSERT_EQ(elements(tree), model);
        }
    }
}

TEST(SummaryTree, EndsCanBeSeenAndTakenAway) {
    std::mt19937 random(4);
    std::vector<std::int64_t> model = randomElements(random, 200);
    Tree tree{std::span<const std::int64_t>(model)};
    while (!model.empty()) {
        ASSERT_EQ(tree.first(), model.front());
        ASSERT_EQ(tree.last(), model.back());
        if (random() % 2 == 0) {
            tree = tree.withoutFirst();
            model.erase(model.begin());
        } else {
            tree = tree.withoutLast();
            model.pop_back();
        }
        tree.checkInvariants();
        ASSERT_EQ(elements(tree), model);
    }
    EXPECT_TRUE(tree.isEmpty());
}

TEST(SummaryTree, AChangeLeavesFormerValuesAsTheyWere) {
    std::mt19937 random(5);
    const auto all = randomElements(random, 300);
    const Tree tree{std::span<const std::int64_t>(all)};
    const auto [front, back] = tree.split(count, 123);
    const Tree swapped = back + front;
    EXPECT_EQ(elements(tree), all);
    EXPECT_EQ(elements(front).size(), 123u);
    EXPECT_EQ(elements(swapped).size(), all.size());
    EXPECT_EQ(elements(swapped).front(), all[123]);
}

} // namespace
} // namespace quelm
