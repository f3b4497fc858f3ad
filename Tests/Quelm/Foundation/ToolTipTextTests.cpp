#include "Quelm/Foundation/ToolTipText.h"

#include <QTextDocumentFragment>

#include <gtest/gtest.h>
#include <string>

namespace quelm {
namespace {

/// What the user reads.
QString shown(std::string_view text) {
    return QTextDocumentFragment::fromHtml(toolTipText(text)).toPlainText();
}

TEST(ToolTipTextTests, AShortTextIsShownAsItIs) {
    EXPECT_EQ(shown("dos  espacios"), QStringLiteral("dos  espacios"));
}

TEST(ToolTipTextTests, MarkupIsShownNotObeyed) {
    EXPECT_EQ(shown("<b>x</b> &amp; y"), QStringLiteral("<b>x</b> &amp; y"));
}

TEST(ToolTipTextTests, ALineWithoutSpacesIsBrokenWhereItIsFull) {
    EXPECT_EQ(shown(std::string(100, 'x')), QString(80, u'x') + u'\n' + QString(20, u'x'));
}

TEST(ToolTipTextTests, ALineWithSpacesIsBrokenAfterOne) {
    const std::string text = std::string(70, 'x') + " " + std::string(30, 'y');
    EXPECT_EQ(shown(text), QString(70, u'x') + QStringLiteral(" \n") + QString(30, u'y'));
}

TEST(ToolTipTextTests, AVeryLongTextEndsAfterAFewHundredCharacters) {
    const QString text = shown(std::string(8'000'000, 'x'));
    EXPECT_EQ(text.count(u'x'), 400);
    EXPECT_TRUE(text.endsWith(u'…'));
}

} // namespace
} // namespace quelm
