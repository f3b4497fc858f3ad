#include "Quelm/TextEngine/LineBreaks.h"

#include "TextCore/Check.h"

#include <unicode/ubrk.h>

#include <memory>
#include <utility>

namespace quelm {

namespace {

struct Close {
    void operator()(UBreakIterator* rules) const { ubrk_close(rules); }
};

/// ICU's rules and dictionaries, which cost far more to open than to use.
struct SharedRules {
    SharedRules() {
        UErrorCode error = U_ZERO_ERROR;
        rules.reset(ubrk_open(UBRK_LINE, "", nullptr, 0, &error));
        require(U_SUCCESS(error), "ICU has its data of line breaks");
    }

    std::unique_ptr<UBreakIterator, Close> rules;
    bool isInUse = false;
};

SharedRules& sharedRules() {
    static SharedRules shared;
    return shared;
}

} // namespace

LineBreaks::LineBreaks(QStringView text) : length_(text.size()) {
    SharedRules& shared = sharedRules();
    require(!std::exchange(shared.isInUse, true), "the line breaks of one text are asked about at a time");
    UErrorCode error = U_ZERO_ERROR;
    ubrk_setText(shared.rules.get(), reinterpret_cast<const UChar*>(text.utf16()), static_cast<int32_t>(text.size()),
                 &error);
    require(U_SUCCESS(error), "ICU takes a piece of text");
}

LineBreaks::~LineBreaks() {
    sharedRules().isInUse = false;
}

qsizetype LineBreaks::lastUpTo(qsizetype index) const {
    if (index >= length_)
        return length_;
    return ubrk_preceding(sharedRules().rules.get(), static_cast<int32_t>(index) + 1);
}

} // namespace quelm
