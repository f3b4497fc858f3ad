#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEditor/SyntaxHighlighter.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {
namespace {

/// A letter for every unit: k for keys, s for strings, n for numbers, b for true and false, z for null, p for
/// punctuation, r for red, and a full stop for the base colour.
char letter(ColorRole role) {
    switch (role) {
    case ColorRole::purple:
        return 'k';
    case ColorRole::green:
        return 's';
    case ColorRole::blue:
        return 'n';
    case ColorRole::orange:
        return 'b';
    case ColorRole::gray:
        return 'z';
    case ColorRole::secondaryText:
        return 'p';
    case ColorRole::red:
        return 'r';
    default:
        return '.';
    }
}

std::string colors(const TextStorage& storage) {
    std::string letters;
    storage.attributes().forEach({0, storage.length()}, [&](const AttributeRuns::PlacedRun& placed) {
        letters.append(static_cast<std::size_t>(placed.run.length), letter(placed.run.attributes.foreground));
    });
    return letters;
}

TextRope rope(std::u16string_view text) {
    return TextRope::repairing(text);
}

void highlightAll(TextStorage& storage) {
    SyntaxHighlighter::highlight(storage, {0, storage.length()});
}

std::string colorsOf(std::u16string_view text) {
    TextStorage storage(rope(text));
    highlightAll(storage);
    return colors(storage);
}

TEST(SyntaxHighlighter, ColoursEveryKindOfToken) {
    EXPECT_EQ(colorsOf(u"{\"a\": [\"b\", -1.5, true, false, null]}"), //
              "pkkkp.psssp.nnnnp.bbbbp.bbbbbp.zzzzpp");
}

TEST(SyntaxHighlighter, AnEmptyTextIsLeftAlone) {
    TextStorage storage;
    EXPECT_EQ(SyntaxHighlighter::highlight(storage, {0, 0}), 0);
}

TEST(SyntaxHighlighter, AKeyIsAStringWithAColonAfterSpacesAndTabs) {
    EXPECT_EQ(colorsOf(u"\"a\" \t :1"), "kkk...pn");
    EXPECT_EQ(colorsOf(u"\"a\"\n:1"), "sss.pn");
    EXPECT_EQ(colorsOf(u"\"a\" \r:1"), "sss..pn");
    EXPECT_EQ(colorsOf(u"\"a\"  "), "sss..");
}

TEST(SyntaxHighlighter, AnEscapedQuoteDoesNotEndAString) {
    EXPECT_EQ(colorsOf(u"\"a\\\"b\" 1"), "ssssss.n");
    EXPECT_EQ(colorsOf(u"\"a\\\\\" 1"), "sssss.n");
    EXPECT_EQ(colorsOf(u"\"a\\"), "sss");
    EXPECT_EQ(colorsOf(u"\"\\\u20AC\\\U0001F600\" 1"), "sssssss.n");
}

TEST(SyntaxHighlighter, AStringLeftOpenEndsWithItsLine) {
    EXPECT_EQ(colorsOf(u"[\"abc, 1\n2]"), "pssssssss"
                                          "np");
    EXPECT_EQ(colorsOf(u"\"abc"), "ssss");
}

TEST(SyntaxHighlighter, AStringLeftOpenIsAKeyIfTheNextLineBeginsWithAColonAndIsColouredWithIt) {
    TextStorage storage(rope(u"\"a\n : 1"));
    highlightAll(storage);
    EXPECT_EQ(colors(storage), "kkk.p.n");
    SyntaxHighlighter::highlight(storage, {0, 1});
    EXPECT_EQ(colors(storage), "sss.p.n");
}

TEST(SyntaxHighlighter, ABackslashBeforeALineFeedTakesAStringToTheNextLine) {
    TextStorage storage(rope(u"\"a\\\nb\" : 1"));
    highlightAll(storage);
    EXPECT_EQ(colors(storage), "kkkkkk.p.n");
    SyntaxHighlighter::highlight(storage, {5, 1});
    EXPECT_EQ(colors(storage), "kkkk.sssss");
    SyntaxHighlighter::highlight(storage, {0, 1});
    EXPECT_EQ(colors(storage), "ssss.sssss");
}

TEST(SyntaxHighlighter, OnlyWholeLowerCaseWordsAreLiterals) {
    EXPECT_EQ(colorsOf(u"True nulls Null trueX nul\u00F1 true1"), //
              "................bbbb.......bbbbn");
}

TEST(SyntaxHighlighter, TheShapeOfANumberIsNotChecked) {
    EXPECT_EQ(colorsOf(u"- 1e+5 1-2 .5 +1 1E.e-"), "n.nnnn.nnn..n..n.nnnnn");
    EXPECT_EQ(colorsOf(u"1true"), "nbbbb");
}

TEST(SyntaxHighlighter, CountsCharactersOutsideOfTheBasicPlaneAsTwoUnits) {
    EXPECT_EQ(colorsOf(u"\u00F1 \U0001F600 1 \"\U0001F600\u20AC\" 2"), ".....n.sssss.n");
}

TEST(SyntaxHighlighter, TheWholeLineOfAnEditIsColouredAnew) {
    TextStorage storage(rope(u"[1]\n[\"abc\", 1]\n[2]"));
    storage.setAttributes({0, storage.length()}, {ColorRole::red});
    SyntaxHighlighter::highlight(storage, {7, 0});
    EXPECT_EQ(colors(storage), "rrrr"
                               "psssssp.np."
                               "rrr");
}

TEST(SyntaxHighlighter, AnEditWithinALongStringRecoloursTheWholeLine) {
    TextStorage storage(rope(u"[\"abcd\", 1, \"e\"]"));
    highlightAll(storage);
    storage.replaceCharacters({4, 0}, QStringView(u"\""));
    SyntaxHighlighter::highlight(storage, {4, 1});
    EXPECT_EQ(colors(storage), "pssss..sssssss.ss");
}

TEST(SyntaxHighlighter, ALineFeedTypedInAStringLeavesTheNextLineAsItWas) {
    TextStorage storage(rope(u"[\"abcd\"]"));
    highlightAll(storage);
    storage.replaceCharacters({4, 0}, QStringView(u"\n"));
    SyntaxHighlighter::highlight(storage, {4, 1});
    EXPECT_EQ(colors(storage), "psssssssp");
    SyntaxHighlighter::highlight(storage, {5, 1});
    EXPECT_EQ(colors(storage), "pssss..ss");
}

TEST(SyntaxHighlighter, ARangeOutsideOfTheTextIsClipped) {
    TextStorage storage(rope(u"1\n2"));
    SyntaxHighlighter::highlight(storage, {2, 100});
    EXPECT_EQ(colors(storage), "..n");
    SyntaxHighlighter::highlight(storage, {100, 100});
    SyntaxHighlighter::highlight(storage, {-5, 5});
    EXPECT_EQ(colors(storage), "n.n");
}

TEST(SyntaxHighlighter, TheEmptyLastLineHasNothingToColour) {
    TextStorage storage(rope(u"1\n"));
    SyntaxHighlighter::highlight(storage, {2, 0});
    EXPECT_EQ(colors(storage), "..");
}

TEST(SyntaxHighlighter, SetsItsColoursInOneEdit) {
    TextStorage storage(rope(u"{\"a\": [1, 2]}\n[3]"));
    int edits = 0;
    QObject::connect(&storage, &TextStorage::didProcessEditing, &storage, [&](EditedMask mask) {
        EXPECT_EQ(mask, EditedMask::attributes);
        ++edits;
    });
    highlightAll(storage);
    EXPECT_EQ(edits, 1);
}

TEST(SyntaxHighlighter, ALongTextIsGivenTheBaseAttributesInTheVeryRangeAlone) {
    const std::u16string longest(SyntaxHighlighter::longestColoredText, u'1');
    TextStorage storage(rope(longest));
    storage.setAttributes({0, storage.length()}, {ColorRole::red});
    storage.replaceCharacters({0, 0}, QStringView(u"2"));
    EXPECT_EQ(SyntaxHighlighter::highlight(storage, {10, 5}), 0);
    EXPECT_EQ(colors(storage).substr(0, 20), ".rrrrrrrrr.....rrrrr");
    EXPECT_EQ(storage.attributes().count(), 4);

    storage.replaceCharacters({0, 1}, TextRope());
    SyntaxHighlighter::highlight(storage, {0, 0});
    EXPECT_EQ(storage.attributes().count(), 1) << "of the greatest length that is coloured";
    EXPECT_EQ(storage.attributes().runAfter(0).run.attributes.foreground, ColorRole::blue);
}

TEST(SyntaxHighlighter, AllTextHasTheFixedPitchFontOfTheBody) {
    EXPECT_EQ(SyntaxHighlighter::textFont(), monospacedFont(TextStyle::body));
    EXPECT_EQ(&SyntaxHighlighter::textFont(), &SyntaxHighlighter::textFont());
}

// Long lines.

/// One line of records, of some length.
std::u16string records(std::size_t length) {
    std::u16string text = u"[";
    while (text.size() < length) {
        const std::string number = std::to_string(text.size());
        text += u"{\"id\":" + std::u16string(number.begin(), number.end()) +
                u",\"nombre\":\"Peña\\t3\",\"activo\":true,\"nota\":null,\"valores\":[1.5,-2e3]},";
    }
    return text;
}

class LongLine : public testing::Test {
protected:
    LongLine() { highlightAll(storage); }

