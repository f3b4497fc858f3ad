#pragma once

#include <QProxyStyle>

namespace quelm {

/// Fusion with quieter buttons and toolbars, and check boxes, frames and menus whose edges can be seen in the dark too,
/// for platforms without a theme of their own.
class OwnStyle : public QProxyStyle {
    Q_OBJECT

public:
    OwnStyle();

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap pixmap, const QStyleOption* option, const QWidget* widget) const override;

private:
    static void drawCheckBox(const QStyleOption& option, QPainter& painter);
    void drawGroupFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget) const;
    static void drawEdgeInTheDark(const QStyleOption& option, QPainter& painter);
    static void drawToolBar(const QStyleOption& option, QPainter& painter);
    static void drawToolBarSeparator(const QStyleOption& option, QPainter& painter);
};

} // namespace quelm
