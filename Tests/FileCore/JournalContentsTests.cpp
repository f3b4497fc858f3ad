#include "FileCore/JournalContents.h"
#include "FileCore/JournalFormat.h"
#include "Tests/FileCore/Journals.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace quelm::test::journals {
namespace {

using End = JournalContents::End;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

// Without the long record, so that every bit of a journal can be tried.
std::vector<std::string> shortPayloads() {
    std::vector<std::string> all = payloads();
    std::erase_if(all, [](const std::string& each) { return each.size() > 2000; });
    return all;
}

JournalContents read(std::string_view bytes) {
    return JournalContents::read(SharedText(bytes));
}

// How many records lie wholly within that many bytes.
std::size_t wholeRecords(const std::vector<std::string>& records, std::size_t size) {
    std::size_t end = journalformat::headSize;
    std::size_t count = 0;
    for (const std::string& record : records) {
        end += journalformat::recordHeadSize + record.size();
        if (end > size)
            break;
        ++count;
    }
    return count;
}

TEST(JournalContents, RecordsAreReadInTheirOrder) {
    const std::vector<std::string> records = payloads();
    const std::string bytes = bytesOf(records);
    const JournalContents contents = read(bytes);
    EXPECT_EQ(contents.end, End::whole);
    EXPECT_EQ(recordsOf(contents), records);
    EXPECT_EQ(contents.validSize, static_cast<std::int64_t>(bytes.size()));
}

TEST(JournalContents, RecordsAreSlicesOfTheBytes) {
    const SharedText bytes(bytesOf({"one", "two"}));
    const JournalContents contents = JournalContents::read(bytes);
    ASSERT_EQ(contents.records.size(), 2);
    EXPECT_EQ(contents.records[1].data(), bytes.data() + bytes.size() - 3);
}

TEST(JournalContents, EveryCutLeavesTheRecordsBeforeIt) {
    const std::vector<std::string> records = shortPayloads();
    const std::string bytes = bytesOf(records);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const JournalContents contents = read(bytes.substr(0, size));
        const std::size_t count = wholeRecords(records, size);
        ASSERT_EQ(contents.records.size(), count) << size;
        ASSERT_TRUE(isPrefix(recordsOf(contents), records)) << size;
        const bool isBetweenRecords =
            size >= journalformat::headSize && contents.validSize == static_cast<std::int64_t>(size);
        ASSERT_EQ(contents.end, isBetweenRecords ? End::whole : End::torn) << size;
    }
}

TEST(JournalContents, WhatWasCutOffMayBeZeros) {
    const std::vector<std::string> records = shortPayloads();
    const std::string bytes = bytesOf(records);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        std::string zeroed = bytes.substr(0, size);
        zeroed.resize(bytes.size());
        const JournalContents contents = read(zeroed);
        ASSERT_TRUE(isPrefix(recordsOf(contents), records)) << size;
        ASSERT_GE(contents.records.size(), wholeRecords(records, size)) << size;
        // A record that ends with zeros is whole without them. What is left of a payload's sector may look damaged.
        ASSERT_NE(contents.end, End::unknown) << size;
    }
}

TEST(JournalContents, SectorsThatAreZeroFromSomeOnAreTorn) {
    constexpr std::size_t sectorSize = 512;
    const std::vector<std::string> records = shortPayloads();
    const std::string bytes = bytesOf(records);
    for (std::size_t size = 0; size < bytes.size(); size += sectorSize) {
        std::string zeroed = bytes.substr(0, size);
        zeroed.resize(bytes.size() + 3 * sectorSize);
        ASSERT_EQ(read(zeroed).end, End::torn) << size;
    }
}

TEST(JournalContents, AnyBitThatFlipsEndsTheRecordsBeforeIt) {
    const std::vector<std::string> records = shortPayloads();
    const std::string bytes = bytesOf(records);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string flipped = bytes;
            flipped[i] = static_cast<char>(flipped[i] ^ (1 << bit));
            const JournalContents contents = read(flipped);
            ASSERT_EQ(contents.records.size(), wholeRecords(records, i)) << i << ' ' << bit;
            ASSERT_TRUE(isPrefix(recordsOf(contents), records)) << i << ' ' << bit;
            ASSERT_THAT(contents.end, AnyOf(End::damaged, i < 8 ? End::unknown : End::damaged)) << i << ' ' << bit;
        }
    }
}

