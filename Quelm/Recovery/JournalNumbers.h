#pragma once

#include <cstdint>

namespace quelm {

/// The next numbers that a journal gives; each is above all of its kind that its records name.
struct JournalNumbers {
    std::int64_t nextContent = 1;
    std::int64_t nextDetached = 1;

    friend bool operator==(const JournalNumbers&, const JournalNumbers&) = default;
};

} // namespace quelm
