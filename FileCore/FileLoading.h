#pragma once

#include "FileCore/ContentChecksum.h"
#include "FileCore/FileStamp.h"
#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"
#include "FileCore/WorkProgress.h"
#include "TextCore/SharedText.h"

#include <cstdint>
#include <expected>
#include <stop_token>
#include <string>

namespace quelm {

/// Why a file could not be loaded.
struct LoadFailure {
    enum class Reason : std::uint8_t {
        system, ///< `error` says why
        folder,
        /// A device, a pipe, a socket: nothing that has an end, or a size.
        notAFile,
        /// Longer than what this machine's memory, or a document, can hold.
        tooLarge,
        noMemory,
        cancelled,
    };
    Reason reason = Reason::system;
    SystemError error;

    friend bool operator==(const LoadFailure&, const LoadFailure&) = default;
};

/// The bytes of a regular file as they were at one moment, in padded memory of their own.
struct LoadedFile {
    SharedText bytes;
    /// Of the file as it was when the last byte had been read.
    FileStamp stamp;
    ContentChecksum checksum;
};

/// The longest text, in bytes, that a document's tree can address.
inline constexpr std::int64_t longestText = 0xFFFF'FFFF - 64;

/// The longest file, in bytes, that becomes a document with so much memory: besides its text there must be room for the
/// tree, which takes up to twice as much.
std::int64_t largestLoadableSize(std::int64_t memory);

/// The same with the memory that this machine has left at the moment.
std::int64_t largestLoadableSize();

/// Reads a whole file. Never waits for a device or for the other end of a pipe. A file that changes while it is read is
/// read anew, a few times at most; then its stamp is that of an earlier state, so that it is found to have changed.
/// `progress` is told of the bytes that are read; whoever knows how many there will be sets the total. For any thread.
std::expected<LoadedFile, LoadFailure> loadFile(const std::string& path, std::stop_token stop = {},
                                                WorkProgress* progress = nullptr,
                                                SystemCalls& calls = SystemCalls::real());

/// The checksum of what the file holds now, however long, without keeping it. For any thread.
std::expected<ContentChecksum, LoadFailure> checksumOfFile(const std::string& path, std::stop_token stop = {},
                                                           SystemCalls& calls = SystemCalls::real());

} // namespace quelm
