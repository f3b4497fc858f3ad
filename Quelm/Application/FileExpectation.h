#pragma once

#include "Quelm/Documents/FileState.h"

#include <QString>

#include <optional>
#include <stop_token>

namespace quelm {

/// What a document's file should still hold when the document is saved over it: what was last read or written here, or
/// what the user has agreed to lose. For one thread at a time.
class FileExpectation {
public:
    FileExpectation(QString path, const FileState& known, const std::optional<FileStamp>& accepted)
        : path_(std::move(path)), known_(known), accepted_(accepted) {}

    /// Whether somebody else has changed the file. One that is gone, or cannot be looked into, is not: saving tells.
    /// May read the file.
    bool isChanged(const std::stop_token& stop = {});

    /// Saving has found the file in another state than before.
    void noteChange(const FileStamp& found) { change_ = found; }

    /// The state in which the file was found to be changed; absent when it was not.
    const std::optional<FileStamp>& change() const { return change_; }

private:
    QString path_;
    FileState known_;
    std::optional<FileStamp> accepted_;
    std::optional<FileStamp> change_;
};

} // namespace quelm
