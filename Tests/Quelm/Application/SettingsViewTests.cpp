#include "Quelm/Application/SettingsView.h"
#include "Quelm/Foundation/Preferences.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/TemporaryPreferences.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QSettings>
#include <QTest>

#include <gtest/gtest.h>

namespace quelm {
namespace {

using Preferences::InitialMode;
using Indent = JSONStyle::Indent;

class SettingsViewTests : public testing::Test {
protected:
    void show() {
        view.show();
        QApplication::setActiveWindow(&view);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    /// The picker behind a label.
    QComboBox& picker(const QString& title) {
        for (const QLabel* label : view.findChildren<QLabel*>())
            if (label->text() == title)
                return dynamic_cast<QComboBox&>(*label->buddy());
        throw std::out_of_range("there is no picker " + title.toStdString());
    }
    QComboBox& indent() { return picker(QStringLiteral("Sangría")); }
    QComboBox& initialMode() { return picker(QStringLiteral("Mostrar en")); }
    QCheckBox& sortsKeys() { return *view.findChild<QCheckBox*>(); }

    /// Opens the picker with a click and clicks on an item of it.
    static void choose(QComboBox& picker, const QString& title) {
        QTest::mouseClick(&picker, Qt::LeftButton);
        QAbstractItemView* list = picker.view();
        QTRY_VERIFY(list->isVisible());
        const QModelIndex item = picker.model()->index(picker.findText(title), 0);
        // For a moment the list takes a release of the button for the end of the click that opened it.
        QTRY_VERIFY((QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(item).center()),
                     !list->isVisible()));
    }

    void storeDirectly(const char* key, const QVariant& value) {
        QSettings(preferences.path(), QSettings::IniFormat).setValue(QLatin1String(key), value);
    }
    bool isStored(const char* key) {
        return QSettings(preferences.path(), QSettings::IniFormat).contains(QLatin1String(key));
    }

    static QStringList items(const QComboBox& picker) {
        QStringList items;
        for (int index = 0; index < picker.count(); ++index)
            items += picker.itemText(index);
        return items;
    }

