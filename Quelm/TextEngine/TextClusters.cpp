#include "Quelm/TextEngine/TextClusters.h"

#include "TextCore/Check.h"

#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <array>
#include <memory>

namespace quelm::clusters {

namespace {

/// What is known of a character.
struct Traits {
    enum class Joins : quint8 {
        /// Never another of this kind, on either side.
        nothing,
        /// What is before it.
        backwards,
        /// As the rules of clusters say.
        byRules
    } joins = Joins::nothing;
    bool standsAlone = false;
};

Traits::Joins joinsOf(char32_t scalar) {
    switch (u_getIntPropertyValue(static_cast<UChar32>(scalar), UCHAR_GRAPHEME_CLUSTER_BREAK)) {
    case U_GCB_OTHER:
    case U_GCB_LV:
    case U_GCB_LVT:
        return Traits::Joins::nothing;
    case U_GCB_EXTEND:
    case U_GCB_SPACING_MARK:
        return Traits::Joins::backwards;
    default:
        return Traits::Joins::byRules;
    }
}

bool hasSimpleScript(char32_t scalar) {
    UErrorCode error = U_ZERO_ERROR;
    switch (uscript_getScript(static_cast<UChar32>(scalar), &error)) {
    case USCRIPT_COMMON:
    case USCRIPT_INHERITED:
    case USCRIPT_UNKNOWN:
    case USCRIPT_LATIN:
    case USCRIPT_GREEK:
    case USCRIPT_CYRILLIC:
    case USCRIPT_ARMENIAN:
    case USCRIPT_GEORGIAN:
    case USCRIPT_ETHIOPIC:
    case USCRIPT_CHEROKEE:
    case USCRIPT_CANADIAN_ABORIGINAL:
    case USCRIPT_BRAILLE:
    case USCRIPT_BOPOMOFO:
    case USCRIPT_HAN:
    case USCRIPT_HANGUL:
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_YI:
        return true;
    default:
        return false;
    }
}

bool hasSimpleDirection(char32_t scalar) {
    switch (u_charDirection(static_cast<UChar32>(scalar))) {
    case U_RIGHT_TO_LEFT:
    case U_RIGHT_TO_LEFT_ARABIC:
    case U_ARABIC_NUMBER:
    case U_LEFT_TO_RIGHT_EMBEDDING:
    case U_LEFT_TO_RIGHT_OVERRIDE:
    case U_RIGHT_TO_LEFT_EMBEDDING:
    case U_RIGHT_TO_LEFT_OVERRIDE:
    case U_POP_DIRECTIONAL_FORMAT:
    case U_FIRST_STRONG_ISOLATE:
    case U_LEFT_TO_RIGHT_ISOLATE:
    case U_RIGHT_TO_LEFT_ISOLATE:
    case U_POP_DIRECTIONAL_ISOLATE:
        return false;
    default:
        return true;
    }
}

/// The traits of all characters, in pages that are filled when they are first asked about: a look costs a fraction of
/// asking for properties.
class TraitsTable {
public:
    Traits of(char32_t scalar) {
        std::unique_ptr<Page>& page = pages_[scalar / pageSize];
        if (!page)
            page = madePage(scalar / pageSize * pageSize);
        return (*page)[scalar % pageSize];
    }

private:
    static constexpr char32_t pageSize = 256;
    using Page = std::array<Traits, pageSize>;

    static std::unique_ptr<Page> madePage(char32_t first) {
        auto page = std::make_unique<Page>();
        for (char32_t index = 0; index < pageSize; ++index) {
            const char32_t scalar = first + index;
            (*page)[index] = {joinsOf(scalar), hasSimpleScript(scalar) && hasSimpleDirection(scalar)};
        }
        return page;
    }

    std::array<std::unique_ptr<Page>, 0x110000 / pageSize> pages_;
};

Traits traitsOf(char32_t scalar) {
    static TraitsTable table;
    return table.of(scalar);
}

struct Character {
    char32_t scalar;
    qsizetype end;
};

/// A lone surrogate is a character by itself.
Character characterAt(QStringView text, qsizetype index) {
    const QChar unit = text.at(index);
    if (unit.isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate())
        return {QChar::surrogateToUcs4(unit, text.at(index + 1)), index + 2};
    return {unit.unicode(), index + 1};
}

/// ICU's rules, one of each because making them costs more than using them.
class ClusterRules {
public:
    ClusterRules() {
        UErrorCode error = U_ZERO_ERROR;
        rules_.reset(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &error));
        require(U_SUCCESS(error), "ICU has its data of grapheme clusters");
    }

    template <class Visit>
    void forEach(QStringView text, Visit&& visit) {
        UErrorCode error = U_ZERO_ERROR;
        ubrk_setText(rules_.get(), reinterpret_cast<const UChar*>(text.utf16()), static_cast<int32_t>(text.size()),
                     &error);
        require(U_SUCCESS(error), "ICU takes a piece of text");
        int32_t start = 0;
        for (int32_t end = ubrk_next(rules_.get()); end != UBRK_DONE; end = ubrk_next(rules_.get())) {
            visit(start, end);
            start = end;
        }
    }

private:
    struct Close {
        void operator()(UBreakIterator* rules) const { ubrk_close(rules); }
    };
    std::unique_ptr<UBreakIterator, Close> rules_;
};

} // namespace

bool standAlone(QStringView text) {
    for (qsizetype index = 0; index < text.size();) {
        const Character character = characterAt(text, index);
        if (!traitsOf(character.scalar).standsAlone)
            return false;
        index = character.end;
    }
    return true;
}

void forEach(QStringView text, const std::function<void(qsizetype start, qsizetype end)>& visit) {
    static ClusterRules rules;
    using Joins = Traits::Joins;
    for (qsizetype start = 0; start < text.size();) {
        // Up to where a character that joins nothing follows another, or its marks, there may be rules to ask.
        bool needsRules = false;
        qsizetype end = start;
        Joins last = Joins::nothing;
        while (end < text.size()) {
            const Character character = characterAt(text, end);
            const Joins joins = traitsOf(character.scalar).joins;
            if (joins == Joins::nothing && end > start && last != Joins::byRules)
                break;
            needsRules = needsRules || joins == Joins::byRules || (joins == Joins::backwards && end == start);
            last = joins;
            end = character.end;
        }
        if (needsRules)
            rules.forEach(text.sliced(start, end - start),
                          [&](qsizetype from, qsizetype to) { visit(start + from, start + to); });
        else
            visit(start, end);
        start = end;
    }
}

} // namespace quelm::clusters
