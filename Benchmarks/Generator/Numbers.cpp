#include "Benchmarks/Generator/Digits.h"
#include "Benchmarks/Generator/Items.h"

#include <string>

namespace quelm::bench::items {

namespace {

enum class Sort : unsigned char { small, large, decimal, exponent };

void appendNumber(std::string& text, Sort sort, Random& random) {
    if (random.chance(25))
        text += '-';
    switch (sort) {
    case Sort::small:
        return appendDecimal(text, random.below(1000));
    case Sort::large:
        return appendDecimal(text, random.next() >> random.between(1, 40));
    case Sort::decimal:
        appendDecimal(text, random.below(200));
        text += '.';
        return appendPadded(text, random.next() % 1'000'000'000'000, 12);
    case Sort::exponent:
        appendDecimal(text, random.between(1, 9));
        text += '.';
        appendDecimal(text, random.below(100'000));
        text += random.chance(50) ? "e-" : "E+";
        return appendDecimal(text, random.below(290));
    }
}

} // namespace

void numberRow(JSONEmitter& out, std::uint64_t, Random& random) {
    const auto sort = static_cast<Sort>(random.below(4));
    std::string text;
    out.beginArray();
    for (std::uint32_t left = random.between(4, 60); left > 0; --left) {
        text.clear();
        appendNumber(text, sort, random);
        out.literal(text);
    }
    out.end();
}

} // namespace quelm::bench::items
