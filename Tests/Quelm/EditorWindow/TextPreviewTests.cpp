#include "Quelm/EditorWindow/TextPreview.h"
#include "Tests/Quelm/Support/Printing.h"

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

TEST(TextPreviewTests, OfOneLineOfManyMegabytesItTakesTheBeginning) {
    std::string line;
    line.resize(200'000'000, 'x');
    const SharedText text(line);
    TextPreview preview(text);
    preview.resize(600, 400);
    preview.grab();
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

TEST(TextPreviewTests, AMarkedPlaceStandsOut) {
    const SharedText text("uno\ndos\ntres");
    TextPreview plain(text);
    TextPreview marked(text, {5, 2});
    for (TextPreview* preview : {&plain, &marked})
        preview->resize(300, 200);
    ASSERT_TRUE(marked.mark());
    EXPECT_EQ(marked.mark()->line, 1);
    EXPECT_EQ(marked.mark()->character, 1);
    EXPECT_EQ(marked.lines(), plain.lines());
    EXPECT_NE(marked.grab().toImage(), plain.grab().toImage());
}

TEST(TextPreviewTests, AMarkedPlaceFarDownIsShownWithTheLinesAroundIt) {
    std::string text;
    for (int line = 1; line <= 200'000; ++line)
        text += "línea " + std::to_string(line) + "\n";
    const std::size_t offset = text.find("línea 150000\n");
    TextPreview preview(SharedText(text), {static_cast<std::int64_t>(offset), 150'000});
    preview.resize(300, 200);
    preview.show();
    ASSERT_TRUE(preview.mark());
    EXPECT_EQ(preview.lines()[preview.mark()->line], QStringLiteral("línea 150000"));
    EXPECT_EQ(preview.firstLineNumber() + preview.mark()->line, 150'000);
    EXPECT_TRUE(preview.isPartial());
    EXPECT_GT(preview.verticalScrollBar()->value(), 0);
    EXPECT_LT(preview.verticalScrollBar()->value(), preview.verticalScrollBar()->maximum());
}

TEST(TextPreviewTests, AMarkedPlaceFarAlongALineIsShownWithTheTextAroundIt) {
    const std::string text = std::string(5'000'000, 'a') + "!" + std::string(5'000'000, 'b');
    TextPreview preview(SharedText(text), {5'000'000, 1});
    preview.resize(300, 200);
    preview.show();
    ASSERT_TRUE(preview.mark());
    ASSERT_EQ(preview.lines().size(), 1);
    EXPECT_EQ(preview.lines().front()[preview.mark()->character], u'!');
    EXPECT_LT(preview.lines().front().size(), 1000);
    EXPECT_TRUE(preview.lines().front().startsWith(QStringLiteral("…a")));
    EXPECT_GT(preview.horizontalScrollBar()->value(), 0);
}

TEST(TextPreviewTests, APlaceAtTheEndOfAnEmptyTextIsMarked) {
    const TextPreview preview(SharedText(), {0, 1});
    ASSERT_TRUE(preview.mark());
    EXPECT_EQ(preview.lines(), QStringList{QString()});
}

} // namespace
} // namespace quelm
