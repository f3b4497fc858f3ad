#include "Quelm/TextEngine/FewMarks.h"

#include <utility>

namespace quelm {

namespace {

/// More than any writing has.
constexpr int mostMarks = 32;

constexpr char16_t joiner = u'\u200D';

} // namespace

QString withFewMarks(QString text) {
    int marks = 0;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar unit = std::as_const(text)[index];
        // Marks beyond the first plane are rare, and few.
        if (unit.unicode() < 0x0300 || !unit.isMark())
            marks = 0;
        else if (++marks > mostMarks)
            text[index] = QChar(joiner);
    }
    return text;
}

} // namespace quelm