    /// What it takes to colour the line after an edit, in bytes scanned.
    qint64 cost(TextRange range, std::u16string_view replacement) {
        storage.replaceCharacters(range, rope(replacement));
        return SyntaxHighlighter::highlight(storage, {range.location, static_cast<qint64>(replacement.size())});
    }

    void expectColorsOfAFreshScan() {
        TextStorage fresh(storage.text());
        highlightAll(fresh);
        EXPECT_TRUE(colors(storage) == colors(fresh));
    }

    static constexpr qint64 little = 20'000;
    TextStorage storage{rope(records(2'900'000))};
};

TEST_F(LongLine, KeysScanTheirNeighbourhoodAlone) {
    for (const qint64 place : {qint64{1}, storage.length() / 3, storage.length() / 2, storage.length()})
        for (const std::u16string_view key : {u"1", u" ", u"x", u",", u"]", u":"})
            EXPECT_LT(cost({place, 0}, key), little) << place;
    for (const qint64 place : {qint64{0}, storage.length() / 3, storage.length() / 2, storage.length() - 10}) {
        // A quote changes all that follows it.
        if (storage.string({place, 1}) == QStringLiteral("\""))
            continue;
        EXPECT_LT(cost({place, 1}, u""), little) << place;
    }
    expectColorsOfAFreshScan();
}

TEST_F(LongLine, AQuoteAndItsRemovalScanTheRestOnceEach) {
    EXPECT_GT(cost({0, 0}, u"\""), storage.length());
    EXPECT_LT(cost({1, 0}, u"x"), little);
    expectColorsOfAFreshScan();
    EXPECT_LT(cost({0, 2}, u""), storage.length() * 2);
    expectColorsOfAFreshScan();
}

TEST_F(LongLine, AClosedStringTypedAtOnceScansItsNeighbourhoodAlone) {
    EXPECT_LT(cost({1, 0}, u"\"abc\","), little);
    expectColorsOfAFreshScan();
}

TEST_F(LongLine, DividingAndJoiningItScansTheNeighbourhoodAlone) {
    std::u16string_view afterRecord = u"\n";
    const qint64 place = 1 + static_cast<qint64>(records(2).size() - 1);
    EXPECT_LT(cost({place, 0}, afterRecord), little);
    EXPECT_LT(cost({place + 1, 0}, u" "), little);
    EXPECT_LT(cost({place, 2}, u""), little);
    expectColorsOfAFreshScan();
}

TEST_F(LongLine, ColouringWhatWasNotEditedScansNothing) {
    EXPECT_EQ(SyntaxHighlighter::highlight(storage, {0, storage.length()}), 0);
    EXPECT_EQ(SyntaxHighlighter::highlight(storage, {storage.length() / 2, 0}), 0);
}

TEST_F(LongLine, SeveralEditsAreColouredWithoutWhatIsBetweenThem) {
    for (qint64 place = 0; place < storage.length(); place += storage.length() / 10)
        storage.replaceCharacters({place, 0}, QStringView(u" "));
    EXPECT_LT(SyntaxHighlighter::highlight(storage, {0, 1}), 11 * little);
    expectColorsOfAFreshScan();
}

TEST(SyntaxHighlighter, ATextOfOneLongStringIsScannedInFewPasses) {
    const std::u16string text = u"\"" + std::u16string(2'000'000, u'a') + u"\" : 1";
    TextStorage storage(rope(text));
    EXPECT_LT(SyntaxHighlighter::highlight(storage, {0, 0}), 4 * storage.length());
    EXPECT_EQ(storage.attributes().count(), 5);
    EXPECT_EQ(storage.attributes().runAfter(5).run.attributes.foreground, ColorRole::purple);
}

TEST(SyntaxHighlighter, BlanksBetweenAKeyAndItsColonMayBeLong) {
    const std::u16string text = u"[\"a\"" + std::u16string(1'000'000, u' ') + u":1, \"b\"]";
    TextStorage storage(rope(text));
    EXPECT_LT(SyntaxHighlighter::highlight(storage, {0, 0}), 4 * storage.length());
    EXPECT_EQ(storage.attributes().runAfter(1).run.attributes.foreground, ColorRole::purple);
}

// Beside a plain scan.

/// The colours of a text, by a scan of whole lines, unit by unit.
class PlainColors {
public:
    void replace(qsizetype location, qsizetype length, const QString& replacement) {
        text.replace(location, length, replacement);
        letters.replace(static_cast<std::size_t>(location), static_cast<std::size_t>(length),
                        std::string(static_cast<std::size_t>(replacement.size()), '.'));
    }

