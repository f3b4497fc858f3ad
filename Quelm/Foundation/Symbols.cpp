#include "Quelm/Foundation/Symbols.h"

#include "TextCore/Check.h"

#include <QFile>
#include <QIconEngine>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <cmath>
#include <memory>

// The macro declares a function of the global namespace.
static void initialiseSymbols() {
    Q_INIT_RESOURCE(symbols);
}

namespace quelm {

namespace {

QImage renderSymbol(const QString& name, QSize devicePixels, const QColor& color, double degrees) {
    static const bool initialised = (initialiseSymbols(), true);
    Q_UNUSED(initialised);

    QSvgRenderer renderer(QStringLiteral(":/symbols/%1.svg").arg(name));
    require(renderer.isValid(), "every symbol that is named has a drawing");
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);

    QImage image(devicePixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area(QPointF(0, 0), QSizeF(devicePixels));
    painter.translate(area.center());
    painter.rotate(degrees);
    painter.translate(-area.center());
    renderer.render(&painter, area);
    painter.resetTransform();
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

/// The symbol for a device, from the cache that all windows share. Half-way turns last for one frame and stay out of
/// it.
QPixmap symbolPixmap(const QString& name, QSize devicePixels, const QColor& color, double degrees) {
    const auto key = QStringLiteral("quelm.%1.%2x%3.%4.%5")
                         .arg(name)
                         .arg(devicePixels.width())
                         .arg(devicePixels.height())
                         .arg(color.rgba(), 0, 16)
                         .arg(degrees);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = QPixmap::fromImage(renderSymbol(name, devicePixels, color, degrees));
    if (std::fmod(degrees, 90) == 0)
        QPixmapCache::insert(key, pixmap);
    return pixmap;
}

class SymbolIconEngine : public QIconEngine {
public:
    SymbolIconEngine(QString name, ColorRole role) : name_(std::move(name)), role_(role) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        paintSymbol(*painter, name_, rect, color(mode));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return symbolPixmap(name_, size, color(mode), 0);
    }

    QIconEngine* clone() const override { return new SymbolIconEngine(name_, role_); }

private:
    QColor color(QIcon::Mode mode) const {
        return semanticColor(mode == QIcon::Disabled ? ColorRole::disabledText : role_);
    }

    QString name_;
    ColorRole role_;
};

} // namespace

QIcon symbolIcon(const QString& name, ColorRole role) {
    return QIcon(new SymbolIconEngine(name, role));
}

void paintSymbol(QPainter& painter, const QString& name, const QRectF& area, const QColor& color,
                 double clockwiseDegrees) {
    // Snapped to the device's pixels, or a fractional ratio would blur every edge. The transformation knows the ratio
    // also where a widget is rendered into a picture of another one.
    const double ratio = painter.deviceTransform().m11();
    const QPointF origin = painter.deviceTransform().map(area.topLeft());
    const QPointF snapped(std::round(origin.x()), std::round(origin.y()));
    const QSize devicePixels(static_cast<int>(std::lround(area.width() * ratio)),
                             static_cast<int>(std::lround(area.height() * ratio)));
    if (devicePixels.isEmpty())
        return;

    QPixmap pixmap = symbolPixmap(name, devicePixels, color, clockwiseDegrees);
    pixmap.setDevicePixelRatio(ratio);
    painter.drawPixmap(area.topLeft() + (snapped - origin) / ratio, pixmap);
}

} // namespace quelm
