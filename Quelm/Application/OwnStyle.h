#pragma once

#include <QProxyStyle>

namespace quelm {

/// Fusion with quieter buttons and toolbars, and menus whose edges can be seen in the dark too, for platforms without a
/// theme of their own.
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
    QIcon standardIcon(StandardPixmap pixmap, const QStyleOption* option, const QWidget* widget) const override;

private:
    static void drawToolBar(const QStyleOption& option, QPainter& painter);
    static void drawToolBarSeparator(const QStyleOption& option, QPainter& painter);
};

} // namespace quelm
