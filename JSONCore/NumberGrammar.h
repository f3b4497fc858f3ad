#pragma once

namespace quelm {

/// The end of the number literal (RFC 8259, section 6) that starts at `place`, or null when what is there breaks the
/// grammar. `at` gives the byte at a place, anything but a digit or a sign where the text has ended; `skipDigits` gives
/// the first place from its argument on that holds no digit. The one definition of the grammar, for every way to scan.
template <class At, class SkipDigits>
[[gnu::always_inline]] inline const char* scanNumberLiteral(const char* place, const At& at,
                                                            const SkipDigits& skipDigits) {
    const auto isDigit = [](char c) { return static_cast<unsigned char>(c - '0') < 10; };
    if (at(place) == '-')
        ++place;
    if (at(place) == '0')
        ++place;
    else if (isDigit(at(place)))
        place = skipDigits(place + 1);
    else
        return nullptr;
    if (at(place) == '.') {
        ++place;
        if (!isDigit(at(place)))
            return nullptr;
        place = skipDigits(place + 1);
    }
    if (at(place) == 'e' || at(place) == 'E') {
        ++place;
        if (at(place) == '+' || at(place) == '-')
            ++place;
        if (!isDigit(at(place)))
            return nullptr;
        place = skipDigits(place + 1);
    }
    return place;
}

} // namespace quelm
