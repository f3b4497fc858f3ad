#include "Quelm/Foundation/Appearance.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Tests/Quelm/TextEngine/TextViewWindow.h"

#include <QSignalSpy>
#include <QTest>

namespace quelm {
namespace {

class TextViewPaintingTests : public TextViewWindow {
protected:
    TextViewPaintingTests() { setAppearance(Appearance::light); }

    void setAppearance(Appearance appearance) { window->setPalette(ownPalette(appearance)); }
    void openIn(Appearance appearance, const QString& marked) {
        open(marked);
        setAppearance(appearance);
    }

    /// The colour behind a character, just above where its ink may be.
    QColor behind(qint64 offset) {
        const QRect area = view->caretRectangleAt(offset);
        return painted().pixelColor(area.left() + area.width() + 2, area.top() + 1);
    }
    static QColor over(QColor base, QColor tint) {
        const auto mix = [&tint](int below, int above) {
            return static_cast<int>(below + (above - below) * tint.alphaF());
        };
        return {mix(base.red(), tint.red()), mix(base.green(), tint.green()), mix(base.blue(), tint.blue())};
    }
    static int distance(QColor one, QColor other) {
        return std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
               std::abs(one.blue() - other.blue());
    }
};

TEST_F(TextViewPaintingTests, TheSelectionIsTintedInEitherAppearance) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        openIn(appearance, QStringLiteral("ab^cd|ef"));
        const QColor base = semanticColor(ColorRole::contentBackground, appearance);
        const QColor tinted = over(base, semanticColor(ColorRole::textSelection, appearance));
        EXPECT_LE(distance(behind(0), base), 3);
        EXPECT_LE(distance(behind(2), tinted), 6);
        EXPECT_LE(distance(behind(5), base), 3);
    }
}

TEST_F(TextViewPaintingTests, WithoutTheFocusTheSelectionIsGrey) {
    openIn(Appearance::light, QStringLiteral("ab^cd|ef"));
    view->clearFocus();
    const QColor base = semanticColor(ColorRole::contentBackground, Appearance::light);
    EXPECT_LE(distance(behind(2), over(base, semanticColor(ColorRole::inactiveSelection, Appearance::light))), 6);
}

TEST_F(TextViewPaintingTests, ASelectedLineFeedTakesTheRestOfItsRow) {
    openIn(Appearance::light, QStringLiteral("a^b\nc|d"));
    const QRect first = view->caretRectangleAt(0);
    const QRect second = view->caretRectangleAt(3);
    const QImage image = painted();
    EXPECT_NE(image.pixelColor(600, first.center().y()), image.pixelColor(600, second.center().y()));
}

TEST_F(TextViewPaintingTests, TextIsInTheColourOfItsAttributes) {
    openIn(Appearance::light, QStringLiteral("■■"));
    view->textStorage().setAttributes({1, 1}, {ColorRole::red});
    const QImage image = painted();
    const auto hasInk = [&image, this](qint64 offset, ColorRole role) {
        const QRect area(view->caretRectangleAt(offset).topLeft(), view->caretRectangleAt(offset + 1).bottomLeft());
        const QColor ink = semanticColor(role, Appearance::light);
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left() + 3; x < area.right() - 1; ++x)
                if (distance(image.pixelColor(x, y), ink) < 40)
                    return true;
        return false;
    };
    EXPECT_TRUE(hasInk(0, ColorRole::text));
    EXPECT_FALSE(hasInk(0, ColorRole::red));
    EXPECT_TRUE(hasInk(1, ColorRole::red));
}

TEST_F(TextViewPaintingTests, ChangingThePaletteChangesTheColours) {
    openIn(Appearance::light, QStringLiteral("abc"));
    const QImage light = painted();
    setAppearance(Appearance::dark);
    const QImage dark = painted();
    EXPECT_GT(light.pixelColor(400, 300).lightness(), 200);
    EXPECT_LT(dark.pixelColor(400, 300).lightness(), 60);
}

TEST_F(TextViewPaintingTests, MarksAreTintedAndFollowTheirText) {
    openIn(Appearance::light, QStringLiteral("abcdef\nabcdef"));
    const QColor base = semanticColor(ColorRole::contentBackground, Appearance::light);
    view->setMarkedRanges({{2, 2}, {9, 2}});
    EXPECT_LE(distance(behind(0), base), 3);
    EXPECT_GT(distance(behind(2), base), 20);
    EXPECT_GT(distance(behind(9), base), 20);
    view->textStorage().replaceCharacters({0, 0}, QStringLiteral("x"));
    EXPECT_LE(distance(behind(2), base), 3);
    EXPECT_GT(distance(behind(3), base), 20);
    view->textStorage().replaceCharacters({3, 1}, QStringLiteral(""));
    EXPECT_LE(distance(behind(3), base), 3) << "what was edited is not what was found any more";
    EXPECT_GT(distance(behind(9), base), 20);
    view->setMarkedRanges({});
    EXPECT_LE(distance(behind(9), base), 3);
}

TEST_F(TextViewPaintingTests, TheFindIndicatorFlashesAndGoes) {
    openIn(Appearance::light, QStringLiteral("abcdef"));
    const QColor base = semanticColor(ColorRole::contentBackground, Appearance::light);
    view->showFindIndicator({1, 3});
    EXPECT_TRUE(view->isShowingFindIndicator());
    EXPECT_GT(distance(behind(2), base), 20);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !view->isShowingFindIndicator(); }));
    EXPECT_LE(distance(behind(2), base), 3);
}

TEST_F(TextViewPaintingTests, AnEditEndsTheFindIndicator) {
    open(QStringLiteral("abcdef"));
    view->showFindIndicator({1, 3});
    type(QStringLiteral("x"));
    EXPECT_FALSE(view->isShowingFindIndicator());
}

TEST_F(TextViewPaintingTests, ScrolledTextIsPaintedWhereItStands) {
    QString lines;
    for (int line = 0; line < 300; ++line)
        lines += QStringLiteral("line %1 with some text\n").arg(line % 10);
    openIn(Appearance::light, lines);
    view->clearFocus();
    const int rowHeight = view->textLayout().font().rowHeight();
    const QImage before = painted();
    view->verticalAxis().setPosition(10 * rowHeight + 7);
    const QImage after = painted();
    const QRect area(0, 0, view->viewport()->width(), view->viewport()->height() - 7);
    EXPECT_EQ(after.copy(area), before.copy(area.translated(0, 7)));
}

TEST_F(TextViewPaintingTests, DisabledTextIsPale) {
    openIn(Appearance::light, QStringLiteral("■"));
    const QImage enabled = painted();
    view->setEnabled(false);
    EXPECT_NE(painted(), enabled);
}

} // namespace
} // namespace quelm
