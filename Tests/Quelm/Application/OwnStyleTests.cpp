#include "Quelm/Application/OwnStyle.h"
#include "Quelm/Foundation/Appearance.h"
#include "Quelm/Foundation/SemanticColors.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QImage>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QToolBar>

#include <gtest/gtest.h>

namespace quelm {
namespace {

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
