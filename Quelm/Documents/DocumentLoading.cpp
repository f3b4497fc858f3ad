#include "Quelm/Documents/DocumentLoading.h"

#include "FileCore/FileLoading.h"
#include "JSONCore/JSONParser.h"
#include "Quelm/Documents/ContentConversion.h"
#include "Quelm/Documents/FileFailureText.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Documents/ParseErrorText.h"

#include <QFile>

#include <cerrno>
#include <new>

namespace quelm {

static_assert(longestText == JSONParser::maximumTextSize, "what is loaded can be parsed");

namespace {

FileError fileError(const LoadFailure& failure) {
    const bool isAbsence = failure.reason == LoadFailure::Reason::system &&
                           (failure.error.code == ENOENT || failure.error.code == ENOTDIR);
    return {.message = loadFailureText(failure),
            .isCancellation = failure.reason == LoadFailure::Reason::cancelled,
            .isAbsence = isAbsence};
}

FileError fileError(LoadFailure::Reason reason) {
    return fileError(LoadFailure{reason, {}});
}

FileError fileError(const JSONParseError& error) {
    if (error == JSONParseError::cancelled())
        return fileError(LoadFailure::Reason::cancelled);
    if (error == JSONParseError::tooLarge())
        return fileError(LoadFailure::Reason::tooLarge);
    return {parseErrorText(error)};
}

/// Reading is half of the work, parsing the other.
void setTotal(WorkProgress* progress, const std::string& path) {
    if (!progress)
        return;
    if (const auto stamp = FileStamp::of(path))
        progress->setTotal(2 * stamp->size);
}

} // namespace

std::expected<JSONContent, FileError> openableContent(std::expected<JSONContent, JSONParseError> read) {
    if (!read)
        return std::unexpected(fileError(read.error()));
    const auto& error = read->parseError;
    if (error && (*error == JSONParseError::cancelled() || *error == JSONParseError::tooLarge()))
        return std::unexpected(fileError(*error));
    return *std::move(read);
}

std::expected<LoadedDocument, FileError> loadDocument(const QString& path, std::stop_token stop,
                                                      WorkProgress* progress) {
    const std::string name = QFile::encodeName(path).toStdString();
    setTotal(progress, name);
    std::expected<LoadedFile, LoadFailure> file = loadFile(name, stop, progress);
    if (!file)
        return std::unexpected(fileError(file.error()));
    // As of now: parsing takes its time.
    const FileState state{file->stamp, file->checksum};
    try {
        auto content = openableContent(JSONDocument::read(std::move(file->bytes), std::move(stop)));
        if (!content)
            return std::unexpected(std::move(content.error()));
        if (content->tree)
            ContentConversion::prepareForDisplay(*content->tree);
        if (progress)
            progress->add(state.checksum.size);
        return LoadedDocument{*std::move(content), state};
    } catch (const std::bad_alloc&) {
        return std::unexpected(fileError(LoadFailure::Reason::noMemory));
    }
}

} // namespace quelm
