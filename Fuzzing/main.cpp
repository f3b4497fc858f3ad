// What libFuzzer calls; QUELM_FUZZ_FUNCTION is the function that is fed.

#include "Fuzzing/JournalTarget.h"
#include "Fuzzing/OpeningTarget.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quelm::fuzzing::QUELM_FUZZ_FUNCTION(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
