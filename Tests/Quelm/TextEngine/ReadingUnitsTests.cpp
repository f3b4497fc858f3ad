#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEngine/ReadingUnits.h"
#include "Quelm/TextEngine/TextLayout.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QStringList>

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace quelm {
namespace {

class ReadingUnitsTests : public testing::Test {
protected:
    void open(const QString& text) { openRope(TextRope::repairing(text.toStdU16String())); }

    void openRope(const TextRope& text) {
        layout.reset();
        storage = std::make_unique<TextStorage>(text);
        layout = std::make_unique<TextLayout>(*storage, TextFont(monospacedFont(TextStyle::body)));
    }

    ReadingUnits units() const { return ReadingUnits(*storage, *layout); }

    TextRange at(qint64 offset, QAccessible::TextBoundaryType kind) const { return units().unitAt(offset, kind); }

    /// Goes through the text from its start, and back from its end, which must give the same.
    QStringList all(QAccessible::TextBoundaryType kind) const {
        QStringList result;
        std::optional<TextRange> unit = at(0, kind);
        std::optional<TextRange> last;
        while (unit && !unit->isEmpty()) {
            EXPECT_EQ(unit->location, last ? last->end() : 0);
            for (const qint64 offset : {unit->location, (unit->location + unit->end()) / 2, unit->end() - 1})
                EXPECT_EQ(at(offset, kind), *unit) << "at " << offset;
            result.append(storage->string(*unit));
            last = unit;
            unit = units().unitAfter(unit->location, kind);
        }
        EXPECT_EQ(last ? last->end() : 0, storage->length());

        for (qsizetype index = result.size() - 1; index > 0; --index) {
            last = units().unitBefore(last->location, kind);
            EXPECT_EQ(storage->string(*last), result[index - 1]);
        }
        if (last) {
            EXPECT_EQ(units().unitBefore(last->location, kind), std::nullopt);
        }
        return result;
    }

    std::unique_ptr<TextStorage> storage;
    std::unique_ptr<TextLayout> layout;
};

TEST_F(ReadingUnitsTests, CharactersAreGraphemeClusters) {
    open(QStringLiteral("aé\U0001F469‍\U0001F467\r\n\U0001F1EA\U0001F1F8!"));
    EXPECT_EQ(all(QAccessible::CharBoundary),
              (QStringList{QStringLiteral("a"), QStringLiteral("é"), QStringLiteral("\U0001F469‍\U0001F467"),
                           QStringLiteral("\r\n"), QStringLiteral("\U0001F1EA\U0001F1F8"), QStringLiteral("!")}));
}

TEST_F(ReadingUnitsTests, WordsBringTheSpacesAfterThemAndEndWithTheLine) {
    open(QStringLiteral("  una palabra: -1.5e+3\n\nfin"));
    EXPECT_EQ(
        all(QAccessible::WordBoundary),
        (QStringList{QStringLiteral("  "), QStringLiteral("una "), QStringLiteral("palabra"), QStringLiteral(": "),
                     QStringLiteral("-1.5e+3"), QStringLiteral("\n"), QStringLiteral("\n"), QStringLiteral("fin")}));
}

TEST_F(ReadingUnitsTests, SentencesEndWithTheLineToo) {
    open(QStringLiteral("Uno. ¿Dos? Tres\nCuatro."));
    EXPECT_EQ(all(QAccessible::SentenceBoundary), (QStringList{QStringLiteral("Uno. "), QStringLiteral("¿Dos? "),
                                                               QStringLiteral("Tres\n"), QStringLiteral("Cuatro.")}));
}

TEST_F(ReadingUnitsTests, LinesBringTheirLineFeeds) {
    open(QStringLiteral("uno\r\n\ndos"));
    const QStringList lines{QStringLiteral("uno\r\n"), QStringLiteral("\n"), QStringLiteral("dos")};
    EXPECT_EQ(all(QAccessible::ParagraphBoundary), lines);
    EXPECT_EQ(all(QAccessible::LineBoundary), lines);
}

TEST_F(ReadingUnitsTests, RowsOfAWrappedLineAreReadOneByOne) {
    open(QStringLiteral("una palabra\ny otra"));
    layout->setWrapWidth(8 * layout->font().advance());
    EXPECT_EQ(all(QAccessible::LineBoundary),
              (QStringList{QStringLiteral("una "), QStringLiteral("palabra\n"), QStringLiteral("y otra")}));
    EXPECT_EQ(all(QAccessible::ParagraphBoundary),
              (QStringList{QStringLiteral("una palabra\n"), QStringLiteral("y otra")}));
}

TEST_F(ReadingUnitsTests, TheWholeTextIsOneUnitWithoutBoundaries) {
    open(QStringLiteral("uno\ndos"));
    EXPECT_EQ(all(QAccessible::NoBoundary), QStringList{QStringLiteral("uno\ndos")});
}

TEST_F(ReadingUnitsTests, AtTheEndIsTheLastLineButNoCharacter) {
    open(QStringLiteral("uno\ndos"));
    EXPECT_EQ(at(7, QAccessible::LineBoundary), (TextRange{4, 3}));
    EXPECT_EQ(at(7, QAccessible::ParagraphBoundary), (TextRange{4, 3}));
    EXPECT_EQ(at(7, QAccessible::SentenceBoundary), (TextRange{4, 3}));
    EXPECT_EQ(at(7, QAccessible::CharBoundary), (TextRange{7, 0}));
    EXPECT_EQ(at(7, QAccessible::WordBoundary), (TextRange{7, 0}));
}

TEST_F(ReadingUnitsTests, AfterALastLineFeedIsAnEmptyLine) {
    open(QStringLiteral("uno\n"));
    EXPECT_EQ(at(4, QAccessible::LineBoundary), (TextRange{4, 0}));
    EXPECT_EQ(units().unitAfter(0, QAccessible::LineBoundary), (TextRange{4, 0}));
    EXPECT_EQ(units().unitAfter(4, QAccessible::LineBoundary), std::nullopt);
    EXPECT_EQ(units().unitBefore(4, QAccessible::LineBoundary), (TextRange{0, 4}));
}

TEST_F(ReadingUnitsTests, AnEmptyTextHasOneEmptyUnitOfEachKind) {
    open({});
    for (const auto kind : {QAccessible::CharBoundary, QAccessible::WordBoundary, QAccessible::SentenceBoundary,
                            QAccessible::LineBoundary, QAccessible::ParagraphBoundary, QAccessible::NoBoundary}) {
        EXPECT_EQ(at(0, kind), (TextRange{0, 0}));
        EXPECT_EQ(units().unitBefore(0, kind), std::nullopt);
        EXPECT_EQ(units().unitAfter(0, kind), std::nullopt);
    }
}

TEST_F(ReadingUnitsTests, LongLinesComeInPiecesThatLieEndToEnd) {
    QString line;
    for (int index = 0; line.size() < 20000; ++index)
        line += QStringLiteral("{\"clave%1\": \"niño \U0001F469‍\U0001F467é\"}, ").arg(index);
    open(QStringLiteral("[\n") + line + QStringLiteral("\n]"));
    for (const auto kind : {QAccessible::SentenceBoundary, QAccessible::LineBoundary, QAccessible::ParagraphBoundary,
                            QAccessible::NoBoundary, QAccessible::WordBoundary})
        for (const QString& unit : all(kind)) {
            EXPECT_LE(unit.size(), ReadingUnits::longestUnit + 64);
            // Pieces are cut between clusters.
            EXPECT_FALSE(unit.front().isLowSurrogate() || unit.front().isMark() || unit.front() == QChar(0x200D));
        }
}

TEST_F(ReadingUnitsTests, LongWordsComeInPiecesThatLieEndToEnd) {
    open(QStringLiteral("corta ") + QString(30000, u'x') + QStringLiteral(" otra\n") + QString(9000, u'-'));
    const QStringList words = all(QAccessible::WordBoundary);
    EXPECT_EQ(words.front(), u"corta ");
    EXPECT_TRUE(words.contains(QStringLiteral("otra")));
    EXPECT_LT(words.size(), 40);
    for (const QString& word : words)
        EXPECT_LE(word.size(), ReadingUnits::longestUnit);
}

TEST_F(ReadingUnitsTests, EndlessClustersAreCutToo) {
    open(u'e' + QString(20000, QChar(0x0301)));
    for (const auto kind : {QAccessible::LineBoundary, QAccessible::ParagraphBoundary, QAccessible::NoBoundary})
        for (const QString& unit : all(kind))
            EXPECT_LE(unit.size(), ReadingUnits::longestUnit * 2);
    EXPECT_LE(at(10000, QAccessible::CharBoundary).length, ReadingUnits::longestUnit * 3);
}

TEST_F(ReadingUnitsTests, AVeryLongLineGivesAPieceAroundEveryPlace) {
    const std::string row = "{\"clave\": [1, 2, 3]},";
    std::string text;
    while (text.size() < 20'000'000)
        text += row;
    openRope(TextRope(SharedText(text)));
    const qint64 length = storage->length();
    for (const qint64 offset : {qint64{0}, qint64{4095}, qint64{4096}, length / 2, length - 1, length})
        for (const auto kind : {QAccessible::LineBoundary, QAccessible::ParagraphBoundary, QAccessible::NoBoundary,
                                QAccessible::SentenceBoundary}) {
            const TextRange unit = at(offset, kind);
            EXPECT_GT(unit.length, 0);
            EXPECT_LE(unit.length, ReadingUnits::longestUnit);
            EXPECT_LE(unit.location, offset);
            EXPECT_TRUE(offset < unit.end() || offset == length);
        }
    EXPECT_LE(layout->cachedPartCount(), 16);
}

} // namespace
} // namespace quelm
