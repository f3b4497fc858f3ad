#include "Quelm/Foundation/Appearance.h"
#include "Quelm/Foundation/SemanticColors.h"
#include "Tests/Quelm/TreeEditor/InlineFieldWindow.h"

#include <algorithm>
#include <cmath>

namespace quelm {
namespace {

int distance(const QColor& first, const QColor& second) {
    return std::abs(first.red() - second.red()) + std::abs(first.green() - second.green()) +
           std::abs(first.blue() - second.blue());
}

class InlineFieldPaintingTests : public InlineFieldWindow {
protected:
    /// The outline in the middle of the left edge.
    QColor edge() {
        const QImage image = painted();
        return image.pixelColor(0, image.height() / 2);
    }
    static bool isSimilar(const QColor& first, const QColor& second) {
        constexpr int blend = 24; // what antialiasing may mix in
        return distance(first, second) < blend;
    }
    void setAppearance(Appearance appearance) { window->setPalette(ownPalette(appearance)); }
};

TEST_F(InlineFieldPaintingTests, TheOutlineIsRedWhileTheTextIsNotValid) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        setAppearance(appearance);
        openNumber("12");
        EXPECT_TRUE(isSimilar(edge(), semanticColor(ColorRole::accent, appearance)));
        type(QStringLiteral("x"));
        EXPECT_TRUE(isSimilar(edge(), semanticColor(ColorRole::red, appearance)));
        press(Qt::Key_Backspace);
        type(QStringLiteral("1"));
        EXPECT_TRUE(isSimilar(edge(), semanticColor(ColorRole::accent, appearance)));
    }
}

TEST_F(InlineFieldPaintingTests, TheRedOutlineGoesAllAround) {
    openNumber("x");
    const QImage image = painted();
    const QColor red = semanticColor(ColorRole::red, Appearance::light);
    const int right = image.width() - 1;
    const int bottom = image.height() - 1;
    for (const QPoint place :
         {QPoint(right / 2, 0), QPoint(right / 2, bottom), QPoint(0, bottom / 2), QPoint(right, bottom / 2)})
        EXPECT_TRUE(isSimilar(image.pixelColor(place), red)) << place.x() << ", " << place.y();
}

TEST_F(InlineFieldPaintingTests, CornersAreRound) {
    below->setAutoFillBackground(true);
    QPalette colors = below->palette();
    colors.setColor(QPalette::Window, Qt::magenta);
    below->setPalette(colors);
    openNumber("x");
    const QImage image = below->grab().toImage();
    EXPECT_EQ(image.pixelColor(field->pos()), QColor(Qt::magenta));
    EXPECT_EQ(image.pixelColor(field->geometry().bottomRight()), QColor(Qt::magenta));
}

TEST_F(InlineFieldPaintingTests, WithoutTheFocusTheOutlineIsALine) {
    openString("hola");
    other->setFocus(Qt::PopupFocusReason);
    EXPECT_TRUE(isSimilar(edge(), semanticColor(ColorRole::separator, Appearance::light)));
}

TEST_F(InlineFieldPaintingTests, TheBackgroundFollowsThePalette) {
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        openString("");
        setAppearance(appearance);
        const QImage image = painted();
        EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() / 2),
                  semanticColor(ColorRole::contentBackground, appearance));
    }
}

TEST_F(InlineFieldPaintingTests, TheTextFollowsThePalette) {
    setAppearance(Appearance::dark);
    openString("████");
    press(Qt::Key_End);
    const QImage image = painted();
    const QPoint glyph = field->textOrigin() + QPoint(12, view().textLayout().font().ascent() / 2);
    EXPECT_TRUE(isSimilar(image.pixelColor(glyph), semanticColor(ColorRole::text, Appearance::dark)));
}

} // namespace
} // namespace quelm
