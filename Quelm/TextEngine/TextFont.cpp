#include "Quelm/TextEngine/TextFont.h"

#include <QFontMetricsF>
#include <QList>
#include <QString>

#include <algorithm>
#include <cmath>

namespace quelm {

TextFont::TextFont(const QFont& font) : font_(font), rawFont_(QRawFont::fromFont(font)) {
    QString printable;
    for (char16_t unit = u' '; unit <= u'~'; ++unit)
        printable += QChar(unit);
    const QList<quint32> glyphs = rawFont_.glyphIndexesForString(printable);
    std::copy_n(glyphs.begin(), std::min<std::size_t>(glyphs_.size(), static_cast<std::size_t>(glyphs.size())),
                glyphs_.begin());

    const QFontMetricsF metrics(font);
    constexpr int sample = 64;
    advance_ = metrics.horizontalAdvance(QString(sample, u'0')) / sample;
    tabWidth_ = 4 * advance_;
    const double leading = 0.12 * metrics.height();
    rowHeight_ = static_cast<int>(std::ceil(metrics.height() + leading));
    ascent_ = static_cast<int>(std::lround(metrics.ascent() + leading / 2));
}

} // namespace quelm
