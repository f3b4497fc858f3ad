#pragma once

#include <random>
#include <string>
#include <vector>

namespace quelm::test {

/// An input made of one of the seeds by a few random changes: of bytes, by cutting, by inserting pieces of itself and
/// of other seeds.
std::string mutation(const std::vector<std::string>& seeds, std::mt19937& random);

} // namespace quelm::test
