#include "Quelm/TextEngine/TextLayout.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace quelm {
namespace {

/// Texts and edits by chance.
class Chance {
public:
    explicit Chance(unsigned seed) : random_(seed) {}

    qint64 below(qint64 bound) { return static_cast<qint64>(random_() % static_cast<std::uint64_t>(bound)); }

    QString text(qint64 length) {
        static const std::array pieces{u"palabra "_qs,
                                       u"abc"_qs,
                                       u" "_qs,
                                       u"   "_qs,
                                       u"\t"_qs,
                                       u"\r"_qs,
                                       u"\r\n"_qs,
                                       u"\n"_qs,
                                       u"\u2028"_qs,
                                       u"\u0000\u001B"_qs,
                                       u"\u0085\uFEFF\u200B\u00AD"_qs,
                                       u"camión ñandú"_qs,
                                       u"e\u0301"_qs,
                                       u"\u0301\u0302\u0323"_qs,
                                       u"漢字かな交じり文。"_qs,
                                       u"한국어 \u1112\u1161\u11AB"_qs,
                                       u"😀"_qs,
                                       u"👨‍👩‍👧‍👦"_qs,
                                       u"🇪🇸🇲🇽👍🏽❤️"_qs,
                                       u"\u200D"_qs,
                                       u"שלום עולם (12) "_qs,
                                       u"مرحبابالعالم "_qs,
                                       u"السلام123"_qs,
                                       u"नमस्ते क्षत्रिय"_qs,
                                       u"สวัสดีชาวโลกน้ำ"_qs,
                                       u"བཀྲ་ཤིས"_qs,
                                       u"{\"clave\": [1, 2.5]}, "_qs,
                                       u"https://ejemplo.es/a-b/c?d=e"_qs,
                                       u"\u202E"_qs,
                                       u"\u202A\u202B"_qs,
                                       u"\u202C\u202D"_qs,
                                       u"\u2066\u2067"_qs,
                                       u"\u2068\u2069"_qs};
        QString result;
        while (result.size() < length) {
            const QString& piece = pieces[static_cast<std::size_t>(below(std::ssize(pieces)))];
            const bool isBreak = piece.endsWith(u'\n');
            result += isBreak && below(8) > 0 ? u"palabras y más "_qs : piece;
        }
        return result;
    }

private:
    std::mt19937_64 random_;
};

struct Wrapped : LaidOutText {
    Wrapped(const QString& text, double wrapWidth) : LaidOutText(text.toStdU16String()), width(wrapWidth) {
        layout.setWrapWidth(width);
    }

    bool isOneCluster(TextRange range) const {
        return boundaries::nextCluster(storage.text(), range.location) >= range.end();
    }
    TextRange rangeOf(qint64 row) const { return layout.rowRange(row); }