    void highlight(qsizetype start, qsizetype end, qsizetype longestText) {
        const bool isLong = text.size() > longestText;
        if (!isLong) {
            const qsizetype last = std::max(start, end - 1);
            start = start == 0 ? 0 : text.lastIndexOf(u'\n', start - 1) + 1;
            const qsizetype lineFeed = text.indexOf(u'\n', last);
            end = lineFeed < 0 ? text.size() : lineFeed + 1;
        }
        paint(start, end, '.');
        if (!isLong)
            scan(start, end);
    }

    void paint(qsizetype start, qsizetype end, char color) {
        std::fill(letters.begin() + start, letters.begin() + end, color);
    }

    QString text;
    std::string letters;

private:
    void scan(qsizetype i, qsizetype end) {
        while (i < end) {
            const qsizetype start = i;
            const char16_t unit = text[i].unicode();
            if (unit == u'"') {
                for (++i; i < end;) {
                    const char16_t next = text[i].unicode();
                    i += next == u'\\' ? 2 : 1;
                    if (next == u'"' || next == u'\n')
                        break;
                }
                i = std::min(i, end);
                qsizetype after = i;
                while (after < end && (text[after] == u' ' || text[after] == u'\t'))
                    ++after;
                paint(start, i, after < end && text[after] == u':' ? 'k' : 's');
            } else if (unit == u'-' || isWithin(unit, u'0', u'9')) {
                while (i < end &&
                       (isWithin(text[i].unicode(), u'0', u'9') || QStringLiteral("+-.eE").contains(text[i])))
                    ++i;
                paint(start, i, 'n');
            } else if (isWithin(unit, u'a', u'z')) {
                while (i < end && isWithin(text[i].unicode(), u'a', u'z'))
                    ++i;
                const QString word = text.sliced(start, i - start);
                if (word == QStringLiteral("true") || word == QStringLiteral("false"))
                    paint(start, i, 'b');
                else if (word == QStringLiteral("null"))
                    paint(start, i, 'z');
            } else {
                ++i;
                if (QStringLiteral(",:[]{}").contains(QChar(unit)))
                    paint(start, i, 'p');
            }
        }
    }

