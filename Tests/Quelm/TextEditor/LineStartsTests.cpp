#include "Quelm/TextEditor/LineStarts.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <QString>

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace quelm {
namespace {

/// The entries that a list begins with, patched after each edit.
class NaiveLineStarts {
public:
    const std::vector<qint64>& entries() const { return entries_; }

    std::size_t countUpTo(qint64 offset) const {
        return static_cast<std::size_t>(std::ranges::upper_bound(entries_, offset) - entries_.begin());
    }

    void noteEdit(TextRange range, qint64 delta, const QString& text) {
        const std::size_t first = countUpTo(range.location);
        const std::size_t end = countUpTo(range.end() - delta);
        for (std::size_t index = end; index < entries_.size(); ++index)
            entries_[index] += delta;
        std::vector<qint64> inserted;
        for (qint64 offset = range.location; offset < range.end(); ++offset)
            if (text[offset] == u'\n')
                inserted.push_back(offset + 1);
        const auto at = [this](std::size_t index) { return entries_.begin() + static_cast<std::ptrdiff_t>(index); };
        entries_.erase(at(first), at(end));
        entries_.insert(at(first), inserted.begin(), inserted.end());
    }

private:
    std::vector<qint64> entries_{0};
};

std::vector<qint64> entriesOf(const LineStarts& lineStarts) {
    std::vector<qint64> entries;
    for (qint64 index = 0; index < lineStarts.count(); ++index)
        entries.push_back(lineStarts.at(index));
    return entries;
}

/// A storage whose edits are reported to a list.
struct Reported {
    explicit Reported(const QString& text = {}) {
        storage.replaceCharacters({}, text);
        lineStarts = LineStarts(storage.text());
        QObject::connect(&storage, &TextStorage::didProcessEditing, [this](EditedMask, TextRange range, qint64 delta) {
            lineStarts.noteEdit(range, delta, storage.text());
        });
    }

    TextStorage storage;
    LineStarts lineStarts;
};

TEST(LineStarts, OfAnEmptyTextAreOne) {
    const LineStarts lineStarts;
    EXPECT_EQ(entriesOf(lineStarts), (std::vector<qint64>{0}));
    EXPECT_EQ(lineStarts.countUpTo(0), 1);
    EXPECT_EQ(lineStarts.countUpTo(-1), 0);
    EXPECT_EQ(lineStarts.countUpTo(7), 1);
}

TEST(LineStarts, AreAfterEachLineFeed) {
    const Reported text(QStringLiteral("a\nb\u00F1\U0001F600\n\nc"));
    EXPECT_EQ(entriesOf(text.lineStarts), (std::vector<qint64>{0, 2, 7, 8}));
    const qint64 counts[] = {1, 1, 2, 2, 2, 2, 2, 3, 4, 4, 4};
    for (qint64 offset = 0; offset < std::ssize(counts); ++offset)
        EXPECT_EQ(text.lineStarts.countUpTo(offset), counts[offset]) << offset;
}

TEST(LineStarts, OnlyALineFeedEndsALine) {
    EXPECT_EQ(Reported(QStringLiteral("a\rb\rc\r")).lineStarts.count(), 1);
    EXPECT_EQ(Reported(QStringLiteral("a\u2028b\u2029c\u0085d\ve\ff")).lineStarts.count(), 1);
    EXPECT_EQ(entriesOf(Reported(QStringLiteral("a\r\nb")).lineStarts), (std::vector<qint64>{0, 3}));
}

TEST(LineStarts, ALineFeedTypedInTheMiddleOfALineInsertsOneEntryAfterItAndShiftsTheLaterOnes) {
    Reported text(QStringLiteral("aaaa\n").repeated(8));
    text.storage.replaceCharacters({22, 0}, u"\n");
    EXPECT_EQ(entriesOf(text.lineStarts), (std::vector<qint64>{0, 5, 10, 15, 20, 23, 26, 31, 36, 41}));
}

TEST(LineStarts, DeletingASelectionThatSpansThreeLineFeedsRemovesThreeEntries) {
    Reported text(QStringLiteral("aaaa\n").repeated(8));
    text.storage.replaceCharacters({12, 15}, u"");
    EXPECT_EQ(entriesOf(text.lineStarts), (std::vector<qint64>{0, 5, 10, 15, 20, 25}));
}

TEST(LineStarts, AgreeWithAPatchedListAfterRandomEdits) {
    std::mt19937 random(1);
    const std::vector<QString> characters{QStringLiteral("a"), QStringLiteral("\n"),         QStringLiteral("\r"),
                                          QStringLiteral("ñ"), QStringLiteral("\U0001F600"), QStringLiteral("\n\n")};
    for (int round = 0; round < 20; ++round) {
        Reported text;
        NaiveLineStarts naive;
        QString string;
        for (int edit = 0; edit < 100; ++edit) {
            qint64 start = static_cast<qint64>(random() % static_cast<unsigned>(string.size() + 1));
            qint64 end = std::min<qint64>(string.size(), start + static_cast<qint64>(random() % 12));
            // Surrogate pairs are not cut.
            start -= start < string.size() && string[start].isLowSurrogate() ? 1 : 0;
            end -= end < string.size() && string[end].isLowSurrogate() ? 1 : 0;
            QString inserted;
            for (std::size_t count = random() % 10; count > 0; --count)
                inserted += characters[random() % characters.size()];

            string.replace(start, end - start, inserted);
            text.storage.replaceCharacters(TextRange::between(start, end), inserted);
            naive.noteEdit({start, inserted.size()}, inserted.size() - (end - start), string);

            ASSERT_EQ(entriesOf(text.lineStarts), naive.entries());
            for (qint64 offset = -1; offset <= string.size() + 1; ++offset)
                ASSERT_EQ(text.lineStarts.countUpTo(offset), static_cast<qint64>(naive.countUpTo(offset)));
        }
    }
}

TEST(LineStartsDeathTest, AnOffsetBeyond64BitsIsAProgrammingError) {
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    constexpr qint64 least = std::numeric_limits<qint64>::min();
    LineStarts lineStarts(TextRope(SharedText("a\nb\nc")));
    EXPECT_DEATH(lineStarts.noteEdit({most, 1}, 0, {}), "64 bits");
    EXPECT_DEATH(lineStarts.noteEdit({0, 0}, least, {}), "64 bits");
    EXPECT_DEATH(lineStarts.noteEdit({0, most}, most, {}), "64 bits");
}

} // namespace
} // namespace quelm
