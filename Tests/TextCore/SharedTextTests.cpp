#include "Tests/TextCore/Support/Texts.h"
#include "TextCore/SharedText.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>

namespace quelm {
namespace {

bool zerosFollow(const SharedText& text) {
    return std::all_of(text.data() + text.size(), text.data() + text.size() + SharedText::padding,
                       [](char byte) { return byte == 0; });
}

TEST(SharedText, ADefaultTextIsEmpty) {
    const SharedText text;
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.size(), 0u);
    EXPECT_EQ(text.view(), "");
    EXPECT_FALSE(text.isPadded());
}

TEST(SharedText, ACopyOfBytesHasPaddedMemoryOfItsOwn) {
    std::string bytes = "clave";
    const SharedText text{std::string_view(bytes)};
    bytes = "otra!";
    EXPECT_EQ(text.view(), "clave");
    EXPECT_TRUE(text.isPadded());
    EXPECT_TRUE(zerosFollow(text));
}

TEST(SharedText, CopiesAndSlicesShareMemoryThatTheLastOfThemReleases) {
    auto owner = std::make_shared<std::string>("una clave larga");
    const std::weak_ptr<std::string> watched = owner;
    std::optional<SharedText> whole(SharedText(owner, *owner));
    owner.reset();

    std::optional<SharedText> copy = whole;
    std::optional<SharedText> slice(whole->slice(4, 5));
    EXPECT_TRUE(copy->isSamePiece(*whole));
    EXPECT_FALSE(slice->isSamePiece(*whole));
    EXPECT_EQ(slice->data(), whole->data() + 4);

    whole.reset();
    copy.reset();
    ASSERT_FALSE(watched.expired());
    EXPECT_EQ(slice->view(), "clave");
    slice.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(SharedText, ASliceMayBeEmptyAndIsNotTakenForPadded) {
    const SharedText text("abc");
    EXPECT_EQ(text.slice(0, 3).view(), "abc");
    EXPECT_EQ(text.slice(3, 0).view(), "");
    EXPECT_EQ(text.slice(1, 1).view(), "b");
    EXPECT_FALSE(text.slice(0, 2).isPadded());
}

TEST(SharedTextDeathTest, ASliceBeyondTheTextIsAProgrammingError) {
    const SharedText text("abc");
    EXPECT_DEATH(text.slice(4, 0), "programming error");
    EXPECT_DEATH(text.slice(2, 2), "programming error");
    EXPECT_DEATH(text.slice(1, std::string_view::npos), "programming error");
}

TEST(SharedText, APaddedTextIsItsOwnPaddedCopy) {
    const SharedText padded("abc");
    EXPECT_TRUE(padded.paddedCopy().isSamePiece(padded));

    const SharedText slice = padded.slice(0, 2);
    const SharedText copy = slice.paddedCopy();
    EXPECT_EQ(copy.view(), "ab");
    EXPECT_FALSE(copy.isSamePiece(slice));
    EXPECT_TRUE(copy.isPadded());
    EXPECT_TRUE(zerosFollow(copy));
}

TEST(SharedText, ThePaddedCopyOfNothingIsPadded) {
    const SharedText copy = SharedText().paddedCopy();
    EXPECT_TRUE(copy.empty());
    ASSERT_TRUE(copy.isPadded());
    EXPECT_TRUE(zerosFollow(copy));
}

TEST(SharedText, SamePieceMeansSameMemoryNotEqualBytes) {
    EXPECT_FALSE(SharedText("abc").isSamePiece(SharedText("abc")));
    EXPECT_TRUE(SharedText().isSamePiece(SharedText()));
}

TEST(TextBuilder, BuildsWhatWasWrittenAndAppended) {
    TextBuilder builder;
    builder.append("una ");
    std::ranges::copy(std::string_view("clave"), builder.room(5));
    builder.advance(5);
    builder.append("");
    EXPECT_EQ(builder.size(), 9u);
    EXPECT_EQ(std::string_view(builder.data(), builder.size()), "una clave");

    const SharedText text = builder.finish();
    EXPECT_EQ(text.view(), "una clave");
    EXPECT_TRUE(text.isPadded());
    EXPECT_TRUE(zerosFollow(text));
}

TEST(TextBuilder, IsEmptyAfterTheTextIsTakenAndServesAgain) {
    TextBuilder builder(100);
    builder.append("primero");
    const SharedText first = builder.finish();
    EXPECT_EQ(builder.size(), 0u);
    builder.append("segundo");
    const SharedText second = builder.finish();
    EXPECT_EQ(first.view(), "primero");
    EXPECT_EQ(second.view(), "segundo");
}

TEST(TextBuilder, FinishingNothingGivesAPaddedEmptyText) {
    const SharedText text = TextBuilder().finish();
    EXPECT_TRUE(text.empty());
    ASSERT_TRUE(text.isPadded());
    EXPECT_TRUE(zerosFollow(text));
}

TEST(TextBuilder, RoomIsForAsManyBytesAsAskedAndKeepsWhatIsThere) {
    TextBuilder builder(10);
    EXPECT_GE(builder.available(), 10u);
    builder.append("abc");
    char* room = builder.room(1'000);
    EXPECT_EQ(room, builder.data() + 3);
    EXPECT_GE(builder.available(), 1'000u);
    std::fill_n(room, 1'000, 'x');
    builder.advance(1'000);
    EXPECT_EQ(builder.finish().view(), "abc" + std::string(1'000, 'x'));
}

TEST(TextBuilder, RoomThatIsThereStaysWhereItIs) {
    TextBuilder builder(64);
    const char* before = builder.data();
    builder.append(std::string(64, 'x'));
    EXPECT_EQ(builder.data(), before);
}

TEST(TextBuilder, ClearingForgetsTheBytesAndKeepsTheMemory) {
    TextBuilder builder;
    builder.append(std::string(500, 'x'));
    const std::size_t room = builder.size() + builder.available();
    builder.clear();
    EXPECT_EQ(builder.size(), 0u);
    EXPECT_EQ(builder.available(), room);
    builder.append("y");
    EXPECT_EQ(builder.finish().view(), "y");
}

TEST(TextBuilder, MovingHandsTheBytesOver) {
    TextBuilder first;
    first.append("uno");
    TextBuilder second(std::move(first));
    TextBuilder third;
    third.append("se pierde");
    third = std::move(second);
    third.append(" dos");
    EXPECT_EQ(third.finish().view(), "uno dos");
}

// Grows from small memory into pages taken from the system in one piece.
TEST(TextBuilder, GrowsThroughEverySizeOfMemory) {
    std::mt19937 random(1);
    std::string expected;
    TextBuilder builder;
    while (expected.size() < 9'000'000) {
        const std::string part(test::randomBelow(random, 400'000), static_cast<char>('a' + random() % 26));
        expected += part;
        builder.append(part);
        ASSERT_EQ(builder.size(), expected.size());
    }
    const SharedText text = builder.finish();
    EXPECT_TRUE(text.view() == expected);
    EXPECT_TRUE(zerosFollow(text));
    EXPECT_TRUE(text.slice(1, 8'000'000).paddedCopy().view() == expected.substr(1, 8'000'000));
}

} // namespace
} // namespace quelm
