#include "Quelm/TextEngine/TextFont.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace quelm {

namespace {

/// The font without kerning, which has no place on a grid, and with a family that has whole emoji sequences to fall
/// back on, before others that have only parts of them.
QFont fitForText(QFont font) {
    font.setKerning(false);
    // A platform's font may go by a name that stands for another family, which is found only where it is the one name.
    QStringList families(QFontInfo(font).family());
    for (const QString& emoji :
         {QStringLiteral("Noto Color Emoji"), QStringLiteral("Apple Color Emoji"), QStringLiteral("Segoe UI Emoji")})
        if (QFontDatabase::hasFamily(emoji) && !families.contains(emoji))
            families.append(emoji);
    font.setFamilies(families);
    return font;
}

QString printableASCII() {
    QString printable;
    for (char16_t unit = u' '; unit <= u'~'; ++unit)
        printable += QChar(unit);
    return printable;
}

/// The advance that shaping gives the widest character: that of all in a fixed-pitch font, and in others what every
/// character fits into.
double widestAdvance(const QFontMetricsF& metrics, const QString& characters) {
    constexpr int sample = 64; // characters, over which the rounding of a sum is spread
    double widest = 0;
    for (const QChar character : characters)
        widest = std::max(widest, metrics.horizontalAdvance(QString(sample, character)) / sample);
    return widest;
}

} // namespace

TextFont::TextFont(const QFont& font) : font_(fitForText(font)), rawFont_(QRawFont::fromFont(font_)) {
    const QString printable = printableASCII();
    const QList<quint32> glyphs = rawFont_.glyphIndexesForString(printable);
    std::copy_n(glyphs.begin(), std::min<qsizetype>(printable.size(), glyphs.size()), glyphs_.begin());

    const QFontMetricsF metrics(font_);
    advance_ = std::max(widestAdvance(metrics, printable), 1.0);
    const double height = metrics.ascent() + metrics.descent();
    const double leading = std::max(1.3 * QFontInfo(font_).pixelSize() - height, 0.1 * height);
    rowHeight_ = static_cast<int>(std::ceil(height + leading));
    ascent_ = static_cast<int>(std::lround(metrics.ascent() + (rowHeight_ - height) / 2));
}

QRectF TextFont::underline(QPointF origin, double left, double right) const {
    const double thickness = std::max(std::round(rowHeight_ / 16.0), 1.0);
    const double top = std::min(thickness + 1, rowHeight_ - ascent_ - thickness);
    return {origin.x() + left, origin.y() + top, right - left, thickness};
}

} // namespace quelm
