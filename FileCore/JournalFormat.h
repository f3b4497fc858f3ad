#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// How a journal lies in its file. All numbers are little-endian.
///
/// 1. The file begins with a head: 8 bytes of magic with the version of the format, and 8 bytes of identity, which
///    hardly any other journal has.
/// 2. Records follow without gaps, numbered from 0. A record is its head and its payload.
/// 3. A record's head is the length of the payload (4 bytes), the frame sum (4) and the payload sum (8).
/// 4. The frame sum is the low half of XXH3-64 over identity, number and length: a head that has it was written there,
///    and its length can be trusted. What another journal left on the device does not have it.
/// 5. The payload sum is XXH3-64 over the payload, seeded with the whole frame sum.
namespace quelm::journalformat {

inline constexpr std::size_t headSize = 16;
inline constexpr std::size_t recordHeadSize = 16;
inline constexpr std::size_t longestPayload = std::size_t{1} << 30;

/// What the head begins with.
std::string_view magic();

std::string head(std::uint64_t identity);
/// Of at least `headSize` bytes; absent when they are no head.
std::optional<std::uint64_t> identityOf(std::string_view bytes);

/// `payload` must not be longer than `longestPayload`.
std::string recordHead(std::uint64_t identity, std::uint64_t number, std::string_view payload);

struct RecordHead {
    std::size_t length = 0;
    std::uint64_t frameSum = 0;
    std::uint64_t payloadSum = 0;

    bool fits(std::string_view payload) const;
};
/// Of at least `recordHeadSize` bytes; absent when they are not the head of the record of that number.
std::optional<RecordHead> readRecordHead(std::string_view bytes, std::uint64_t identity, std::uint64_t number);

} // namespace quelm::journalformat