    static bool isWithin(char16_t unit, char16_t first, char16_t last) { return first <= unit && unit <= last; }
};

/// Random edits of a storage and of its plain colours.
class RandomColoring {
public:
    explicit RandomColoring(unsigned seed, qsizetype longestText) : random_(seed), longestText_(longestText) {
        QObject::connect(&storage_, &TextStorage::didProcessEditing, &storage_,
                         [this](EditedMask mask, TextRange range) {
                             if (mask == EditedMask::characters)
                                 edited_ = range;
                         });
    }

    void insertMuch() {
        QString much;
        while (much.size() < 8000)
            much += somePiece();
        plain_.replace(0, 0, much);
        storage_.replaceCharacters({0, 0}, much);
        highlight(edited_);
    }

    void step() {
        for (qsizetype edits = below(4) == 0 ? 1 + below(3) : 1; edits > 0; --edits)
            edit();
        if (below(40) == 0)
            paintSomewhere();
        if (below(10) == 0)
            highlightSomewhere();
        if (below(10) != 0)
            highlight(edited_);
    }

    void compare() {
        storage_.attributes().checkInvariants();
        ASSERT_EQ(storage_.string({0, storage_.length()}).toStdString(), plain_.text.toStdString());
        ASSERT_EQ(colors(storage_), plain_.letters) << plain_.text.toStdString();
    }

private:
    qsizetype below(qsizetype bound) { return static_cast<qsizetype>(random_() % static_cast<std::uint64_t>(bound)); }

