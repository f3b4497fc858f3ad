#include "Quelm/Application/OwnStyle.h"
#include "Quelm/Foundation/Appearance.h"
#include "Quelm/Foundation/SemanticColors.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QImage>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QToolBar>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace quelm {
namespace {

/// How many times the brighter of two colours is as bright as the other.
double contrast(const QColor& one, const QColor& other) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const auto [darker, brighter] = std::minmax({luminance(one), luminance(other)});
    return (brighter + 0.05) / (darker + 0.05);
}

class OwnStyleCheckBoxTests : public testing::TestWithParam<Appearance> {
protected:
    OwnStyleCheckBoxTests() { QApplication::setPalette(ownPalette(GetParam())); }
    ~OwnStyleCheckBoxTests() override { QApplication::setPalette(ownPalette(Appearance::light)); }

    /// The box of a check box whose edge meets the edges of the picture.
    static QImage box(Qt::CheckState state, bool isEnabled = true) {
        QCheckBox control;
        control.setTristate(true);
        control.setCheckState(state);
        control.setEnabled(isEnabled);
        control.resize(control.sizeHint());
        QStyleOptionButton option;
        option.initFrom(&control);
        const QRect area = control.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &control);
        return control.grab(area).toImage();
    }
    static QColor edge(const QImage& box) { return box.pixelColor(0, box.height() / 2); }
    static QColor color(ColorRole role) { return semanticColor(role, GetParam()); }
};

TEST_P(OwnStyleCheckBoxTests, TheEdgeStandsOutFromTheWindowAllRound) {
    const QImage image = box(Qt::Unchecked);
    const int last = image.width() - 1;
    const int middle = image.width() / 2;
    for (const QPoint place : {QPoint(0, middle), QPoint(last, middle), QPoint(middle, 0), QPoint(middle, last)})
        EXPECT_GE(contrast(image.pixelColor(place), color(ColorRole::windowBackground)), 3)
            << place.x() << ", " << place.y();
    EXPECT_EQ(image.pixelColor(1, middle), color(ColorRole::contentBackground)) << "the edge is a pixel wide";
    EXPECT_EQ(image.pixelColor(middle, middle), color(ColorRole::contentBackground));
}

TEST_P(OwnStyleCheckBoxTests, ACheckedOneIsFilledAndHasATickThatStandsOut) {
    const QImage image = box(Qt::Checked);
    EXPECT_EQ(image.pixelColor(2, 2), color(ColorRole::accent));
    EXPECT_GE(contrast(edge(image), color(ColorRole::windowBackground)), 3);
    double best = 1;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 2; x < image.width() - 2; ++x)
            best = std::max(best, contrast(image.pixelColor(x, y), color(ColorRole::accent)));
    EXPECT_GE(best, 3);
    EXPECT_NE(box(Qt::PartiallyChecked), image);
}

TEST_P(OwnStyleCheckBoxTests, ADisabledOneIsQuieter) {
    for (const Qt::CheckState state : {Qt::Unchecked, Qt::Checked}) {
        const QImage image = box(state, false);
        EXPECT_EQ(edge(image), color(ColorRole::disabledText));
        EXPECT_EQ(image.pixelColor(2, 2), color(ColorRole::windowBackground));
    }
    EXPECT_NE(box(Qt::Unchecked, false), box(Qt::Checked, false));
}

TEST_P(OwnStyleCheckBoxTests, AGroupHasAFrame) {
    QGroupBox group(QStringLiteral("a"));
    group.resize(200, 100);
    const QImage image = group.grab().toImage();
    const QColor background = color(ColorRole::windowBackground);
    EXPECT_GE(contrast(image.pixelColor(0, 60), background), 1.25);
    EXPECT_GE(contrast(image.pixelColor(100, 99), background), 1.25);
    EXPECT_EQ(image.pixelColor(190, 0), background) << "the frame is below the title";
}

INSTANTIATE_TEST_SUITE_P(OfBothAppearances, OwnStyleCheckBoxTests,
                         testing::Values(Appearance::light, Appearance::dark));

TEST(OwnStyleTests, ButtonsOfDialogsHaveNoPictures) {
    QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    EXPECT_TRUE(box.button(QDialogButtonBox::Ok)->icon().isNull());
}

TEST(OwnStyleTests, AMenuBarThatIsTooNarrowHasASymbolForTheRest) {
    const QIcon icon = QApplication::style()->standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton);
    EXPECT_FALSE(icon.pixmap(QSize(16, 16)).isNull());
}

TEST(OwnStyleTests, TheApplicationBringsItsOwnPaletteWhereThePlatformHasNone) {
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), ownPalette(Appearance::light).color(QPalette::Window));
    EXPECT_EQ(currentAppearance(), Appearance::light);
}

TEST(OwnStyleTests, AMenuHasAnEdgeInTheDarkToo) {
    QApplication::setPalette(ownPalette(Appearance::dark));
    QMenu menu;
    menu.addAction(QStringLiteral("a"));
    menu.addSeparator();
    menu.addAction(QStringLiteral("b"));
    const QImage image = menu.grab().toImage();
    const QColor edge = semanticColor(ColorRole::separator, Appearance::dark);
    EXPECT_EQ(image.pixelColor(0, image.height() / 4), edge);
    EXPECT_EQ(image.pixelColor(image.width() / 2, menu.actionGeometry(menu.actions().at(1)).center().y()), edge);
    QApplication::setPalette(ownPalette(Appearance::light));
}

TEST(OwnStyleTests, AToolBarIsFlatWithALineBelow) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        QApplication::setPalette(ownPalette(appearance));
        QMainWindow window;
        auto* bar = new QToolBar;
        bar->setMovable(false);
        bar->addAction(QStringLiteral("a"));
        window.addToolBar(bar);
        window.resize(300, 200);
        const QImage image = window.grab(bar->geometry()).toImage();
        const QColor background = semanticColor(ColorRole::windowBackground, appearance);
        const int middle = image.width() / 2;
        EXPECT_EQ(image.pixelColor(middle, 0), background);
        EXPECT_EQ(image.pixelColor(middle, image.height() - 2), background);
        EXPECT_EQ(image.pixelColor(middle, image.height() - 1), semanticColor(ColorRole::separator, appearance));
    }
    QApplication::setPalette(ownPalette(Appearance::light));
}

} // namespace
} // namespace quelm
