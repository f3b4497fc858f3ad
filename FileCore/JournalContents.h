#pragma once

#include "TextCore/SharedText.h"

#include <cstdint>
#include <vector>

namespace quelm {

/// What a journal's bytes hold.
struct JournalContents {
    /// How they end.
    enum class End : std::uint8_t {
        whole,
        /// In the middle of a record, or of the head of the file: the process or the machine ended while it was
        /// written. A loss of power may leave zeros for what was cut off.
        torn,
        /// With bytes that no writing leaves: what comes after the last record is unknown.
        damaged,
        /// It is no journal, or one of another version.
        unknown,
    };
    /// The payloads of the records before that, in order; slices of the bytes.
    std::vector<SharedText> records;
    End end = End::unknown;
    /// The bytes that those records and the head of the file take; 0 when the head is not whole.
    std::int64_t validSize = 0;
    /// See `journalformat`; meaningless when the head is not whole.
    std::uint64_t identity = 0;

    /// Of any bytes whatever. O(n), and no more memory than some times that. A record is there only if it was appended,
    /// as the one of its number, to this very journal; as far as checksums tell.
    static JournalContents read(const SharedText& bytes);
};

} // namespace quelm
