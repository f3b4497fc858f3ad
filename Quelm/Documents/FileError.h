#pragma once

#include "FileCore/FileStamp.h"

#include <QString>

#include <optional>

namespace quelm {

/// Why a file could not be read or written, in words for the user: one or more whole sentences.
struct FileError {
    QString message;
    /// It was called off: nobody needs to be told.
    bool isCancellation = false;
    /// The file was not written because somebody else had done so meanwhile: its state then.
    std::optional<FileStamp> change = std::nullopt;
    /// There was no file to read.
    bool isAbsence = false;

    friend bool operator==(const FileError&, const FileError&) = default;
};

} // namespace quelm