    double width;
};

/// Rows cover their lines in order, and only what cannot be parted is wider than it should.
void expectRowsToPartition(const Wrapped& text) {
    qint64 end = -1;
    for (qint64 row = 0; row < text.layout.rowCount(); ++row) {
        const TextRange range = text.rangeOf(row);
        const TextRange line = text.storage.lineContents(text.layout.lineOf(row));
        const bool beginsLine = text.layout.firstRowOf(text.layout.lineOf(row)) == row;
        ASSERT_EQ(range.location, beginsLine ? end + 1 : end) << row;
        ASSERT_EQ(beginsLine, range.location == line.location) << row;
        ASSERT_TRUE(!range.isEmpty() || line.isEmpty()) << row;
        ASSERT_EQ(text.layout.rowOf(range.location), row);
        if (text.layout.width(row) > text.width + 0.05) {
            ASSERT_TRUE(text.isOneCluster(range)) << row;
        }
        end = range.end();
    }
    ASSERT_EQ(end, text.storage.length());
}

/// A place between clusters is where it is found again, or where another place is too.
void expectPlaceToBeFoundAgain(const Wrapped& text, qint64 place) {
    const qint64 row = text.layout.rowOf(place);
    const TextRange range = text.rangeOf(row);
    ASSERT_TRUE(range.location <= place && place <= range.end()) << place;
    const double x = text.layout.x(place);
    ASSERT_GE(x, -0.01) << place;
    ASSERT_LE(x, text.layout.width(row) + 0.05) << place;
    const qint64 found = text.layout.offsetAt(row, x);
    ASSERT_EQ(text.layout.rowOf(found), row) << place;
    ASSERT_NEAR(text.layout.x(found), x, 0.05) << place << " found at " << found;
}

/// Wherever it is asked, there is a place of the row between clusters.
void expectPlacesEverywhere(const Wrapped& text, qint64 row, double x) {
    const qint64 found = text.layout.offsetAt(row, x);
    const TextRange range = text.rangeOf(row);
    ASSERT_TRUE(range.location <= found && found <= range.end());
    ASSERT_TRUE(found == range.location || boundaries::clusterStart(text.storage.text(), found) == found);
    ASSERT_EQ(text.layout.rowOf(found), row);
}

void expectSameRows(const Wrapped& text, const Wrapped& fresh) {
    ASSERT_EQ(text.layout.rowCount(), fresh.layout.rowCount());
    for (qint64 row = 0; row < fresh.layout.rowCount(); ++row) {
        ASSERT_EQ(text.rangeOf(row), fresh.rangeOf(row)) << row;
        ASSERT_DOUBLE_EQ(text.layout.width(row), fresh.layout.width(row)) << row;
    }
}

void look(const Wrapped& text) {
    for (qint64 line = 0; line < text.storage.lineCount(); ++line)
        (void)text.layout.rowOf(text.storage.lineStart(line));
}

/// The length of a text, and how wide its rows are in characters at least.
struct Case {
    qint64 length;
    qint64 leastColumns;
};

class RandomText : public testing::TestWithParam<Case> {};

TEST_P(RandomText, RowsAndPlacesHoldTogetherThroughEdits) {
    const auto [length, leastColumns] = GetParam();
    for (unsigned seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE(seed);
        Chance chance(seed + static_cast<unsigned>(length));
        const double width = testFont().advance() * static_cast<double>(leastColumns + chance.below(60)) +
                             static_cast<double>(chance.below(10));
        Wrapped text(chance.text(length), width);
        for (int step = 0; step < 4; ++step) {
            SCOPED_TRACE(step);
            look(text);
            const QString whole = text.storage.string({0, text.storage.length()});
            const Wrapped fresh(whole, width);
            look(fresh);
            ASSERT_NO_FATAL_FAILURE(expectSameRows(text, fresh));
            ASSERT_NO_FATAL_FAILURE(expectRowsToPartition(text));
            for (int times = 0; times < 100; ++times) {
                const qint64 offset = chance.below(text.storage.length() + 1);
                const qint64 place = boundaries::clusterStart(text.storage.text(), offset);
                if (place > text.storage.lineContents(text.storage.lineAt(place)).end())
                    continue;
                ASSERT_NO_FATAL_FAILURE(expectPlaceToBeFoundAgain(text, place));
                ASSERT_NO_FATAL_FAILURE(expectPlacesEverywhere(text, chance.below(text.layout.rowCount()),
                                                               static_cast<double>(chance.below(600) - 20)));
            }
            const qint64 start = chance.below(text.storage.length() + 1);
            const qint64 removed = std::min(chance.below(12), text.storage.length() - start);
            text.storage.replaceCharacters({start, removed}, chance.text(chance.below(30)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(TextLayoutWrapping, RandomText,
                         testing::Values(Case{40, 1}, Case{300, 8}, Case{1500, 4}, Case{4000, 16}, Case{9000, 16},
                                         Case{9000, 2}));

} // namespace
} // namespace quelm
