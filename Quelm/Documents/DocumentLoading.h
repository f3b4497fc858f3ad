#pragma once

#include "FileCore/WorkProgress.h"
#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/FileError.h"
#include "Quelm/Documents/FileState.h"

#include <QString>

#include <expected>
#include <stop_token>

namespace quelm {

/// A file's content, with the state of the file that it is of.
struct LoadedDocument {
    JSONContent content;
    FileState state;
};

/// A file's content, read and parsed, or why it cannot be opened. Invalid JSON can. Blocks; for any thread. When `stop`
/// is requested it ends soon, with a cancellation. The first half of `progress` is for reading.
std::expected<LoadedDocument, FileError> loadDocument(const QString& path, std::stop_token stop = {},
                                                      WorkProgress* progress = nullptr);

/// What `JSONDocument::read` made of a file, if it can be opened: with an error of its JSON it can, unless that is that
/// the text or its tree is too large.
std::expected<JSONContent, FileError> openableContent(std::expected<JSONContent, JSONParseError> read);

} // namespace quelm
