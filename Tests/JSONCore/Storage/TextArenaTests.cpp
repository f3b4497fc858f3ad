#include "JSONCore/Storage/TextArena.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace quelm {
namespace {

struct Stored {
    std::uint32_t offset;
    std::string text;
};

void expectAll(const TextArena& arena, const std::vector<Stored>& stored) {
    for (const Stored& entry : stored)
        ASSERT_EQ(arena.text(entry.offset, static_cast<std::uint32_t>(entry.text.size())), entry.text);
}

TEST(TextArena, KeepsEveryTextAtItsOffset) {
    std::mt19937 random(3);
    TextArena arena;
    std::vector<Stored> stored;
    for (int i = 0; i < 3000; ++i) {
        std::string text(random() % (i % 500 == 0 ? 200'000 : 60) + 1, static_cast<char>('a' + i % 26));
        stored.push_back({arena.append(text), text});
    }
    expectAll(arena, stored);
}

TEST(TextArena, TextsStayInPlaceInMemory) {
    TextArena arena;
    const std::string_view first = arena.text(arena.append("primero"), 7);
    for (int i = 0; i < 10'000; ++i)
        arena.append("otro texto");
    EXPECT_EQ(first, "primero");
}

TEST(TextArena, CopiesGoOnApartWithoutTouchingEachOther) {
    TextArena arena;
    std::vector<Stored> common;
    for (int i = 0; i < 10; ++i)
        common.push_back({arena.append("texto " + std::to_string(i)), "texto " + std::to_string(i)});
    std::vector<TextArena> copies(4, arena);
    std::vector<std::vector<Stored>> stored(copies.size());
    for (int i = 0; i < 2000; ++i) {
        const auto which = static_cast<std::size_t>(i) % copies.size();
        const std::string text = std::to_string(which) + " dice " + std::to_string(i);
        stored[which].push_back({copies[which].append(text), text});
    }
    for (std::size_t which = 0; which < copies.size(); ++which) {
        expectAll(copies[which], common);
        expectAll(copies[which], stored[which]);
    }
}

TEST(TextArena, CopiesMayBeAppendedToByDifferentThreads) {
    TextArena arena;
    arena.append("x");
    std::vector<TextArena> copies(2, arena);
    std::vector<std::vector<Stored>> stored(copies.size());
    std::vector<std::thread> threads;
    for (std::size_t which = 0; which < copies.size(); ++which) {
        threads.emplace_back([&copy = copies[which], &mine = stored[which], which] {
            for (int i = 0; i < 5000; ++i) {
                std::string text = std::to_string(which) + ":" + std::to_string(i);
                const std::uint32_t offset = copy.append(text);
                mine.push_back({offset, std::move(text)});
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t which = 0; which < copies.size(); ++which)
        expectAll(copies[which], stored[which]);
}

TEST(TextArena, FindsATextThatStandsInItAlready) {
    TextArena arena;
    const std::uint32_t offset = arena.append("hola mundo");
    EXPECT_EQ(arena.offsetOf(arena.text(offset, 10).substr(5)), offset + 5);
    EXPECT_EQ(arena.offsetOf(std::string("hola mundo")), std::nullopt);
}

TEST(TextArena, SharesTextsWithItsCopiesOnly) {
    TextArena arena;
    const std::uint32_t offset = arena.append("hola");
    const TextArena copy = arena;
    TextArena other;
    other.append("hola");
    EXPECT_TRUE(arena.sharesTextAt(offset, copy));
    EXPECT_FALSE(arena.sharesTextAt(offset, other));
}

} // namespace
} // namespace quelm
