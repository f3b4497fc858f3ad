#pragma once

#include "FileCore/SystemCalls.h"
#include "Quelm/Documents/FileState.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <stop_token>

namespace quelm {

/// What has become of a file since a state of it was known.
struct FileComparison {
    enum class Result : std::uint8_t {
        same,
        /// The same bytes under another stamp: somebody wrote them again, or set the times.
        touched,
        changed,
        /// There is nothing at the path, or where its links lead.
        gone,
        /// There is something, which cannot be looked into.
        unreadable,
        cancelled,
    };
    Result result = Result::cancelled;
    /// Of what is there, when it was found out: absent when it is gone or cannot be asked for.
    std::optional<FileStamp> stamp;

    friend bool operator==(const FileComparison&, const FileComparison&) = default;
};

/// Compares what the path leads to with what was known of it. Its bytes are read only where the stamps leave a doubt:
/// the same size and other times, or the same times and a state that is not certain. For another thread than the main
/// one.
FileComparison compareFile(const QString& path, const FileState& known, const std::stop_token& stop = {},
                           SystemCalls& calls = SystemCalls::real());

/// The same when a state of the file may be known that differs from that: it is not read again to find it out, as long
/// as the state is certain.
FileComparison compareFile(const QString& path, const FileState& known, const std::optional<FileState>& different,
                           const std::stop_token& stop = {}, SystemCalls& calls = SystemCalls::real());

} // namespace quelm
