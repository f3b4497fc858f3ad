#include "FileCore/JournalFormat.h"

#include "FileCore/LittleEndian.h"
#include "TextCore/Check.h"

#include <xxhash.h>

namespace quelm::journalformat {

namespace {

// The last character is the version.
constexpr std::string_view magicBytes = "QUELMJN1";

std::uint64_t frameSum(std::uint64_t identity, std::uint64_t number, std::uint32_t length) {
    std::string frame;
    littleEndian::put(frame, identity);
    littleEndian::put(frame, number);
    littleEndian::put(frame, length);
    return XXH3_64bits(frame.data(), frame.size());
}

std::uint64_t payloadSum(std::string_view payload, std::uint64_t frame) {
    return XXH3_64bits_withSeed(payload.data(), payload.size(), frame);
}

} // namespace

std::string_view magic() {
    return magicBytes;
}

std::string head(std::uint64_t identity) {
    std::string bytes(magicBytes);
    littleEndian::put(bytes, identity);
    return bytes;
}

std::optional<std::uint64_t> identityOf(std::string_view bytes) {
    if (bytes.substr(0, magicBytes.size()) != magicBytes)
        return std::nullopt;
    return littleEndian::at<std::uint64_t>(bytes, magicBytes.size());
}

std::string recordHead(std::uint64_t identity, std::uint64_t number, std::string_view payload) {
    require(payload.size() <= longestPayload, "a record of a journal is not too long");
    const auto length = static_cast<std::uint32_t>(payload.size());
    const std::uint64_t frame = frameSum(identity, number, length);
    std::string bytes;
    littleEndian::put(bytes, length);
    littleEndian::put(bytes, static_cast<std::uint32_t>(frame));
    littleEndian::put(bytes, payloadSum(payload, frame));
    return bytes;
}

bool RecordHead::fits(std::string_view payload) const {
    return payload.size() == length && journalformat::payloadSum(payload, frameSum) == payloadSum;
}

std::optional<RecordHead> readRecordHead(std::string_view bytes, std::uint64_t identity, std::uint64_t number) {
    const auto length = littleEndian::at<std::uint32_t>(bytes, 0);
    const std::uint64_t frame = frameSum(identity, number, length);
    if (length > longestPayload || littleEndian::at<std::uint32_t>(bytes, 4) != static_cast<std::uint32_t>(frame))
        return std::nullopt;
    return RecordHead{length, frame, littleEndian::at<std::uint64_t>(bytes, 8)};
}

} // namespace quelm::journalformat
