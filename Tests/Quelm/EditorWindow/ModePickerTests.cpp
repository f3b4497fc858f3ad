#include "Quelm/EditorWindow/ModePicker.h"
#include "Quelm/Foundation/Appearance.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QAccessible>
#include <QImage>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class ModePickerTests : public testing::Test {
protected:
    ModePickerTests() {
        picker.show();
        picker.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&picker));
    }
    QRadioButton* tree() const { return picker.findChildren<QRadioButton*>().at(0); }
    QRadioButton* text() const { return picker.findChildren<QRadioButton*>().at(1); }

    ModePicker picker;
    QSignalSpy chosen{&picker, &ModePicker::modeChosen};
};

TEST_F(ModePickerTests, ItsSegmentsAreNamed) {
    EXPECT_EQ(picker.accessibleName(), QStringLiteral("Modo"));
    EXPECT_EQ(tree()->text(), QStringLiteral("Árbol"));
    EXPECT_EQ(text()->text(), QStringLiteral("Texto"));
    const QAccessibleInterface* segment = QAccessible::queryAccessibleInterface(tree());
    EXPECT_EQ(segment->role(), QAccessible::RadioButton);
    EXPECT_TRUE(segment->state().checked);
}

TEST_F(ModePickerTests, ClickingAsksForTheOtherModeAndChangesNothing) {
    QTest::mouseClick(text(), Qt::LeftButton);
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen.constFirst().constFirst().value<EditorMode>(), EditorMode::text);
    EXPECT_EQ(picker.mode(), EditorMode::tree);
    EXPECT_TRUE(tree()->isChecked());
    EXPECT_FALSE(text()->isChecked());
    QTest::mouseClick(tree(), Qt::LeftButton);
    EXPECT_EQ(chosen.count(), 1);
}

TEST_F(ModePickerTests, ItShowsTheModeThatItIsTold) {
    picker.setMode(EditorMode::text);
    EXPECT_TRUE(text()->isChecked());
    EXPECT_FALSE(tree()->isChecked());
    EXPECT_EQ(chosen.count(), 0);
}

TEST_F(ModePickerTests, ArrowsAndSpaceAskForTheOtherMode) {
    picker.setFocus();
    EXPECT_TRUE(tree()->hasFocus());
    QTest::keyClick(tree(), Qt::Key_Left);
    QTest::keyClick(tree(), Qt::Key_Space);
    EXPECT_EQ(chosen.count(), 0);
    QTest::keyClick(tree(), Qt::Key_Right);
    EXPECT_EQ(chosen.count(), 1);
    EXPECT_TRUE(tree()->hasFocus());

    picker.setMode(EditorMode::text);
    EXPECT_TRUE(text()->hasFocus());
    QTest::keyClick(text(), Qt::Key_Left);
    ASSERT_EQ(chosen.count(), 2);
    EXPECT_EQ(chosen.constLast().constFirst().value<EditorMode>(), EditorMode::tree);
}

TEST_F(ModePickerTests, TheTabulatorComesToTheSegmentThatIsShown) {
    EXPECT_TRUE(tree()->focusPolicy() & Qt::TabFocus);
    EXPECT_FALSE(text()->focusPolicy() & Qt::TabFocus);
    picker.setMode(EditorMode::text);
    EXPECT_FALSE(tree()->focusPolicy() & Qt::TabFocus);
    EXPECT_TRUE(text()->focusPolicy() & Qt::TabFocus);
    QTest::mouseClick(tree(), Qt::LeftButton);
    EXPECT_FALSE(tree()->hasFocus());
}

TEST_F(ModePickerTests, WhileDisabledItAsksForNothing) {
    picker.setEnabled(false);
    QTest::mouseClick(text(), Qt::LeftButton);
    QTest::keyClick(text(), Qt::Key_Right);
    EXPECT_EQ(chosen.count(), 0);
}

TEST_F(ModePickerTests, EveryStateLooksDifferentInBothAppearances) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        picker.setPalette(ownPalette(appearance));
        picker.focusProxy()->clearFocus();
        picker.setMode(EditorMode::tree);
        const QImage asTree = picker.grab().toImage();
        picker.setMode(EditorMode::text);
        const QImage asText = picker.grab().toImage();
        picker.setFocus();
        const QImage focused = picker.grab().toImage();
        picker.setEnabled(false);
        const QImage disabled = picker.grab().toImage();
        picker.setEnabled(true);
        EXPECT_NE(asTree, asText);
        EXPECT_NE(asText, focused);
        EXPECT_NE(asText, disabled);
    }
}

} // namespace
} // namespace quelm
