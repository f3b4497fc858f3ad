#include "Quelm/TreeEditor/TreeRowContents.h"
#include "Tests/Quelm/Support/Printing.h"
#include "Tests/Quelm/Support/Rows.h"

#include <QGuiApplication>
#include <QLocale>

#include <gtest/gtest.h>

namespace quelm {
namespace {

class TreeRowContentsTests : public testing::Test {
protected:
    TreeRowContents contents(const TreeRow& row) { return TreeRowContents(row, style); }

    TreeRowStyle style{QGuiApplication::palette()};
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
    EXPECT_EQ(contents(containerRow(TreeRow::Label::key("a"), NodeKind::object, 1)).value, QStringLiteral("1 clave"));
    EXPECT_EQ(contents(containerRow(TreeRow::Label::key("a"), NodeKind::array, 3)).value,
              QStringLiteral("3 elementos"));
}

TEST_F(TreeRowContentsTests, LabelsAreKeysPositionsAndTheRoot) {
    EXPECT_EQ(contents(scalarRow(TreeRow::Label::key("año"), NodeKind::null, "null")).label, QStringLiteral("año"));
    EXPECT_EQ(contents(scalarRow(TreeRow::Label::root(), NodeKind::null, "null")).label, QStringLiteral("raíz"));
    EXPECT_TRUE(contents(scalarRow(TreeRow::Label::root(), NodeKind::null, "null")).labelFace(style).font.italic());
    EXPECT_EQ(contents(scalarRow(TreeRow::Label::key("año"), NodeKind::null, "null")).labelFace(style).font.weight(),
              QFont::Medium);
}

TEST_F(TreeRowContentsTests, PositionsAreWrittenAsTheLocaleWritesNumbers) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(contents(scalarRow(TreeRow::Label::index(1234567), NodeKind::null, "null")).label,
              QStringLiteral("1.234.567"));
    QLocale::setDefault(before);
}

TEST_F(TreeRowContentsTests, BreaksAndControlsAreShownAsSigns) {
    EXPECT_EQ(contents(scalarRow(TreeRow::Label::key("a\nb"), NodeKind::string, "x\ty")).label, QStringLiteral("a⏎b"));
    EXPECT_EQ(contents(scalarRow(TreeRow::Label::key("a"), NodeKind::string, "x\ty\r\n")).value,
              QStringLiteral("x⇥y␍⏎"));
}

TEST_F(TreeRowContentsTests, TheWidthOfAStringHasRoomForItsQuotationMarks) {
    const double mark = style.value.metrics.horizontalAdvance(u'"');
    const TreeRow string = scalarRow(TreeRow::Label::root(), NodeKind::string, "12");
    const TreeRow number = scalarRow(TreeRow::Label::root(), NodeKind::number, "12");
    EXPECT_DOUBLE_EQ(contents(string).valueWidth, contents(number).valueWidth + 2 * mark);
}

TEST_F(TreeRowContentsTests, AnEmptyKeyIsNamed) {
    const TreeRowContents empty = contents(scalarRow(TreeRow::Label::key(""), NodeKind::string, ""));
    EXPECT_EQ(empty.label, QStringLiteral("clave vacía"));
    EXPECT_TRUE(empty.labelFace(style).font.italic());
    EXPECT_GT(empty.labelWidth, 0);
    EXPECT_FALSE(
        contents(scalarRow(TreeRow::Label::key("clave vacía"), NodeKind::string, "")).labelFace(style).font.italic());
}

TEST_F(TreeRowContentsTests, AKeyOfMegabytesIsCut) {
    const TreeRowContents cut =
        contents(scalarRow(TreeRow::Label::key(std::string(8'000'000, 'x')), NodeKind::null, "null"));
    EXPECT_TRUE(cut.isLabelCut);
    EXPECT_LT(cut.label.size(), 1000);
    EXPECT_TRUE(cut.label.endsWith(u'…'));
}

TEST_F(TreeRowContentsTests, AValueThatCameCutSaysSo) {
    const std::string cut = TreeRow::displayText(std::string(201, 'x'));
    EXPECT_TRUE(contents(scalarRow(TreeRow::Label::root(), NodeKind::string, cut)).isValueCut);
    const std::string whole = TreeRow::displayText(std::string(200, 'x'));
    EXPECT_FALSE(contents(scalarRow(TreeRow::Label::root(), NodeKind::string, whole)).isValueCut);
}

TEST_F(TreeRowContentsTests, AValueWithAnEllipsisOfItsOwnIsNotCut) {
    EXPECT_FALSE(contents(scalarRow(TreeRow::Label::root(), NodeKind::string, "y así…")).isValueCut);
    EXPECT_FALSE(contents(scalarRow(TreeRow::Label::key("más…"), NodeKind::string, "")).isLabelCut);
}

TEST_F(TreeRowContentsTests, TextsThatComeCutToAPreviewSaySo) {
    for (const std::string unit : {"x", "é", "😀", "\u0301", "👨‍👩‍👧‍👦"}) {
        std::string text = "a";
        while (text.size() < 2 * TreeRow::longestPreview)
            text += unit;
        const TreeRow whole = scalarRow(TreeRow::Label::key(text), NodeKind::string, TreeRow::displayText(text));
        const TreeRow preview = scalarRow(TreeRow::Label::key(std::string(TreeRow::previewKey(text))), NodeKind::string,
                                          TreeRow::previewText(text));
        EXPECT_TRUE(contents(preview).isLabelCut) << unit;
        EXPECT_TRUE(contents(preview).isValueCut) << unit;
        EXPECT_EQ(contents(preview).label, contents(whole).label) << unit;
        EXPECT_EQ(contents(preview).value, contents(whole).value) << unit;
    }
}

TEST_F(TreeRowContentsTests, ALetterWithAbsurdlyManyMarksIsCutAmongThem) {
    const auto marked = [](qsizetype marks) { return u'a' + QString(marks, QChar(0x0301)) + u'b'; };
    const auto valueOf = [&](const QString& text) {
        return contents(scalarRow(TreeRow::Label::root(), NodeKind::string, text.toStdString()));
    };
    EXPECT_EQ(valueOf(marked(90)).value, marked(90));
    EXPECT_FALSE(valueOf(marked(90)).isValueCut);
    EXPECT_EQ(valueOf(marked(1'000)).value, marked(128).chopped(1) + u'…');
    EXPECT_TRUE(valueOf(marked(1'000)).isValueCut);
    const TreeRowContents key =
        contents(scalarRow(TreeRow::Label::key(marked(1'000).toStdString()), NodeKind::null, "null"));
    EXPECT_EQ(key.label, marked(128).chopped(1) + u'…');
    EXPECT_TRUE(key.isLabelCut);
}

} // namespace
} // namespace quelm
