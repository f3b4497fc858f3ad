#include "Quelm/Recovery/JournalRecord.h"

#include "Tests/Quelm/Recovery/RecordLines.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {
namespace {

using namespace journal;

SharedText text(std::string_view bytes) {
    return SharedText(bytes);
}

TextSource literal(std::string_view bytes) {
    return {.origin = TextSource::Origin::literal, .bytes = text(bytes), .location = 0, .length = 0};
}

TextSource copy(TextSource::Origin origin, std::int64_t location, std::int64_t length) {
    return {.origin = origin, .bytes = {}, .location = location, .length = length};
}

/// Of every kind, with what may be absent there and not.
std::vector<Record> examples() {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    return {
        Base{},
        Base{.path = "/home/ñ/a.json",
             .checksum = ContentChecksum{.size = most, .high = 0x0123'4567'89AB'CDEF, .low = ~std::uint64_t{0}},
             .mode = EditorMode::text,
             .style = JSONStyle::pretty(JSONStyle::Indent::tab, true),
             .recordsSince = ~std::uint64_t{0}},
        EditText{.location = 5, .removed = 130, .inserted = {}},
        EditText{.location = most,
                 .removed = 0,
                 .inserted = {literal("añ😀"), copy(TextSource::Origin::removed, 0, 64), literal(""),
                              copy(TextSource::Origin::file, most, most)}},
        EditTree{},
        EditTree{.edits = {SetKey{.node = {0, 1, 0xFFFF'FFFF}, .key = text("clave")},
                           SetValue{.node = {0}, .kind = NodeKind::bool_, .text = text("true")},
                           Remove{.node = {0, 300}, .number = 16'384},
                           InsertDetached{.parent = {}, .index = 0, .number = 1},
                           InsertNew{.parent = {0, 2}, .index = 127, .key = text("é"), .json = text("{\"a\":[]}")}}},
        Reformat{.numberBefore = 1, .number = 2, .style = JSONStyle::compact()},
        Reformat{.numberBefore = 127, .number = 128, .style = JSONStyle::pretty(JSONStyle::Indent::fourSpaces, false)},
        Return{.numberBefore = 2, .number = 1},
        Replace{},
        Replace{.numberBefore = 3,
                .number = 4,
                .style = JSONStyle::pretty(JSONStyle::Indent::twoSpaces, true),
                .hasText = true,
                .hasTree = true,
                .isTextMadeOfTree = true,
                .text = {literal("[]")}},
        ChangeMode{EditorMode::text},
        ChangeMode{EditorMode::tree},
        Modified{true},
        Modified{false},
        SaveOutcome{true},
        SaveOutcome{false},
    };
}

std::optional<Record> decoded(std::string_view bytes) {
    return decode(SharedText(bytes));
}

void expectNothingOrTheVeryBytes(const std::string& bytes) {
    const auto record = decoded(bytes);
    EXPECT_EQ(record ? encode(*record) : bytes, bytes);
}

TEST(JournalRecordTests, ARecordIsReadAsItWasWritten) {
    for (const Record& record : examples()) {
        const std::string bytes = encode(record);
        const auto read = decoded(bytes);
        ASSERT_TRUE(read.has_value()) << lineOf(record);
        EXPECT_EQ(lineOf(*read), lineOf(record));
        EXPECT_EQ(encode(*read), bytes);
    }
}

TEST(JournalRecordTests, AChecksumAndANodesKindAreReadAsTheyWereWritten) {
    const ContentChecksum checksum{.size = 77, .high = 1, .low = std::uint64_t{1} << 63};
    const auto base = decoded(encode(Base{.path = {}, .checksum = checksum}));
    ASSERT_TRUE(base.has_value());
    EXPECT_EQ(std::get<Base>(*base).checksum, checksum);
    for (const NodeKind kind : allNodeKinds) {
        const auto edit = decoded(encode(EditTree{.edits = {SetValue{.node = {0}, .kind = kind, .text = {}}}}));
        ASSERT_TRUE(edit.has_value());
        EXPECT_EQ(std::get<SetValue>(std::get<EditTree>(*edit).edits.front()).kind, kind);
    }
}

TEST(JournalRecordTests, AKeyTypedTakesAFewBytes) {
    EXPECT_LE(encode(EditText{.location = 1'000'000'000, .removed = 0, .inserted = {literal("a")}}).size(), 12U);
}

TEST(JournalRecordTests, ARecordThatEndsEarlyIsNone) {
    for (const Record& record : examples()) {
        const std::string bytes = encode(record);
        for (std::size_t length = 0; length < bytes.size(); ++length)
            EXPECT_FALSE(decoded(bytes.substr(0, length)).has_value()) << lineOf(record) << " at " << length;
    }
}

TEST(JournalRecordTests, ARecordWithMoreBytesIsNone) {
    for (const Record& record : examples())
        EXPECT_FALSE(decoded(encode(record) + '\0').has_value()) << lineOf(record);
}

TEST(JournalRecordTests, EveryOtherByteIsNoRecordOrOneThatIsWrittenSo) {
    for (const Record& record : examples()) {
        const std::string bytes = encode(record);
        for (std::size_t position = 0; position < bytes.size(); ++position) {
            std::string changed = bytes;
            for (int value = 0; value < 256; ++value) {
                changed[position] = static_cast<char>(value);
                expectNothingOrTheVeryBytes(changed);
            }
        }
    }
}

TEST(JournalRecordTests, RandomBytesAreNoRecordOrOneThatIsWrittenSo) {
    std::mt19937 random(1);
    for (int round = 0; round < 100'000; ++round) {
        std::string bytes(random() % 24, '\0');
        // Small numbers mean something more often.
        for (char& byte : bytes)
            byte = static_cast<char>(random() % 2 == 0 ? random() % 6 : random());
        expectNothingOrTheVeryBytes(bytes);
    }
}

TEST(JournalRecordTests, RandomRecordsAreReadAsTheyWereWritten) {
    std::mt19937_64 random(2);
    const auto number = [&] { return static_cast<std::int64_t>(random() >> (1 + random() % 63)); };
    for (int round = 0; round < 2'000; ++round) {
        EditText edit{.location = number(), .removed = number(), .inserted = {}};
        for (std::uint64_t count = random() % 5; count > 0; --count) {
            if (random() % 2 == 0)
                edit.inserted.push_back(literal(std::string(random() % 300, 'x')));
            else
                edit.inserted.push_back(copy(TextSource::Origin::removed, number(), number()));
        }
        EditTree tree;
        for (std::uint64_t count = random() % 5; count > 0; --count) {
            NodePath path(random() % 200);
            for (std::uint32_t& index : path)
                index = static_cast<std::uint32_t>(random() >> (32 + random() % 32));
            tree.edits.push_back(Remove{.node = std::move(path), .number = number()});
        }
        for (const Record& record : {Record(edit), Record(tree)}) {
            const auto read = decoded(encode(record));
            ASSERT_TRUE(read.has_value());
            EXPECT_EQ(lineOf(*read), lineOf(record));
        }
    }
}

TEST(JournalRecordTests, TextsThatAreNotUTF8AreNoRecord) {
    EXPECT_FALSE(decoded(encode(EditText{.location = 0, .removed = 0, .inserted = {literal("\xC3")}})).has_value());
    EXPECT_FALSE(decoded(encode(Base{.path = "/\xFF", .checksum = {}})).has_value());
    EXPECT_FALSE(decoded(encode(EditTree{.edits = {SetKey{.node = {0}, .key = text("\xED\xA0\x80")}}})).has_value());
}

TEST(JournalRecordTests, ALengthThatIsALieTakesNoMemory) {
    const std::string longest = "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F";
    EXPECT_FALSE(decoded("\x01" + std::string(2, '\0') + longest).has_value());
    EXPECT_FALSE(decoded("\x02" + longest).has_value());
    EXPECT_FALSE(decoded(std::string("\x02\x01\x00", 3) + longest).has_value());
}

TEST(JournalRecordTests, TextsAreSlicesOfTheBytes) {
    const SharedText bytes(encode(EditText{.location = 0, .removed = 0, .inserted = {literal("abc")}}));
    const auto record = decode(bytes);
    ASSERT_TRUE(record.has_value());
    const SharedText& read = std::get<EditText>(*record).inserted.front().bytes;
    EXPECT_GE(read.data(), bytes.data());
    EXPECT_LE(read.data() + read.size(), bytes.data() + bytes.size());
}

TEST(JournalRecordTests, ANegativeNumberIsAProgrammingError) {
    EXPECT_DEATH(encode(Return{.numberBefore = -1, .number = 1}), "not negative");
}

} // namespace
} // namespace quelm
