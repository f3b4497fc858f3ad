#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TreeEditor/InlineFieldExtent.h"

#include <QObject>

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace quelm {
namespace {

constexpr int most = 100'000;

class InlineFieldExtentTests : public testing::Test {
protected:
    InlineFieldExtentTests() {
        QObject::connect(&storage, &TextStorage::didProcessEditing,
                         [this](EditedMask mask, TextRange range, qint64 delta) {
                             if (mask == EditedMask::characters)
                                 extent.noteEdit(range, delta);
                         });
    }
    void set(const QString& text) { storage.replaceCharacters({0, storage.length()}, text); }
    int columns(int count) const { return static_cast<int>(std::ceil(count * font.advance())); }

    TextFont font{monospacedFont(TextStyle::body)};
    TextStorage storage;
    InlineFieldExtent extent{storage, font};
};

TEST_F(InlineFieldExtentTests, IsAsWideAsTheWidestLine) {
    EXPECT_EQ(extent.width(most), 0);
    set(QStringLiteral("abc\nabcdef\n"));
    EXPECT_EQ(extent.width(most), columns(6));
    EXPECT_EQ(extent.width(10), 10);
}

TEST_F(InlineFieldExtentTests, CountsLinesAndRowsUpToAsManyAsAreAskedFor) {
    set(QStringLiteral("aaaa\nbb\n"));
    EXPECT_EQ(extent.lines(9), 3);
    EXPECT_EQ(extent.lines(2), 2);
    EXPECT_EQ(extent.wrappedRows(columns(10), 9), 3);
    EXPECT_EQ(extent.wrappedRows(columns(2), 9), 4);
    EXPECT_EQ(extent.wrappedRows(columns(2), 3), 3);
}

TEST_F(InlineFieldExtentTests, TakesALongTextForWideAndHigh) {
    set(QString(InlineFieldExtent::longestMeasured + 1, QChar(0x0301)));
    EXPECT_EQ(extent.width(500), 500);
    EXPECT_EQ(extent.wrappedRows(500, 9), 9);
    EXPECT_EQ(extent.lines(9), 1);
    set(QStringLiteral("a"));
    EXPECT_EQ(extent.wrappedRows(500, 9), 1);
    EXPECT_EQ(extent.width(500), columns(1));
}

TEST_F(InlineFieldExtentTests, ACompositionTakesRoom) {
    set(QStringLiteral("ab"));
    extent.setComposition({.offset = 1, .text = QStringLiteral("xyz"), .caret = 0});
    EXPECT_EQ(extent.width(most), columns(5));
    EXPECT_GT(extent.wrappedRows(columns(2), 9), 1);
    extent.setComposition({});
    EXPECT_EQ(extent.width(most), columns(2));
    EXPECT_EQ(extent.wrappedRows(columns(2), 9), 1);
}

TEST_F(InlineFieldExtentTests, FollowsRandomEditsAsIfTheTextWereNew) {
    const std::array pieces{QStringLiteral("a"),    QStringLiteral("palabra "), QStringLiteral("\n"),
                            QStringLiteral("日本"), QStringLiteral("العربية"),  QStringLiteral("\r\n"),
                            QString(300, u'x'),     QString(3000, u' '),        QString(50, u'\n'),
                            QString(2500, u'م')};
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same run each time
    const auto below = [&random](qint64 bound) { return static_cast<qint64>(random() % static_cast<quint64>(bound)); };
    for (int round = 0; round < 400; ++round) {
        const qint64 start = below(storage.length() + 1);
        const qint64 length =
            below(4) == 0 ? storage.length() - start : below(std::min<qint64>(storage.length() - start, 20) + 1);
        storage.replaceCharacters({start, length}, pieces[static_cast<std::size_t>(below(pieces.size()))]);
        InlineFieldExtent fresh(storage, font);
        const int width = columns(static_cast<int>(10 + below(3)));
        ASSERT_EQ(extent.wrappedRows(width, 9), fresh.wrappedRows(width, 9)) << round;
        ASSERT_EQ(extent.width(600), fresh.width(600)) << round;
        ASSERT_EQ(extent.lines(9), fresh.lines(9)) << round;
    }
}

} // namespace
} // namespace quelm
