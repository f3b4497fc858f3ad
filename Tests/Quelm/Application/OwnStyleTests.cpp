#include "Quelm/Application/OwnStyle.h"
#include "Quelm/Foundation/Appearance.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QPushButton>

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

} // namespace
} // namespace quelm
