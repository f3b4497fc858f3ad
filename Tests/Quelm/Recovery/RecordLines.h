#pragma once

#include "Quelm/Recovery/JournalRecord.h"

#include <string>

namespace quelm {

/// A record as a line: "text 3-0 'abc'", "tree set 0.1 = '5'; remove 0.2 as 1".
std::string lineOf(const journal::Record& record);

} // namespace quelm
