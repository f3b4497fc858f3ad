#include "Quelm/EditorWindow/TextPreview.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QElapsedTimer>
#include <QScrollBar>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

TEST(TextPreviewTests, AShortTextIsShownWhole) {
    const TextPreview preview(SharedText("uno\n\tdos\r\n\ntres"));
    EXPECT_EQ(preview.lines(),
              QStringList({QStringLiteral("uno"), QStringLiteral("    dos"), QString(), QStringLiteral("tres")}));
    EXPECT_FALSE(preview.isPartial());
}

TEST(TextPreviewTests, AnEmptyTextHasNoLines) {
    const TextPreview preview{SharedText()};
    EXPECT_TRUE(preview.lines().isEmpty());
    EXPECT_FALSE(preview.isPartial());
}

TEST(TextPreviewTests, ALongTextIsCutAndSaysSo) {
    std::string text;
    for (int line = 0; line < 100'000; ++line)
        text += "línea\n";
    const TextPreview preview{SharedText(text)};
    EXPECT_TRUE(preview.isPartial());
    EXPECT_LT(preview.lines().size(), 1000);
}

TEST(TextPreviewTests, OneLineOfManyMegabytesCostsNoMoreThanAShortOne) {
    const SharedText text(std::string(200'000'000, 'x'));
    QElapsedTimer timer;
    timer.start();
    TextPreview preview(text);
    preview.resize(600, 400);
    preview.grab();
    EXPECT_LT(timer.elapsed(), 500);
    EXPECT_TRUE(preview.isPartial());
    ASSERT_EQ(preview.lines().size(), 1);
    EXPECT_LT(preview.lines().front().size(), 1000);
}

TEST(TextPreviewTests, ItCanBeScrolledToItsLastLineAndAcross) {
    std::string text;
    for (int line = 0; line < 100; ++line)
        text += std::string(200, 'x') + "\n";
    TextPreview preview{SharedText(text)};
    preview.resize(300, 200);
    preview.grab();
    EXPECT_GT(preview.verticalScrollBar()->maximum(), 0);
    EXPECT_GT(preview.horizontalScrollBar()->maximum(), 0);
    const QImage before = preview.viewport()->grab().toImage();
    preview.horizontalScrollBar()->setValue(preview.horizontalScrollBar()->maximum());
    preview.verticalScrollBar()->setValue(preview.verticalScrollBar()->maximum());
    EXPECT_NE(preview.viewport()->grab().toImage(), before);
}

TEST(TextPreviewTests, AMarkedLineStandsOut) {
    TextPreview preview{SharedText("uno\ndos\ntres")};
    preview.resize(300, 200);
    const QImage before = preview.grab().toImage();
    preview.markLine(2);
    EXPECT_NE(preview.grab().toImage(), before);
}

TEST(TextPreviewTests, AMarkedLineFarDownIsScrolledTo) {
    TextPreview preview{SharedText(std::string(300, '\n'))};
    preview.resize(300, 200);
    preview.markLine(250);
    preview.show();
    EXPECT_GT(preview.verticalScrollBar()->value(), 0);
    EXPECT_LT(preview.verticalScrollBar()->value(), preview.verticalScrollBar()->maximum());
}

TEST(TextPreviewTests, ALineThatEndsInDotsIsNotTakenForACutOne) {
    EXPECT_FALSE(TextPreview{SharedText("uno…")}.isPartial());
}

} // namespace
} // namespace quelm