    QString somePiece() {
        static const std::vector<QString> words{QStringLiteral("true"),
                                                QStringLiteral("false"),
                                                QStringLiteral("null"),
                                                QStringLiteral("\"a\": "),
                                                QStringLiteral("\\\""),
                                                QStringLiteral("\\\n"),
                                                QStringLiteral("\"b\"\t: "),
                                                QStringLiteral("ñ"),
                                                QStringLiteral("\U0001F600"),
                                                QStringLiteral("\n"),
                                                QStringLiteral("\""),
                                                QStringLiteral("    "),
                                                QStringLiteral("\n  \"c\": [1, {\"d\": null}],")};
        static const QString alphabet = QStringLiteral("\"\\:,[]{}tru fals n0-1e.+ \t\nxA");
        if (below(4) == 0)
            return words[static_cast<std::size_t>(below(static_cast<qsizetype>(words.size())))];
        return QString(alphabet[below(alphabet.size())]);
    }

    qsizetype somePlace() { return wholeCharacter(below(plain_.text.size() + 1)); }

    qsizetype wholeCharacter(qsizetype place) const {
        const bool isWithin = place > 0 && place < plain_.text.size() && plain_.text[place].isLowSurrogate();
        return isWithin ? place - 1 : place;
    }

    void edit() {
        const qsizetype location = somePlace();
        qsizetype length = below(2) == 0 ? 0 : below(4);
        if (plain_.text.size() > 150 && below(4) == 0)
            length = below(40);
        length = wholeCharacter(std::min(location + length, plain_.text.size())) - location;
        QString inserted;
        for (qsizetype count = below(10) == 0 ? below(20) : below(3); count > 0; --count)
            inserted += somePiece();
        plain_.replace(location, length, inserted);
        storage_.replaceCharacters({location, length}, inserted);
    }

    void paintSomewhere() {
        const qsizetype start = somePlace();
        const qsizetype end = std::max(start, wholeCharacter(std::min(start + below(10), plain_.text.size())));
        plain_.paint(start, end, 'r');
        storage_.setAttributes({start, end - start}, {ColorRole::red});
    }

    void highlightSomewhere() {
        const qsizetype start = somePlace();
        const qsizetype end = somePlace();
        highlight(TextRange::between(std::min(start, end), std::max(start, end)));
    }

    void highlight(TextRange range) {
        plain_.highlight(range.location, range.end(), longestText_);
        SyntaxHighlighter::highlight(storage_, range, longestText_);
    }

    std::mt19937 random_;
    qsizetype longestText_;
    TextStorage storage_;
    PlainColors plain_;
    TextRange edited_;
};

void colorAtRandom(unsigned rounds, int steps, qsizetype longestText) {
    for (unsigned seed = 1; seed <= rounds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomColoring coloring(seed, longestText);
        for (int step = 0; step < steps; ++step) {
            coloring.step();
            coloring.compare();
            if (testing::Test::HasFatalFailure())
                return;
        }
    }
}

TEST(SyntaxHighlighter, RandomEditsGiveTheColoursOfAPlainScan) {
    colorAtRandom(60, 400, 10'000);
}

TEST(SyntaxHighlighter, RandomEditsGiveTheColoursOfAPlainScanWhenTheTextGrowsTooLongAndShrinks) {
    colorAtRandom(60, 400, 120);
}

TEST(SyntaxHighlighter, RandomEditsOfALongerTextGiveTheColoursOfAPlainScan) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomColoring coloring(seed, 100'000);
        coloring.insertMuch();
        for (int step = 0; step < 200 && !testing::Test::HasFatalFailure(); ++step) {
            coloring.step();
            coloring.compare();
        }
    }
}

} // namespace
} // namespace quelm
