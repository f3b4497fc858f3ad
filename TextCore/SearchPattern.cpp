#include "TextCore/SearchPattern.h"

#include "TextCore/Check.h"
#include "TextCore/UTF8.h"
#include "TextCore/UTF8Scan.h"

#include <unicode/uchar.h>
#include <unicode/uset.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <utility>

namespace quelm {

namespace {

UChar32 folded(UChar32 character) {
    return u_foldCase(character, U_FOLD_CASE_DEFAULT);
}

/// The characters with the same simple folding, itself among them.
std::vector<UChar32> caseForms(UChar32 character) {
    const std::unique_ptr<USet, decltype(&uset_close)> set(uset_openEmpty(), uset_close);
    uset_add(set.get(), character);
    uset_closeOver(set.get(), USET_CASE_INSENSITIVE);
    std::vector<UChar32> result;
    for (std::int32_t item = 0; item < uset_getItemCount(set.get()); ++item) {
        UChar32 first = 0;
        UChar32 last = 0;
        UErrorCode status = U_ZERO_ERROR;
        // Items of two and more characters, which only full foldings have, come back with their length.
        if (uset_getItem(set.get(), item, &first, &last, nullptr, 0, &status) != 0)
            continue;
        for (UChar32 form = first; form <= last; ++form)
            if (folded(form) == folded(character))
                result.push_back(form);
    }
    return result;
}

/// How common bytes are in the texts that are searched, roughly; the most common ones first.
constexpr std::string_view commonBytes =
    " \"eaosrnitdlc,:0u1m2p35498b67gvhyf{}[]_-./\nqjzxkwASECTRMPDLINOBFGHUVJYKQXZW";

constexpr std::array<int, 256> commonnessOfBytes() {
    std::array<int, 256> result{};
    // Not in the list: controls, rare punctuation, and parts of longer characters, which come in crowds of equal leads.
    for (std::size_t byte = 0; byte < result.size(); ++byte)
        result[byte] = byte < 0x80 ? 1 : byte < 0xC0 ? 24 : 48;
    for (std::size_t index = 0; index < commonBytes.size(); ++index)
        result[static_cast<std::uint8_t>(commonBytes[index])] = static_cast<int>(2 * (commonBytes.size() - index));
    return result;
}

constexpr std::array<int, 256> commonness = commonnessOfBytes();

MatchAnchor anchorOf(std::size_t offset, std::string_view values) {
    MatchAnchor anchor{.offset = offset};
    for (std::size_t index = 0; index < std::size(anchor.values); ++index)
        anchor.values[index] = static_cast<std::uint8_t>(values[std::min(index, values.size() - 1)]);
    return anchor;
}

} // namespace

SearchPattern::SearchPattern(std::string_view needle, CaseSensitivity sensitivity)
    : needle_(needle), sensitivity_(sensitivity), minimumLength_(needle.size()), maximumLength_(needle.size()) {
    require(!needle.empty(), "something is searched for");
    require(utf8::isValid(needle), "what is searched for is well-formed");
    if (sensitivity == CaseSensitivity::insensitive) {
        addForms();
        measureForms();
    }
    chooseAnchors();
}

void SearchPattern::addForms() {
    bool anyHasSeveral = false;
    for (std::string_view rest = needle_; !rest.empty();) {
        const auto [scalar, size] = utf8::leadingScalar(rest);
        rest.remove_prefix(size);
        const std::vector<UChar32> forms = caseForms(static_cast<UChar32>(scalar));
        anyHasSeveral = anyHasSeveral || forms.size() > 1;
        for (const UChar32 form : forms) {
            Form added{};
            const char* end = utf8::encode(static_cast<char32_t>(form), added.bytes);
            added.length = static_cast<std::uint8_t>(end - added.bytes);
            forms_.push_back(added);
        }
        forms_.back().isLast = true;
    }
    if (!anyHasSeveral)
        forms_.clear();
}

void SearchPattern::measureForms() {
    if (forms_.empty())
        return;
    minimumLength_ = maximumLength_ = 0;
    std::uint8_t shortest = std::numeric_limits<std::uint8_t>::max();
    std::uint8_t longest = 0;
    for (const Form& form : forms_) {
        shortest = std::min(shortest, form.length);
        longest = std::max(longest, form.length);
        if (form.isLast) {
            minimumLength_ += std::exchange(shortest, std::numeric_limits<std::uint8_t>::max());
            maximumLength_ += std::exchange(longest, std::uint8_t{0});
        }
    }
}

std::vector<std::string> SearchPattern::valuesByOffset() const {
    std::vector<std::string> values;
    if (forms_.empty()) {
        for (const char byte : std::string_view(needle_).substr(0, anchoredLength))
            values.emplace_back(1, byte);
        return values;
    }
    for (std::size_t first = 0; first < forms_.size() && values.size() + utf8::longestForm <= anchoredLength;) {
        std::size_t end = first;
        while (!forms_[end].isLast)
            ++end;
        ++end;
        const auto [shortest, longest] =
            std::minmax_element(&forms_[first], &forms_[first] + (end - first),
                                [](const Form& left, const Form& right) { return left.length < right.length; });
        for (std::size_t index = 0; index < shortest->length; ++index) {
            std::string& here = values.emplace_back();
            for (std::size_t form = first; form < end; ++form)
                if (here.find(forms_[form].bytes[index]) == std::string::npos)
                    here += forms_[form].bytes[index];
        }
        // What follows a character of several lengths is at no fixed distance.
        if (shortest->length != longest->length)
            break;
        first = end;
    }
    return values;
}

void SearchPattern::chooseAnchors() {
    struct Choice {
        int commonness;
        std::size_t offset;
    };
    const std::vector<std::string> values = valuesByOffset();
    std::vector<Choice> choices;
    for (std::size_t offset = 0; offset < values.size(); ++offset) {
        if (values[offset].size() > std::size(firstAnchor_.values))
            continue;
        int sum = 0;
        for (const char value : values[offset])
            sum += commonness[static_cast<std::uint8_t>(value)];
        choices.push_back({sum, offset});
    }
    require(!choices.empty(), "the case forms of a character begin with four different bytes at most");
    std::ranges::stable_sort(choices, {}, &Choice::commonness);
    const Choice& second = choices[choices.size() > 1 ? 1 : 0];
    firstAnchor_ = anchorOf(choices[0].offset, values[choices[0].offset]);
    secondAnchor_ = anchorOf(second.offset, values[second.offset]);
}

std::size_t SearchPattern::lengthOfForms(std::string_view text) const {
    std::size_t position = 0;
    bool isFound = false;
    for (const Form& form : forms_) {
        if (!isFound && text.substr(position).starts_with(std::string_view(form.bytes, form.length))) {
            position += form.length;
            isFound = true;
        }
        if (!form.isLast)
            continue;
        if (!isFound)
            return 0;
        isFound = false;
    }
    return position;
}

} // namespace quelm
