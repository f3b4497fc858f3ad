#include "Quelm/EditorWindow/GoToLineDialog.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>
#include <limits>

namespace quelm {
namespace {

TEST(GoToLineDialogTests, AWholeNumberIsALine) {
    EXPECT_EQ(GoToLineDialog::line(QStringLiteral("1")), 1);
    EXPECT_EQ(GoToLineDialog::line(QStringLiteral("42")), 42);
    EXPECT_EQ(GoToLineDialog::line(QStringLiteral("007")), 7);
    EXPECT_EQ(GoToLineDialog::line(QStringLiteral("+7")), 7);
    EXPECT_EQ(GoToLineDialog::line(QStringLiteral("9223372036854775807")), std::numeric_limits<std::int64_t>::max());
}

TEST(GoToLineDialogTests, WhatIsNoNumberOrNoLineIsTheFirstLine) {
    const char* const inputs[] = {"",
                                  "abc",
                                  "0",
                                  "-0",
                                  "-5",
                                  " 3",
                                  "3 ",
                                  "3.0",
                                  "1e3",
                                  "0x10",
                                  "3 4",
                                  "+",
                                  "-",
                                  "+-7",
                                  "++7",
                                  "-+7",
                                  "--7",
                                  "٣",
                                  "٣4",
                                  "１２",
                                  "1,000",
                                  "9223372036854775808",
                                  "-9223372036854775809",
                                  "99999999999999999999999"};
    for (const char* input : inputs)
        EXPECT_EQ(GoToLineDialog::line(QString::fromUtf8(input)), 1) << input;
}

TEST(GoToLineDialogTests, ItBeginsWithTheLastInputSelected) {
    GoToLineDialog dialog(QStringLiteral("12"), nullptr);
    dialog.show();
    EXPECT_EQ(dialog.input(), QStringLiteral("12"));
    QTest::keyClicks(dialog.findChild<QLineEdit*>(), QStringLiteral("3"));
    EXPECT_EQ(dialog.input(), QStringLiteral("3"));
}

TEST(GoToLineDialogTests, ReturnAcceptsAndEscapeRejects) {
    GoToLineDialog dialog(QString(), nullptr);
    dialog.show();
    QTest::keyClick(dialog.findChild<QLineEdit*>(), Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    dialog.show();
    QTest::keyClick(dialog.findChild<QLineEdit*>(), Qt::Key_Escape);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(dialog.isVisible());
}

} // namespace
} // namespace quelm