TEST(JournalContents, BytesAfterABadRecordAreDamage) {
    std::string bytes = bytesOf({"one", "two", "three"});
    const std::size_t two = bytes.find("two");
    bytes[two] = 'T';
    EXPECT_EQ(read(bytes).end, End::damaged);
    EXPECT_THAT(recordsIn(bytes), ElementsAre("one"));
}

TEST(JournalContents, ARecordIsReadOnlyInItsOwnPlace) {
    const std::string one = bytesOf({"aaa", "bbb", "ccc"});
    const std::size_t size = journalformat::recordHeadSize + 3;
    const auto record = [&](std::size_t number) { return one.substr(journalformat::headSize + number * size, size); };
    const std::string head = one.substr(0, journalformat::headSize);
    EXPECT_THAT(recordsIn(head + record(0) + record(2) + record(1)), ElementsAre("aaa"));
    EXPECT_THAT(recordsIn(head + record(0) + record(0)), ElementsAre("aaa"));
    EXPECT_THAT(recordsIn(head + record(1)), IsEmpty());
}

TEST(JournalContents, RecordsOfAnotherJournalAreNotRead) {
    const std::string other = journalformat::recordHead(1, 1, "old") + "old";
    const std::string bytes = bytesOf({"new"});
    EXPECT_THAT(recordsIn(bytes + other), ElementsAre("new"));
    EXPECT_EQ(read(bytes + other).end, End::damaged);
}

TEST(JournalContents, NoBytesAreAJournalThatWasJustCreated) {
    EXPECT_EQ(read("").end, End::torn);
    EXPECT_EQ(read("").validSize, 0);
    EXPECT_EQ(read("QUEL").end, End::torn);
    EXPECT_EQ(read(std::string(4096, '\0')).end, End::torn);
}

TEST(JournalContents, OtherFilesAndOtherVersionsAreUnknown) {
    EXPECT_EQ(read("{\"a\": 1}").end, End::unknown);
    EXPECT_EQ(read("{").end, End::unknown);
    std::string later = bytesOf({"one"});
    later[7] = '2';
    EXPECT_EQ(read(later).end, End::unknown);
    EXPECT_THAT(recordsIn(later), IsEmpty());
}

TEST(JournalContents, ALengthBeyondTheFileIsTorn) {
    const std::string bytes = bytesOf({"one"});
    const std::string head = journalformat::recordHead(*journalformat::identityOf(bytes), 1, std::string(100'000, 'x'));
    EXPECT_EQ(read(bytes + head + "xx").end, End::torn);
    EXPECT_THAT(recordsIn(bytes + head + "xx"), ElementsAre("one"));
}

TEST(JournalContents, ALengthThatNobodyWroteIsDamage) {
    for (const char* length : {"\xff\xff\xff\xff", "\xff\xff\xff\x7f", "\x01\x00\x00\x40", "\x00\x00\x00\x80"}) {
        const std::string bytes = bytesOf({"one"}) + std::string(length, 4) + std::string(40, 'x');
        EXPECT_EQ(read(bytes).end, End::damaged);
        EXPECT_THAT(recordsIn(bytes), ElementsAre("one"));
    }
}

// Whatever is done to a journal: what is read is how the records begin.
TEST(JournalContents, RandomDamageNeverMakesARecord) {
    const std::vector<std::string> records = shortPayloads();
    const std::string whole = bytesOf(records);
    std::mt19937 random(7);
    const auto any = [&](std::size_t below) {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
    };
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes = whole;
        for (std::size_t changes = 1 + any(4); changes > 0 && !bytes.empty(); --changes) {
            const std::size_t from = any(bytes.size());
            const std::size_t length = std::min(any(600), bytes.size() - from);
            switch (any(5)) {
            case 0:
                bytes.erase(from, length);
                break;
            case 1:
                bytes.replace(from, length, std::string(length, '\0'));
                break;
            case 2:
                bytes.insert(any(bytes.size()), bytes.substr(from, length));
                break;
            case 3:
                bytes[from] = static_cast<char>(any(256));
                break;
            default:
                bytes.resize(from);
                break;
            }
        }
        const JournalContents contents = read(bytes);
        ASSERT_TRUE(isPrefix(recordsOf(contents), records)) << round;
        ASSERT_LE(contents.validSize, static_cast<std::int64_t>(bytes.size())) << round;
    }
}

} // namespace
} // namespace quelm::test::journals
