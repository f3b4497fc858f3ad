#pragma once

#include <QString>

namespace quelm {

/// Why a file could not be read or written, in words for the user: one or more whole sentences.
struct FileError {
    QString message;
    /// It was called off: nobody needs to be told.
    bool isCancellation = false;

    friend bool operator==(const FileError&, const FileError&) = default;
};

} // namespace quelm
