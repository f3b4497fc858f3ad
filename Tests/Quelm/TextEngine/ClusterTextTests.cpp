#include "Quelm/TextEngine/ClusterText.h"
#include "Quelm/TextEngine/ShapedText.h"
#include "Tests/Quelm/TextEngine/LaidOutText.h"

#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quelm {
namespace {

using testing::ElementsAre;
using testing::Pair;

ClusterText clusterText(const QString& text) {
    return ClusterText(text, std::make_shared<ClusterShapes>(testFont()));
}

class Samples : public testing::TestWithParam<const char16_t*> {
protected:
    QString text() const { return QString::fromUtf16(GetParam()); }
};

TEST_P(Samples, PlacesAreThoseOfTextShapedAsAWhole) {
    const ClusterText clusters = clusterText(text());
    const ShapedText shaped(text(), testFont());
    const double tolerance = 0.25;
    EXPECT_NEAR(clusters.width(0), shaped.width(0), tolerance);
    for (double x = -5; x < shaped.width(0) + 5; x += 1) {
        const int index = clusters.indexAt(0, x);
        EXPECT_NEAR(clusters.x(index), shaped.x(index), tolerance) << index;
        EXPECT_NEAR(clusters.x(index), shaped.x(shaped.indexAt(0, x)), tolerance) << x;
    }
}

TEST_P(Samples, AStretchReachesOverWholeClusters) {
    const ClusterText clusters = clusterText(text());
    for (int start = 0; start < clusters.length(); ++start) {
        Stretches found;
        clusters.appendStretches(0, {start, 1}, found);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_LE(found[0].first, clusters.x(start));
        EXPECT_GT(found[0].second, found[0].first) << start;
    }
}

INSTANTIATE_TEST_SUITE_P(ClusterText, Samples,
                         testing::Values(u"{\"clave\": [1, 2]}", u"camión, «ñandú» — œuvre €",
                                         u"e\u0301 n\u0303 a\u0308\u0323", u"漢字かな交じり文。 한국어",
                                         u"a😀b👨‍👩‍👧‍👦c🇪🇸🇲🇽d👍🏽e❤️f",
                                         u"Ελληνικά Привет", u"\té\tx\t漢\t.", u"␀␤▯ → ∑ 𝒳"));

TEST(ClusterText, AnEmptyTextHasAPlace) {
    const ClusterText clusters = clusterText(QString());
    EXPECT_EQ(clusters.length(), 0);
    EXPECT_EQ(clusters.width(0), 0);
    EXPECT_EQ(clusters.x(0), 0);
    EXPECT_EQ(clusters.indexAt(0, 100), 0);
}

TEST(ClusterText, ACaretStopsNowhereWithinACluster) {
    const ClusterText clusters = clusterText(u"a👨‍👩‍👧‍👦e\u0301🇪🇸b"_qs);
    std::vector<int> stops;
    for (double x = 0; x <= clusters.width(0) + 1; x += 0.25)
        if (const int index = clusters.indexAt(0, x); stops.empty() || stops.back() != index)
            stops.push_back(index);
    EXPECT_THAT(stops, ElementsAre(0, 1, 12, 14, 18, 19));
    EXPECT_EQ(clusters.x(5), clusters.x(1));
}

/// What is painted of a text, with the colours that its units have.
class Painted {
public:
    Painted(const LineText& text, double left, double right, const TextPainting::ColorsOf& colorsOf) {
        image.fill(Qt::white);
        QPainter painter(&image);
        const std::function<QColor(ColorRole)> color = [](ColorRole role) {
            return QColor(role == ColorRole::red ? Qt::red : Qt::black);
        };
        GridGlyphs glyphs;
        text.paint({painter, {0, 30}, left, right, colorsOf, color, glyphs}, 0);
    }

    bool isBlank(int from, int to) const {
        for (int x = std::max(from, 0); x < std::min(to, image.width()); ++x)
            for (int y = 0; y < image.height(); ++y)
                if (image.pixelColor(x, y) != QColor(Qt::white))
                    return false;
        return true;
    }

    bool hasRed(int from, int to) const {
        for (int x = std::max(from, 0); x < std::min(to, image.width()); ++x)
            for (int y = 0; y < image.height(); ++y)
                if (image.pixelColor(x, y).red() > image.pixelColor(x, y).green() + 60)
                    return true;
        return false;
    }

    QImage image{600, 50, QImage::Format_RGB32};
};

void allBlack(TextRange stretch, const TextPainting::VisitColor& visit) {
    visit(stretch.location, stretch.length, ColorRole::text);
}

TEST(ClusterText, LooksAsTextShapedAsAWhole) {
    for (const QString& text : {u"camión ñandú e\u0301"_qs, u"漢字かな 한국어"_qs, u"Привет"_qs}) {
        const Painted clusters(clusterText(text), 0, 600, allBlack);
        const Painted shaped(ShapedText(text, testFont()), 0, 600, allBlack);
        EXPECT_FALSE(clusters.isBlank(0, 600));
        EXPECT_EQ(clusters.image, shaped.image) << text.toStdString();
    }
}

TEST(ClusterText, OnlyWhatMeetsTheBoundsIsPainted) {
    const ClusterText text = clusterText(QString(40, u'Ñ'));
    const double advance = testFont().advance();
    const Painted painted(text, 15 * advance, 20 * advance, allBlack);
    EXPECT_TRUE(painted.isBlank(0, static_cast<int>(12 * advance)));
    EXPECT_FALSE(painted.isBlank(static_cast<int>(15 * advance), static_cast<int>(16 * advance)));
    EXPECT_FALSE(painted.isBlank(static_cast<int>(19 * advance), static_cast<int>(20 * advance)));
    EXPECT_TRUE(painted.isBlank(static_cast<int>(24 * advance), 600));
}

TEST(ClusterText, AClusterHasTheColorOfItsFirstUnit) {
    const ClusterText text = clusterText(u"Ñe\u0301MÑ"_qs);
    const Painted painted(text, 0, 600, [](TextRange, const TextPainting::VisitColor& visit) {
        visit(0, 2, ColorRole::text);
        visit(2, 2, ColorRole::red);
        visit(4, 1, ColorRole::text);
    });
    const auto at = [&](int index) { return static_cast<int>(text.x(index)); };
    EXPECT_FALSE(painted.hasRed(0, at(3)));
    EXPECT_TRUE(painted.hasRed(at(3) + 1, at(4)));
    EXPECT_FALSE(painted.hasRed(at(4) + 1, 600));
    EXPECT_FALSE(painted.isBlank(at(1) + 1, at(3)));
}

} // namespace
} // namespace quelm
