#include "Quelm/TextEngine/TextBoundaries.h"
#include "TextCore/Graphemes.h"
#include "TextCore/TextRope.h"

#include <QString>

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace quelm {
namespace {

TextRope rope(const QString& text) {
    return TextRope::repairing(std::u16string_view(QStringView(text).utf16(), static_cast<std::size_t>(text.size())));
}

/// The boundaries between the clusters of a whole text.
std::vector<qint64> allBoundaries(const QString& text) {
    const std::string bytes = text.toStdString();
    std::vector<qint64> boundaries{0};
    for (std::size_t position = 0; position < bytes.size();) {
        const std::string_view cluster = graphemes::prefix(std::string_view(bytes).substr(position), 1);
        position += cluster.size();
        boundaries.push_back(boundaries.back() +
                             QString::fromUtf8(cluster.data(), static_cast<qsizetype>(cluster.size())).size());
    }
    return boundaries;
}

qint64 firstAfter(const std::vector<qint64>& places, qint64 offset) {
    const auto found = std::upper_bound(places.begin(), places.end(), offset);
    return found == places.end() ? places.back() : *found;
}

qint64 lastBefore(const std::vector<qint64>& places, qint64 offset) {
    const auto found = std::lower_bound(places.begin(), places.end(), offset);
    return found == places.begin() ? 0 : *(found - 1);
}

qint64 lastUpTo(const std::vector<qint64>& places, qint64 offset) {
    return *(std::upper_bound(places.begin(), places.end(), offset) - 1);
}

constexpr std::u32string_view everything =
    U"ab1_-.+e,\"{} "
    U"\t\n\r\n\u00E9\u0301\u00A0\u1100\u1161\uAC00\U0001F1EA\U0001F1F8\U0001F469\u200D\U0001F3FD\uFE0F\u0600"
    U"\u0915\u094D\u4E2D\u3042\u0436";

QString randomText(std::mt19937& random, std::u32string_view alphabet, std::size_t length) {
    QString text;
    for (std::size_t index = 0; index < length; ++index) {
        const char32_t scalar = alphabet[random() % alphabet.size()];
        text += QString::fromUcs4(&scalar, 1);
    }
    return text;
}

// Clusters.

void expectClusters(const QString& string) {
    const TextRope text = rope(string);
    const std::vector<qint64> places = allBoundaries(string);
    for (qint64 offset = 0; offset <= string.size(); ++offset) {
        ASSERT_EQ(boundaries::nextCluster(text, offset), firstAfter(places, offset)) << offset << string.toStdString();
        ASSERT_EQ(boundaries::previousCluster(text, offset), lastBefore(places, offset)) << offset;
        ASSERT_EQ(boundaries::clusterStart(text, offset), lastUpTo(places, offset)) << offset;
    }
}

TEST(TextBoundaries, ClustersAreThoseOfTheWholeText) {
    for (const char16_t* text :
         {u"", u"a", u"abc", u"e\u0301\u0302x", u"a\r\nb", u"\n\r\r\n", u"\U0001F600", u"\u0301",
          u"\U0001F1EA\U0001F1F8\U0001F1EB\U0001F1F7\U0001F1EB", u"\u1112\u1161\u11AB\uAE00",
          u"\U0001F469\u200D\U0001F469\u200D\U0001F467z", u"\u0915\u094D\u0937\u093F", u"a\u2028b"})
        expectClusters(QString::fromUtf16(text));
}

TEST(TextBoundaries, ClustersOfRandomTextsAreThoseOfTheWholeText) {
    std::mt19937 random(1);
    for (int turn = 0; turn < 300; ++turn)
        expectClusters(randomText(random, everything, random() % 30));
    for (int turn = 0; turn < 4; ++turn)
        expectClusters(randomText(random, everything, 1'000));
}

TEST(TextBoundaries, ClustersWithoutPlainCharactersNearAreThoseOfTheWholeText) {
    expectClusters(QStringLiteral("\U0001F1EA").repeated(701));
    expectClusters(QStringLiteral("\U0001F469\u200D\U0001F4BB").repeated(300));
    expectClusters(QStringLiteral("\u0915\u094D\u0937\u093F").repeated(300));
    expectClusters(QStringLiteral("a") + QStringLiteral("\u0301").repeated(900) + QStringLiteral("b"));
}

TEST(TextBoundaries, AClusterOfManyThousandUnitsIsCutAndPassedNonetheless) {
    const QString string = QStringLiteral("a") + QStringLiteral("\u0301").repeated(50'000) + QStringLiteral("b");
    const TextRope text = rope(string);
    qint64 offset = 0;
    while (offset < string.size()) {
        const qint64 next = boundaries::nextCluster(text, offset);
        ASSERT_GT(next, offset);
        offset = next;
    }
    while (offset > 0) {
        const qint64 previous = boundaries::previousCluster(text, offset);
        ASSERT_LT(previous, offset);
        offset = previous;
    }
}

struct Deletion {
    const char* name;
    QString before;
    qsizetype deleted;
};

TEST(TextBoundaries, BackspaceTakesWhatWasTypedLast) {
    const Deletion deletions[] = {
        {"nothing", QString(), 0},
        {"a letter", QStringLiteral("ab"), 1},
        {"a letter with its accent in one", QStringLiteral("a\u00E9"), 1},
        {"a mark", QStringLiteral("ae\u0301"), 1},
        {"one mark of two", QStringLiteral("e\u0301\u0302"), 1},
        {"a vowel sign", QStringLiteral("\u0915\u093F"), 1},
        {"a final jamo", QStringLiteral("\u1112\u1161\u11AB"), 1},
        {"a line end of two", QStringLiteral("a\r\n"), 2},
        {"a line feed", QStringLiteral("a\n\n"), 1},
        {"an emoji", QStringLiteral("a\U0001F600"), 2},
        {"an emoji with a mark", QStringLiteral("\U0001F600\u0301"), 1},
        {"a family", QStringLiteral("\U0001F600\U0001F469\u200D\U0001F469\u200D\U0001F467"), 8},
        {"a skin tone", QStringLiteral("x\U0001F44D\U0001F3FD"), 4},
        {"an emoji with its style", QStringLiteral("x\u2764\uFE0F"), 2},
        {"a keycap", QStringLiteral("x1\uFE0F\u20E3"), 3},
        {"a flag", QStringLiteral("\U0001F1EA\U0001F1F8\U0001F1EB\U0001F1F7"), 4},
        {"half a flag", QStringLiteral("\U0001F1EA\U0001F1F8\U0001F1EB"), 2},
        {"the flag of a part", QStringLiteral("x\U0001F3F4\U000E0067\U000E0062\U000E007F"), 8},
        {"an ideograph with its variant", QStringLiteral("x\u845B\U000E0101"), 3},
    };
    for (const Deletion& deletion : deletions)
        EXPECT_EQ(boundaries::backspaceStart(rope(deletion.before + QStringLiteral("z")), deletion.before.size()),
                  deletion.before.size() - deletion.deleted)
            << deletion.name;
}

TEST(TextBoundaries, BackspaceWithinAClusterTakesFromItsPartBeforeThePlace) {
    EXPECT_EQ(boundaries::backspaceStart(rope(QStringLiteral("ae\u0301\u0302")), 3), 2);
    EXPECT_EQ(boundaries::backspaceStart(rope(QStringLiteral("ae\u0301\u0302")), 2), 1);
}

// Words. A bar stands at each place where the caret stops.

QString withStops(const QString& string) {
    const TextRope text = rope(string);
    QString result;
    qint64 from = 0;
    while (from < string.size()) {
        const qint64 next = boundaries::nextWord(text, from);
        result += string.mid(from, next - from) + u'|';
        from = next;
    }
    return result;
}

TEST(TextBoundaries, TheCaretStopsAtTheStartsOfWordsAndAtLineEnds) {
    const char16_t* const texts[] = {
        u"",
        u"hola |mundo|",
        u"hola   |mundo|",
        u"   |hola  |",
        u"\"|clave_1|\": |\"|valor |de |dos|\",|",
        u"\"|a|\": |-1.5e+10|, |\"|b|\": |2E-3|",
        u"[|1|,|-2|,|3.25|, |-0|]|",
        u"{\"|a|\":|true|,\"|b|\":|null|}|",
        u"snake_case_9 |_x|-|y|",
        u"a|-|5 |b|-|1|",
        u"2024|-|01|-|15|",
        u"1b9e|-|4b2d|",
        u"1|..|2 |3|. |.|5|",
        u"a|\n|b|",
        u"a  |\n|  |b|",
        u"a|\r\n|\r\n|b|",
        u"a\r|b|",
        u"a|\n|\n|\n|",
        u"ni\u00F1o |e\u0301l |\u4E2D\u6587|\u3002|",
        u"a|\U0001F600\U0001F469\u200D\U0001F4BB|b|",
        u"\u0915\u094D\u0937\u093F |x|",
        u"a\u00A0|b|",
    };
    for (const char16_t* const marked : texts) {
        const QString expected = QString::fromUtf16(marked);
        EXPECT_EQ(withStops(QString(expected).remove(u'|')).toStdString(), expected.toStdString());
    }
}

std::vector<qint64> allWordStops(const TextRope& text) {
    std::vector<qint64> stops{0};
    while (stops.back() < text.utf16Count())
        stops.push_back(boundaries::nextWord(text, stops.back()));
    return stops;
}

TEST(TextBoundaries, BothDirectionsStopAtTheSamePlaces) {
    std::mt19937 random(2);
    for (int turn = 0; turn < 300; ++turn) {
        const QString string = randomText(random, everything, turn < 290 ? random() % 40 : 2'000);
        const TextRope text = rope(string);
        const std::vector<qint64> stops = allWordStops(text);
        const std::vector<qint64> clusters = allBoundaries(string);
        for (const qint64 stop : stops)
            ASSERT_TRUE(std::binary_search(clusters.begin(), clusters.end(), stop)) << string.toStdString();
        for (qint64 offset = 0; offset <= string.size(); ++offset) {
            ASSERT_EQ(boundaries::nextWord(text, offset), firstAfter(stops, offset)) << string.toStdString();
            ASSERT_EQ(boundaries::previousWord(text, offset), lastBefore(stops, offset)) << string.toStdString();
        }
    }
}

TEST(TextBoundaries, TheStopsDependOnTheNeighbourhoodAlone) {
    std::mt19937 random(3);
    const QString string = randomText(random, U"ab1_-.+e,\" \n\u00E9", 60);
    const QString far = QStringLiteral("palabra, otra\n").repeated(600);
    const std::vector<qint64> alone = allWordStops(rope(string));
    const TextRope text = rope(far + string + u'\n' + far);
    for (std::size_t index = 1; index + 1 < alone.size(); ++index)
        ASSERT_EQ(boundaries::nextWord(text, far.size() + alone[index - 1]), far.size() + alone[index]);
}

struct Selected {
    QString text;
    qint64 offset;
    QString selected;
};

TEST(TextBoundaries, ADoubleClickSelectsTheWordTheSpacesOrTheOneCharacter) {
    const Selected cases[] = {
        {QStringLiteral("hola mundo"), 0, QStringLiteral("hola")},
        {QStringLiteral("hola mundo"), 3, QStringLiteral("hola")},
        {QStringLiteral("hola mundo"), 4, QStringLiteral(" ")},
        {QStringLiteral("hola  mundo"), 5, QStringLiteral("  ")},
        {QStringLiteral("hola mundo"), 10, QStringLiteral("mundo")},
        {QStringLiteral("\"clave_1\": 2"), 4, QStringLiteral("clave_1")},
        {QStringLiteral("\"clave_1\": 2"), 0, QStringLiteral("\"")},
        {QStringLiteral("\"clave_1\": 2"), 8, QStringLiteral("\"")},
        {QStringLiteral("[-1.5e+10,"), 1, QStringLiteral("-1.5e+10")},
        {QStringLiteral("[-1.5e+10,"), 7, QStringLiteral("-1.5e+10")},
        {QStringLiteral("]]"), 1, QStringLiteral("]")},
        {QStringLiteral("a\nb"), 1, QStringLiteral("a")},
        {QStringLiteral("a  \r\nb"), 3, QStringLiteral("  ")},
        {QStringLiteral("a\r\nb"), 2, QStringLiteral("a")},
        {QStringLiteral("a\n\nb"), 2, QString()},
        {QStringLiteral("a\r\n\r\nb"), 3, QString()},
        {QStringLiteral("\n"), 0, QString()},
        {QString(), 0, QString()},
        {QStringLiteral("ae\u0301o,"), 2, QStringLiteral("ae\u0301o")},
        {QStringLiteral("x\U0001F600\U0001F600"), 2, QStringLiteral("\U0001F600")},
        {QStringLiteral("{\U0001F469\u200D\U0001F4BB}"), 4, QStringLiteral("\U0001F469\u200D\U0001F4BB")},
    };
    for (const Selected& example : cases) {
        const TextRange range = boundaries::wordAt(rope(example.text), example.offset);
        EXPECT_EQ(example.text.mid(range.location, range.length).toStdString(), example.selected.toStdString())
            << example.text.toStdString() << " at " << example.offset;
    }
}

TEST(TextBoundaries, WhatADoubleClickSelectsHasItsPlaceAndNoLineFeed) {
    std::mt19937 random(4);
    for (int turn = 0; turn < 300; ++turn) {
        const QString string = randomText(random, everything, random() % 60);
        const TextRope text = rope(string);
        for (qint64 offset = 0; offset <= string.size(); ++offset) {
            const TextRange range = boundaries::wordAt(text, offset);
            const qint64 place = boundaries::clusterStart(text, offset);
            ASSERT_LE(range.location, place);
            ASSERT_GE(range.end(), place);
            ASSERT_FALSE(string.mid(range.location, range.length).contains(u'\n'));
            ASSERT_EQ(boundaries::clusterStart(text, range.location), range.location);
            ASSERT_EQ(boundaries::clusterStart(text, range.end()), range.end());
        }
    }
}

TEST(TextBoundaries, AWordOfManyThousandUnitsIsCutAndPassedNonetheless) {
    const QString string = QStringLiteral("é").repeated(100'000);
    const TextRope text = rope(string);
    const qint64 middle = string.size() / 2;
    EXPECT_GT(boundaries::nextWord(text, middle), middle + 1'000);
    EXPECT_LT(boundaries::previousWord(text, middle), middle - 1'000);
    EXPECT_TRUE(boundaries::wordAt(text, middle).contains(middle));
    EXPECT_EQ(boundaries::nextWord(text, string.size() - 10), string.size());
    EXPECT_EQ(boundaries::previousWord(text, 10), 0);
}

} // namespace
} // namespace quelm
