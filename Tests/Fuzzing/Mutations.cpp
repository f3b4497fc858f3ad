#include "Tests/Fuzzing/Mutations.h"

#include <algorithm>
#include <cstddef>

namespace quelm::test {

namespace {

std::size_t anyBelow(std::size_t count, std::mt19937& random) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

// A short piece anywhere.
std::string piece(const std::string& whole, std::mt19937& random) {
    if (whole.empty())
        return {};
    return whole.substr(anyBelow(whole.size(), random), anyBelow(40, random));
}

void change(std::string& input, const std::vector<std::string>& seeds, std::mt19937& random) {
    const std::size_t position = anyBelow(input.size(), random);
    const std::size_t length = std::min(anyBelow(16, random), input.size() - position);
    switch (anyBelow(6, random)) {
    case 0:
        input[position] = static_cast<char>(anyBelow(256, random));
        break;
    case 1:
        input[position] = static_cast<char>(input[position] ^ (1 << anyBelow(8, random)));
        break;
    case 2:
        input.erase(position, length);
        break;
    case 3:
        input.insert(position, piece(input, random));
        break;
    case 4:
        input.replace(position, length, piece(seeds[anyBelow(seeds.size(), random)], random));
        break;
    default:
        input.resize(position);
        break;
    }
}

} // namespace

std::string mutation(const std::vector<std::string>& seeds, std::mt19937& random) {
    std::string input = seeds[anyBelow(seeds.size(), random)];
    for (std::size_t changes = 1 + anyBelow(5, random); changes > 0 && !input.empty(); --changes)
        change(input, seeds, random);
    return input;
}

} // namespace quelm::test
