#include "TextCore/TextRope.h"

#include "TextCore/UTF8.h"

namespace quelm {

TextRope TextRope::repairing(std::string_view bytes) {
    if (const auto repaired = utf8::repaired(bytes))
        return TextRope(SharedText(*repaired));
    return TextRope(SharedText(bytes));
}

} // namespace quelm
