#include "Quelm/Documents/FileComparison.h"

#include "FileCore/FileLoading.h"

#include <QFile>

#include <cerrno>

namespace quelm {

namespace {

using Result = FileComparison::Result;

/// ENOTDIR: a folder of the path gave way to a file.
bool meansGone(SystemError error) {
    return error.code == ENOENT || error.code == ENOTDIR;
}

FileComparison withoutStamp(SystemError error) {
    return {meansGone(error) ? Result::gone : Result::unreadable, std::nullopt};
}

FileComparison withoutContent(const LoadFailure& failure, const FileStamp& stamp) {
    if (failure.reason == LoadFailure::Reason::cancelled)
        return {};
    if (failure.reason == LoadFailure::Reason::system && meansGone(failure.error))
        return {Result::gone, std::nullopt};
    return {Result::unreadable, stamp};
}

} // namespace

FileComparison compareFile(const QString& path, const FileState& known, const std::stop_token& stop,
                           SystemCalls& calls) {
    const std::string name = QFile::encodeName(path).toStdString();
    const std::expected<FileStamp, SystemError> before = FileStamp::of(name, calls);
    if (!before)
        return withoutStamp(before.error());
    if (*before == known.stamp && known.isCertain())
        return {Result::same, *before};
    if (before->size != known.checksum.size)
        return {Result::changed, *before};

    const std::expected<ContentChecksum, LoadFailure> checksum = checksumOfFile(name, stop, calls);
    if (!checksum)
        return withoutContent(checksum.error(), *before);
    const std::expected<FileStamp, SystemError> after = FileStamp::of(name, calls);
    if (!after)
        return withoutStamp(after.error());
    // What was written while it was read is not what was read.
    if (*checksum != known.checksum || *after != *before)
        return {Result::changed, *after};
    return {*after == known.stamp ? Result::same : Result::touched, *after};
}

FileComparison compareFile(const QString& path, const FileState& known, const std::optional<FileState>& different,
                           const std::stop_token& stop, SystemCalls& calls) {
    if (different && different->isCertain()) {
        const auto now = FileStamp::of(QFile::encodeName(path).toStdString(), calls);
        if (now == different->stamp)
            return {Result::changed, *now};
    }
    return compareFile(path, known, stop, calls);
}

} // namespace quelm
