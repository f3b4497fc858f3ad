#include "Quelm/TreeEditor/TreeRowContents.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QGuiApplication>
#include <QLocale>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class TreeRowContentsTests : public testing::Test {
protected:
    TreeRowContents contents(const TreeRow& row) { return TreeRowContents(row, style_); }

    TreeRowStyle style_{QGuiApplication::palette()};
};

TEST_F(TreeRowContentsTests, ChildrenAreCountedInWords) {
    EXPECT_EQ(childCountText(NodeKind::object, 0), QStringLiteral("0 claves"));
    EXPECT_EQ(childCountText(NodeKind::object, 1), QStringLiteral("1 clave"));
    EXPECT_EQ(childCountText(NodeKind::object, 2), QStringLiteral("2 claves"));
    EXPECT_EQ(childCountText(NodeKind::array, 0), QStringLiteral("0 elementos"));
    EXPECT_EQ(childCountText(NodeKind::array, 1), QStringLiteral("1 elemento"));
    EXPECT_EQ(childCountText(NodeKind::array, 5'000'000'000), QStringLiteral("5000000000 elementos"));
}

TEST_F(TreeRowContentsTests, AContainerShowsItsCount) {
    EXPECT_EQ(contents({.label = TreeRow::Label::key("a"), .kind = NodeKind::object, .childCount = 1}).value,
              QStringLiteral("1 clave"));
    EXPECT_EQ(contents({.label = TreeRow::Label::key("a"), .kind = NodeKind::array, .childCount = 3}).value,
              QStringLiteral("3 elementos"));
}

TEST_F(TreeRowContentsTests, LabelsAreKeysPositionsAndTheRoot) {
    EXPECT_EQ(contents({.label = TreeRow::Label::key("año")}).label, QStringLiteral("año"));
    EXPECT_EQ(contents({.label = TreeRow::Label::root()}).label, QStringLiteral("raíz"));
    EXPECT_TRUE(contents({.label = TreeRow::Label::root()}).labelFace(style_).font.italic());
    EXPECT_EQ(contents({.label = TreeRow::Label::key("año")}).labelFace(style_).font.weight(), QFont::Medium);
}

TEST_F(TreeRowContentsTests, PositionsAreWrittenAsTheLocaleWritesNumbers) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(contents({.label = TreeRow::Label::index(1234567)}).label, QStringLiteral("1.234.567"));
    QLocale::setDefault(before);
}

TEST_F(TreeRowContentsTests, BreaksAndControlsAreShownAsSigns) {
    EXPECT_EQ(
        contents({.label = TreeRow::Label::key("a\nb"), .kind = NodeKind::string, .value = "x\ty"}).label,
        QStringLiteral("a⏎b"));
    EXPECT_EQ(
        contents({.label = TreeRow::Label::key("a"), .kind = NodeKind::string, .value = "x\ty\r\n"}).value,
        QStringLiteral("x⇥y␍⏎"));
}

TEST_F(TreeRowContentsTests, TheWidthOfAStringHasRoomForItsQuotationMarks) {
    const double mark = style_.value.metrics.horizontalAdvance(u'"');
    const TreeRow string{.label = TreeRow::Label::root(), .kind = NodeKind::string, .value = "12"};
    const TreeRow number{.label = TreeRow::Label::root(), .kind = NodeKind::number, .value = "12"};
    EXPECT_DOUBLE_EQ(contents(string).valueWidth, contents(number).valueWidth + 2 * mark);
}

TEST_F(TreeRowContentsTests, AKeyOfMegabytesIsCut) {
    const TreeRowContents cut = contents({.label = TreeRow::Label::key(std::string(10'000'000, 'x'))});
    EXPECT_TRUE(cut.isLabelCut);
    EXPECT_LT(cut.label.size(), 1000);
    EXPECT_TRUE(cut.label.endsWith(u'…'));
}

TEST_F(TreeRowContentsTests, AValueThatCameCutSaysSo) {
    const std::string cut = TreeRow::displayText(std::string(201, 'x'));
    EXPECT_TRUE(
        contents({.label = TreeRow::Label::root(), .kind = NodeKind::string, .value = cut}).isValueCut);
    const std::string whole = TreeRow::displayText(std::string(200, 'x'));
    EXPECT_FALSE(
        contents({.label = TreeRow::Label::root(), .kind = NodeKind::string, .value = whole}).isValueCut);
}

} // namespace
} // namespace quelm
