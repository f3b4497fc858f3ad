#include "Quelm/TextEngine/TextClusters.h"
#include "TextCore/Graphemes.h"

#include <QString>

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace quelm {
namespace {

std::vector<QString> clustersOf(const QString& text) {
    std::vector<QString> found;
    clusters::forEach(text, [&](qsizetype start, qsizetype end) { found.push_back(text.sliced(start, end - start)); });
    return found;
}

TEST(TextClusters, SequencesAreOneEach) {
    const std::vector<QString> parts{u"a"_qs,
                                     u"e\u0301"_qs,
                                     u"漢"_qs,
                                     u"👨‍👩‍👧‍👦"_qs,
                                     u"🇪🇸"_qs,
                                     u"🇲🇽"_qs,
                                     u"👍🏽"_qs,
                                     u"❤\uFE0F"_qs,
                                     u"1\uFE0F\u20E3"_qs,
                                     u"한"_qs,
                                     u"\u1112\u1161\u11AB"_qs,
                                     u"か\u3099"_qs};
    QString text;
    for (const QString& part : parts)
        text += part;
    EXPECT_EQ(clustersOf(text), parts);
}

TEST(TextClusters, LoneSurrogatesAndMarksAreCovered) {
    const QString text = QString(QChar(0xD83D)) + u'\u0301' + u'a' + QChar(0xDE00) + QChar(0xD83D);
    EXPECT_EQ(clustersOf(text).size(), 4U);
    EXPECT_TRUE(clustersOf(QString()).empty());
}

TEST(TextClusters, RandomTextHasTheClustersThatAreCounted) {
    const char32_t samples[] = {U'a',    U' ',    U'\t',   U'é',    0x301,   0x308,  0x200D,  0x200B, 0xFE0F, 0x1F468,
                                0x1F469, 0x1F3FD, 0x1F1EA, 0x1F1F8, 0x1F600, 0x6F22, 0x3099,  0x1112, 0x1161, 0x11AB,
                                0xD55C,  0x0E33,  0x0903,  0x0600,  0x05D0,  0x0F71, 0xE0067, 0xE007F};
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        std::u32string text;
        for (std::size_t length = random() % 12; length > 0; --length)
            text += samples[random() % std::size(samples)];
        const QString string = QString::fromStdU32String(text);
        std::string prefix;
        for (const QString& cluster : clustersOf(string)) {
            prefix += cluster.toStdString();
            ASSERT_EQ(graphemes::prefix(string.toStdString(), graphemes::count(prefix)), prefix);
        }
        ASSERT_EQ(prefix, string.toStdString());
        ASSERT_EQ(static_cast<std::int64_t>(clustersOf(string).size()), graphemes::count(prefix));
    }
}

TEST(TextClusters, LettersThatNeedNoNeighboursStandAlone) {
    for (const QString& text : {u"{\"clave\": [1, 2]}\t"_qs, u"camión «ñandú» e\u0301 — 10 €"_qs,
                                u"Ελληνικά Привет Հայերեն ქართული"_qs, u"漢字かな交じり文、한국어 𠮷"_qs,
                                u"👨‍👩‍👧‍👦🇪🇸👍🏽❤\uFE0F→␀\u00A0\u200B"_qs, u""_qs})
        EXPECT_TRUE(clusters::standAlone(text)) << text.toStdString();
}

TEST(TextClusters, LettersThatJoinOrRunFromRightToLeftDoNot) {
    for (const QString& text :
         {u"a שלום"_qs, u"مرحبا"_qs, u"\u0661"_qs, u"हिन्दी"_qs, u"ภาษาไทย"_qs, u"ខ្មែរ"_qs, u"བོད"_qs, u"ᠮᠣᠩᠭᠣᠯ"_qs,
          u"a\u200F"_qs, u"\u202Ea\u202C"_qs, u"\u2067a\u2069"_qs, u"𞤀"_qs})
        EXPECT_FALSE(clusters::standAlone(text)) << text.toStdString();
}

} // namespace
} // namespace quelm
