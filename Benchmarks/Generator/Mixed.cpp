#include "Benchmarks/Generator/Items.h"

#include <array>

namespace quelm::bench::items {

void mixedItem(JSONEmitter& out, std::uint64_t number, Random& random) {
    using Item = void (*)(JSONEmitter&, std::uint64_t, Random&);
    static constexpr std::array<Item, 8> choices{record,        record,         record,    longString,
                                                 escapedString, nonLatinRecord, numberRow, record};
    random.pick(choices)(out, number, random);
}

} // namespace quelm::bench::items
