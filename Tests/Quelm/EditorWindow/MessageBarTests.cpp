#include "Quelm/EditorWindow/MessageBar.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace quelm {
namespace {

TEST(MessageBarTests, ItShowsItsTextAndSymbol) {
    MessageBar bar(QStringLiteral("xmark.octagon.fill"), ColorRole::red);
    bar.resize(400, 40);
    const QImage empty = bar.grab().toImage();
    bar.setText(QStringLiteral("Línea 1, columna 2: Valor inesperado"));
    EXPECT_EQ(bar.text(), QStringLiteral("Línea 1, columna 2: Valor inesperado"));
    EXPECT_EQ(bar.accessibleName(), bar.text());
    EXPECT_NE(bar.grab().toImage(), empty);
}

TEST(MessageBarTests, ALongMessageTakesMoreLinesRatherThanBeCut) {
    MessageBar bar(QStringLiteral("info.circle"), ColorRole::secondaryText);
    bar.setText(QStringLiteral("Un mensaje corto"));
    const int oneLine = bar.heightForWidth(300);
    bar.setText(QStringLiteral("Un mensaje que no cabe en una sola línea de esta anchura ").repeated(4));
    EXPECT_GT(bar.heightForWidth(300), 2 * oneLine);
}

} // namespace
} // namespace quelm
