#pragma once

#include <QProxyStyle>

namespace quelm {

/// Fusion with quieter buttons, for platforms without a theme of their own.
class OwnStyle : public QProxyStyle {
    Q_OBJECT

public:
    OwnStyle();

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QIcon standardIcon(StandardPixmap pixmap, const QStyleOption* option, const QWidget* widget) const override;
};

} // namespace quelm
