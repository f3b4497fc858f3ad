#pragma once

#include <QString>

namespace quelm {

/// Why a file could not be read or written, in words for the user: one or more whole sentences.
struct FileError {
    QString message;

    friend bool operator==(const FileError&, const FileError&) = default;
};

} // namespace quelm
