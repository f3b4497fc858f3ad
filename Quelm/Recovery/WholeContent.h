#pragma once

#include "JSONCore/JSONContent.h"
#include "Quelm/Recovery/JournalRecord.h"
#include "Quelm/Recovery/TextSources.h"

#include <cstdint>

namespace quelm {

/// The record that puts a content in the place of another. O(n), for another thread than the main one. Throws
/// std::bad_alloc.
journal::Replace wholeContent(const JSONContent& content, std::int64_t numberBefore, std::int64_t number,
                              TextSources& sources);

} // namespace quelm
