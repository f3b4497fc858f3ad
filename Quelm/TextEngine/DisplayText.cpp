#include "Quelm/TextEngine/DisplayText.h"

#include "Quelm/TextEngine/TextFont.h"

#include <algorithm>

namespace quelm {

namespace {

constexpr char16_t firstControlPicture = u'␀';
constexpr char16_t deletePicture = u'␡';
constexpr char16_t lineBreakPicture = u'␤';
constexpr char16_t paragraphSign = u'¶';
constexpr char16_t boxSign = u'▯';

/// The sign that stands for a unit, or the unit itself.
char16_t visibleUnit(char16_t unit) {
    if (unit < u' ')
        return unit == u'\t' ? unit : static_cast<char16_t>(firstControlPicture + unit);
    if (unit < 0x7F)
        return unit;
    if (unit == 0x7F)
        return deletePicture;
    if (unit == 0x85 || unit == 0x2028)
        return lineBreakPicture;
    if (unit == 0x2029)
        return paragraphSign;
    // The other controls have no pictures. A byte-order mark is unseen, and an object replacement character would be
    // the place of an object that is not there.
    if (unit < 0xA0 || unit == 0xFEFF || unit == 0xFFFC)
        return boxSign;
    return unit;
}

} // namespace

DisplayText displayText(QString text) {
    DisplayText display;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const char16_t unit = text.at(index).unicode();
        const char16_t visible = visibleUnit(unit);
        if (visible == unit)
            continue;
        text[index] = QChar(visible);
        display.signs.push_back(index);
    }
    display.string = std::move(text);
    return display;
}

bool isPlainText(QStringView text) {
    return std::ranges::all_of(
        text, [](QChar unit) { return TextFont::isPrintableASCII(unit.unicode()) || unit == QChar(u'\t'); });
}

} // namespace quelm
