#include "Quelm/TextEngine/TextLayout.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace quelm {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pair;

QColor black(ColorRole) {
    return Qt::black;
}

/// Asks all that is asked of a row around a place of it.
void visit(const LaidOutText& text, double x) {
    QImage image(800, 40, QImage::Format_RGB32);
    QPainter painter(&image);
    text.layout.paint(painter, 0, {-x, 0}, x, x + 800, black);
    const qint64 offset = text.layout.offsetAt(0, x + 400);
    EXPECT_NEAR(text.layout.x(offset), x + 400, 3 * text.advance());
    (void)text.layout.stretches(0, {0, text.storage.length()}, x, x + 800);
}

TEST(TextLayoutLongLine, PlacesFollowFromTheCellsBeforeThem) {
    const std::u16string start = u"abc 漢字 é x";
    const LaidOutText text(longLine(start));
    // One cell for every character, a second one for the ideographs.
    EXPECT_DOUBLE_EQ(text.layout.x(4), 4 * text.advance());
    EXPECT_DOUBLE_EQ(text.layout.x(6), 8 * text.advance());
    EXPECT_DOUBLE_EQ(text.layout.x(static_cast<qint64>(start.size())), 12 * text.advance());
    EXPECT_DOUBLE_EQ(text.layout.width(0), static_cast<double>(text.storage.text().summary().cells()) * text.advance());
}

TEST(TextLayoutLongLine, ATabTakesOneCell) {
    const LaidOutText text(longLine(u"\tx"));
    EXPECT_DOUBLE_EQ(text.layout.x(1), text.advance());
    EXPECT_DOUBLE_EQ(text.layout.x(2), 2 * text.advance());
}

TEST(TextLayoutLongLine, PlacesDoNotDependOnTheSegmentTheyAreIn) {
    std::u16string line;
    while (line.size() < 30'000)
        line += u"a漢é\u05D0e\u0301😀 ";
    const LaidOutText text(line);
    const qint64 period = 9;
    const double step = text.layout.x(period);
    for (qint64 offset = 0; offset < text.storage.length(); offset += period)
        ASSERT_NEAR(text.layout.x(offset), step * static_cast<double>(offset / period), 1e-6) << offset;
}

TEST(TextLayoutLongLine, EveryPlaceAtTheSeamsOfSegmentsIsFoundAgain) {
    std::u16string line;
    while (line.size() < 9'000)
        line += u"👨‍👩‍👧‍👦e\u0301漢x";
    const LaidOutText text(line);
    for (const qint64 seam : {2048, 4096, 6144}) {
        const qint64 start = boundaries::clusterStart(text.storage.text(), seam - 60);
        for (const qint64 place : text.clusterPlaces(TextRange::between(start, seam + 60))) {
            const qint64 cluster = boundaries::clusterStart(text.storage.text(), place);
            EXPECT_EQ(text.layout.offsetAt(0, text.layout.x(cluster)), cluster);
        }
    }
}

TEST(TextLayoutLongLine, ALineBreakAfterItIsNoPartOfIt) {
    const LaidOutText text(longLine(u"x") + u"\r\nabc");
    EXPECT_EQ(text.layout.rowCount(), 2);
    const qint64 lineFeed = text.storage.lineContents(0).end();
    EXPECT_EQ(text.layout.rowRange(0).end(), lineFeed);
    EXPECT_EQ(text.layout.offsetAt(0, 1e9), lineFeed - 1);
    EXPECT_DOUBLE_EQ(text.layout.width(0), static_cast<double>(lineFeed - 1) * text.advance());
    EXPECT_DOUBLE_EQ(text.layout.x(lineFeed + 3), 2 * text.advance());
}

TEST(TextLayoutLongLine, ASelectionAcrossSegmentsIsOneStretch) {
    std::u16string line(20'000, u'a');
    line[10'000] = u'é';
    const LaidOutText text(line);
    const double advance = text.advance();
    EXPECT_THAT(text.layout.stretches(0, {5, 15'000}, 0, 1e9),
                ElementsAre(Pair(DoubleNear(5 * advance, 0.01), DoubleNear(15'005 * advance, 0.01))));
    EXPECT_THAT(text.layout.stretches(0, {5, 15'000}, 100, 200), ElementsAre(Pair(100, 200)));
}

TEST(TextLayoutLongLine, ACompositionStandsOverTheText) {
    LaidOutText text(longLine(u"abcd"));
    text.layout.setComposition({2, QStringLiteral("xyz"), 2});
    EXPECT_NEAR(text.layout.caretX(2), 4 * text.advance(), 0.1);
    EXPECT_DOUBLE_EQ(text.layout.x(3), 3 * text.advance());
}

TEST(TextLayoutLongLine, LookingAnywhereInFiftyMegabytesLaysOutAFewSegments) {
    std::string bytes;
    bytes.reserve(50 << 20);
    while (bytes.size() < (50U << 20))
        bytes += R"({"clave": "canción", "valor": 12345, "漢字": [true, false, null]},)";
    const LaidOutText text{TextRope(SharedText(bytes))};
    const double width = text.layout.width(0);
    EXPECT_GT(width, 3e8);
    EXPECT_EQ(text.layout.cachedPartCount(), 0);
    visit(text, width / 2);
    EXPECT_LE(text.layout.cachedPartCount(), 4);
    visit(text, width / 2 + 100);
    EXPECT_LE(text.layout.cachedPartCount(), 4);
    visit(text, width - 800);
    EXPECT_LE(text.layout.cachedPartCount(), 7);
}

TEST(TextLayoutLongLine, WhatIsKeptIsBounded) {
    const LaidOutText text(std::u16string(4'000'000, u'a'));
    for (int step = 0; step < 1000; ++step)
        (void)text.layout.x(step * 4000);
    EXPECT_LE(text.layout.cachedPartCount(), 512);
}

TEST(TextLayoutLongLine, AnEditDropsWhatIsAfterItAlone) {
    LaidOutText text(std::u16string(40'000, u'a'));
    for (qint64 offset = 0; offset < 40'000; offset += 1000)
        (void)text.layout.x(offset);
    const int before = text.layout.cachedPartCount();
    EXPECT_EQ(before, 20);
    text.storage.replaceCharacters({20'000, 0}, u"é");
    EXPECT_GE(text.layout.cachedPartCount(), 8);
    EXPECT_LE(text.layout.cachedPartCount(), 10);
    EXPECT_DOUBLE_EQ(text.layout.x(30'000), 30'000 * text.advance());
}

TEST(TextLayoutLongLine, ALineThatGrowsLongAndShortAgainIsLaidOutAnew) {
    LaidOutText text(u"漢b");
    const double natural = text.layout.x(1);
    text.storage.replaceCharacters({2, 0}, QString(5000, u'.'));
    EXPECT_DOUBLE_EQ(text.layout.x(1), 2 * text.advance());
    text.storage.replaceCharacters({2, 5000}, QStringView());
    EXPECT_DOUBLE_EQ(text.layout.x(1), natural);
    EXPECT_LE(text.layout.cachedPartCount(), 1);
}

} // namespace
} // namespace quelm