    TemporaryPreferences preferences;
    SettingsView view;
};

TEST_F(SettingsViewTests, ItIsAFormOfTwoHeadedGroups) {
    show();
    EXPECT_EQ(view.windowTitle(), QStringLiteral("Preferencias"));
    QList<QGroupBox*> groups = view.findChildren<QGroupBox*>();
    std::ranges::sort(groups, {}, &QWidget::y);
    ASSERT_EQ(groups.size(), 2);
    EXPECT_EQ(groups[0]->title(), QStringLiteral("Embellecer y exportar"));
    EXPECT_EQ(groups[1]->title(), QStringLiteral("Al abrir un archivo"));
    EXPECT_EQ(indent().parentWidget(), groups[0]);
    EXPECT_EQ(sortsKeys().parentWidget(), groups[0]);
    EXPECT_LT(indent().y(), sortsKeys().y());
    EXPECT_EQ(initialMode().parentWidget(), groups[1]);

    EXPECT_EQ(sortsKeys().text(), QStringLiteral("Ordenar claves alfabéticamente"));
    EXPECT_EQ(items(indent()),
              QStringList({QStringLiteral("2 espacios"), QStringLiteral("4 espacios"), QStringLiteral("Tabulador")}));
    EXPECT_EQ(items(initialMode()), QStringList({QStringLiteral("Árbol si es válido, si no Texto"),
                                                 QStringLiteral("Árbol"), QStringLiteral("Texto (formato original)")}));
}

TEST_F(SettingsViewTests, WithNothingStoredItShowsTheDefaultsAndStoresNothing) {
    show();
    EXPECT_EQ(indent().currentText(), QStringLiteral("2 espacios"));
    EXPECT_FALSE(sortsKeys().isChecked());
    EXPECT_EQ(initialMode().currentText(), QStringLiteral("Árbol si es válido, si no Texto"));
    for (const char* key : {"indent", "sortKeys", "initialMode"})
        EXPECT_FALSE(isStored(key)) << key;
}

TEST_F(SettingsViewTests, WhatIsChosenByKeysIsStoredAtOnce) {
    show();
    QTest::keyClick(&indent(), Qt::Key_Down);
    EXPECT_EQ(Preferences::indent(), Indent::fourSpaces);
    QTest::keyClick(&indent(), Qt::Key_End);
    EXPECT_EQ(Preferences::indent(), Indent::tab);
    QTest::keyClick(&indent(), Qt::Key_Home);
    EXPECT_EQ(Preferences::indent(), Indent::twoSpaces);

    QTest::keyClick(&initialMode(), Qt::Key_Down);
    EXPECT_EQ(Preferences::initialMode(), InitialMode::tree);
    QTest::keyClick(&initialMode(), Qt::Key_Down);
    EXPECT_EQ(Preferences::initialMode(), InitialMode::text);

    QTest::keyClick(&sortsKeys(), Qt::Key_Space);
    EXPECT_TRUE(Preferences::sortsKeys());
}

TEST_F(SettingsViewTests, WhatIsChosenByTheMouseIsStoredAtOnce) {
    show();
    choose(indent(), QStringLiteral("Tabulador"));
    EXPECT_EQ(Preferences::indent(), Indent::tab);
    choose(initialMode(), QStringLiteral("Texto (formato original)"));
    EXPECT_EQ(Preferences::initialMode(), InitialMode::text);
    QTest::mouseClick(&sortsKeys(), Qt::LeftButton, {}, QPoint(8, sortsKeys().height() / 2));
    EXPECT_EQ(Preferences::preferredStyle(), JSONStyle::pretty(Indent::tab, true));
    QTest::mouseClick(&sortsKeys(), Qt::LeftButton, {}, QPoint(8, sortsKeys().height() / 2));
    EXPECT_EQ(Preferences::preferredStyle(), JSONStyle::pretty(Indent::tab, false));
}

TEST_F(SettingsViewTests, AChangeLeavesTheOtherSettingsAlone) {
    storeDirectly("initialMode", QStringLiteral("unknown"));
    show();
    QTest::keyClick(&indent(), Qt::Key_Down);
    EXPECT_FALSE(isStored("sortKeys"));
    EXPECT_EQ(QSettings(preferences.path(), QSettings::IniFormat).value(QStringLiteral("initialMode")).toString(),
              QStringLiteral("unknown"));
}

TEST_F(SettingsViewTests, UnknownTextsAreShownAsTheDefaults) {
    storeDirectly("indent", QStringLiteral("Tab"));
    storeDirectly("initialMode", QStringLiteral("Text"));
    storeDirectly("sortKeys", QStringLiteral("quizás"));
    show();
    EXPECT_EQ(indent().currentText(), QStringLiteral("2 espacios"));
    EXPECT_EQ(initialMode().currentText(), QStringLiteral("Árbol si es válido, si no Texto"));
    EXPECT_FALSE(sortsKeys().isChecked());
}

TEST_F(SettingsViewTests, WhatWasStoredMeanwhileIsReadWhenItIsShownAgain) {
    show();
    view.hide();
    Preferences::setIndent(Indent::tab);
    Preferences::setInitialMode(InitialMode::text);
    Preferences::setSortsKeys(true);
    show();
    EXPECT_EQ(indent().currentText(), QStringLiteral("Tabulador"));
    EXPECT_EQ(initialMode().currentText(), QStringLiteral("Texto (formato original)"));
    EXPECT_TRUE(sortsKeys().isChecked());
}

TEST_F(SettingsViewTests, EscapeAndTheKeysOfClosingCloseIt) {
    for (const auto& [key, modifiers] :
         {std::pair{Qt::Key_Escape, Qt::KeyboardModifiers()}, std::pair{Qt::Key_W, Qt::KeyboardModifiers(Qt::CTRL)}}) {
        for (QWidget* focused : {static_cast<QWidget*>(&indent()), static_cast<QWidget*>(&sortsKeys())}) {
            show();
            focused->setFocus();
            QTest::keyClick(focused, key, modifiers);
            EXPECT_FALSE(view.isVisible()) << key;
        }
    }
}

TEST_F(SettingsViewTests, ItOpensInTheMiddleOfTheActiveWindowAndStaysWhereItIsPut) {
    QWidget window;
    window.setGeometry(100, 150, 560, 400);
    window.show();
    QApplication::setActiveWindow(&window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    show();
    const QPoint offset = view.geometry().center() - window.geometry().center();
    EXPECT_LE(offset.manhattanLength(), 4);

    view.move(30, 40);
    const QPoint place = view.pos();
    view.hide();
    QApplication::setActiveWindow(&window);
    show();
    EXPECT_EQ(view.pos(), place);
}

TEST_F(SettingsViewTests, ItsSizeIsFixed) {
    show();
    EXPECT_EQ(view.minimumSize(), view.maximumSize());
    EXPECT_EQ(view.size(), view.sizeHint());
}

} // namespace
} // namespace quelm
