#include "FileCore/SaveTarget.h"

#include "FileCore/FileStamp.h"
#include "FileCore/Uninterrupted.h"

#include <array>
#include <climits>
#include <string_view>
#include <unistd.h>

namespace quelm {

namespace {

using Status = struct stat;
using Reason = SaveFailure::Reason;

std::unexpected<SaveFailure> refusal(Reason reason, SystemError error) {
    return std::unexpected(SaveFailure{SaveFailure::Step::find, reason, error, {}});
}

/// A path that does not lead to a file because it does not lead to a folder either.
std::unexpected<SaveFailure> refusal(SystemError error) {
    return refusal(error.code == ENOENT || error.code == ENOTDIR ? Reason::noFolder : Reason::system, error);
}

/// Of the file that a path leads to; absent when there is none.
std::expected<std::optional<Status>, SystemError> statusOf(const std::string& path, SystemCalls& calls) {
    Status status{};
    if (uninterrupted([&] { return calls.status(path.c_str(), status); }) == 0)
        return status;
    if (errno == ENOENT)
        return std::nullopt;
    return std::unexpected(SystemError::last());
}

/// The path behind all symbolic links in the last place of `path`, whether a file is there yet or not.
std::expected<std::string, SystemError> linkTarget(std::string path, SystemCalls& calls) {
    constexpr int mostLinks = 40;
    for (int link = 0; link < mostLinks; ++link) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = uninterrupted([&] { return calls.readLink(path.c_str(), target); });
        if (length < 0 && (errno == EINVAL || errno == ENOENT))
            return path; // no link: a file, or nothing yet
        if (length < 0)
            return std::unexpected(SystemError::last());
        const std::string_view next(target.data(), static_cast<std::size_t>(length));
        path = next.starts_with('/') ? std::string(next) : folderOf(path) + '/' + std::string(next);
    }
    return std::unexpected(SystemError{ELOOP});
}

bool isSameFile(const Status& left, const Status& right) {
    return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

std::expected<void, SaveFailure> checkOld(const SaveTarget& target, SystemCalls& calls) {
    const auto named = statusOf(target.path, calls);
    if (!named)
        return refusal(named.error());
    if (!*named || !isSameFile(**named, *target.old))
        return refusal(Reason::notAFile, {ENOENT});
    if (uninterrupted([&] { return calls.access(target.path.c_str(), W_OK); }) == 0)
        return {};
    const SystemError error = SystemError::last();
    const bool isReadOnly = error.code == EACCES || error.code == EPERM || error.code == EROFS;
    return refusal(isReadOnly ? Reason::readOnlyFile : Reason::system, error);
}

std::expected<void, SaveFailure> checkFolder(const SaveTarget& target, SystemCalls& calls) {
    const auto folder = statusOf(target.folder(), calls);
    if (!folder)
        return refusal(folder.error());
    if (!*folder)
        return refusal(Reason::noFolder, {ENOENT});
    if (!S_ISDIR((*folder)->st_mode))
        return refusal(Reason::noFolder, {ENOTDIR});
    return {};
}

} // namespace

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return path.substr(0, slash == 0 ? 1 : slash);
}

std::string SaveTarget::folder() const {
    return folderOf(path);
}

std::expected<void, SaveFailure> SaveTarget::checkUnchanged(SaveFailure::Step step, SystemCalls& calls) const {
    Status now{};
    // Not behind a link: there was none in the last place of the path.
    if (uninterrupted([&] { return calls.linkStatus(path.c_str(), now); }) != 0) {
        if (errno == ENOENT)
            return {};
        return std::unexpected(SaveFailure::at(step, SystemError::last()));
    }
    const FileStamp found = FileStamp::from(now);
    if (old && found == FileStamp::from(*old))
        return {};
    return std::unexpected(SaveFailure{step, Reason::changedMeanwhile, {}, {}, found});
}

std::expected<SaveTarget, SaveFailure> findSaveTarget(const std::string& path, SystemCalls& calls) {
    if (path.empty())
        return refusal(Reason::system, {ENOENT}); // it would lead to the working folder
    const auto old = statusOf(path, calls);
    if (!old)
        return refusal(old.error());
    if (*old && S_ISDIR((*old)->st_mode))
        return refusal(Reason::folder, {EISDIR});
    if (*old && !S_ISREG((*old)->st_mode))
        return refusal(Reason::notAFile, {EINVAL});

    auto place = linkTarget(path, calls);
    if (!place)
        return refusal(place.error());
    SaveTarget target{*std::move(place), *old};
    if (auto checked = target.old ? checkOld(target, calls) : checkFolder(target, calls); !checked)
        return std::unexpected(std::move(checked.error()));
    return target;
}

} // namespace quelm
