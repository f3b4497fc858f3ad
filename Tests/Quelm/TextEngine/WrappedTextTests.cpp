#include "Quelm/TextEngine/WrappedText.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <gtest/gtest.h>
#include <vector>

namespace quelm {
namespace {

struct Rows {
    Rows(const QString& text, double columns)
        : string(text),
          wrapped(text, testFont(), std::make_shared<ClusterShapes>(testFont()), columns * testFont().advance()) {
        wrapped.checkInvariants();
        for (int row = 0; row < wrapped.rowCount(); ++row)
            rows.push_back(string.mid(wrapped.rowRange(row).location, wrapped.rowRange(row).length));
    }

    QString string;
    WrappedText wrapped;
    std::vector<QString> rows;
};

TEST(WrappedText, AnEmptyTextHasAnEmptyRow) {
    EXPECT_EQ(Rows(QString(), 5).rows, std::vector{QString()});
}

TEST(WrappedText, RowsBreakBetweenWordsAndTheirSpacesTakeRoom) {
    EXPECT_EQ(Rows(u"áb cd efg"_qs, 6).rows, (std::vector{u"áb cd "_qs, u"efg"_qs}));
    EXPECT_EQ(Rows(u"áb cd efg"_qs, 5).rows, (std::vector{u"áb "_qs, u"cd "_qs, u"efg"_qs}));
}

TEST(WrappedText, AWordLongerThanARowIsCutBetweenClusters) {
    EXPECT_EQ(Rows(u"e\u0301e\u0301e\u0301e\u0301e\u0301"_qs, 2.5).rows,
              (std::vector{u"e\u0301e\u0301"_qs, u"e\u0301e\u0301"_qs, u"e\u0301"_qs}));
}

TEST(WrappedText, AClusterWiderThanARowHasOneOfItsOwn) {
    EXPECT_EQ(Rows(u"a👨‍👩‍👧‍👦b"_qs, 1).rows,
              (std::vector{u"a"_qs, u"👨‍👩‍👧‍👦"_qs, u"b"_qs}));
}

TEST(WrappedText, TextsOfEveryKindKeepTheInvariantsAtEveryWidth) {
    const QString text =
        u"नमस्ते क्षत्रिय สวัสดีชาวโลก مرحبا بالعالم (12) שלום 👨‍👩‍👧‍👦 漢字かな\tx \u202Eabc\u202C \u2067"_qs;
    for (double columns = 1; columns < 60; columns += 0.7) {
        const Rows rows(text, columns);
        for (int index = 0; index < rows.wrapped.length(); ++index)
            EXPECT_TRUE(rows.wrapped.rowRange(rows.wrapped.rowOf(index)).contains(index));
    }
}

TEST(WrappedText, ManyCharactersWithoutAWidthFitIntoARow) {
    EXPECT_EQ(Rows(QString(3000, u'\u200B'), 5).rows.size(), 1U);
}

} // namespace
} // namespace quelm
