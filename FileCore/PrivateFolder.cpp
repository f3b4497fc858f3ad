#include "FileCore/PrivateFolder.h"

#include "FileCore/FileDescriptor.h"
#include "FileCore/SaveTarget.h"
#include "FileCore/Uninterrupted.h"

#include <cstdint>
#include <fcntl.h>
#include <unistd.h>

namespace quelm {

namespace {

/// Takes the rights away that others have to a folder of this user's own. One of somebody else's is not ours to change.
std::expected<void, SystemError> closeToOthers(const std::string& path, SystemCalls& calls) {
    const auto folder = openFile(path.c_str(), O_RDONLY | O_DIRECTORY, 0, calls);
    if (!folder)
        return std::unexpected(folder.error());
    struct stat status{};
    if (uninterrupted([&] { return calls.fileStatus(folder->number(), status); }) != 0)
        return std::unexpected(SystemError::last());
    const bool isOpenToOthers = status.st_uid == ::geteuid() && (status.st_mode & 077) != 0;
    if (isOpenToOthers && uninterrupted([&] { return calls.changeMode(folder->number(), 0700); }) != 0)
        return std::unexpected(SystemError::last());
    return {};
}

enum class Creation : std::uint8_t { isNew, wasThere };

std::expected<Creation, SystemError> create(const std::string& path, SystemCalls& calls) {
    const auto make = [&] { return uninterrupted([&] { return calls.makeFolder(path.c_str(), 0700); }); };
    if (make() != 0) {
        if (errno == EEXIST)
            return Creation::wasThere;
        const std::string above = folderOf(path);
        if (errno != ENOENT || above == path || path.find('/') == std::string::npos)
            return std::unexpected(SystemError::last());
        if (const auto created = create(above, calls); !created)
            return created;
        if (make() != 0 && errno != EEXIST)
            return std::unexpected(SystemError::last());
    }
    if (auto synchronized = synchronizeFolder(folderOf(path).c_str(), calls); !synchronized)
        return std::unexpected(synchronized.error());
    return Creation::isNew;
}

} // namespace

std::expected<void, SystemError> createPrivateFolder(const std::string& path, SystemCalls& calls) {
    const auto creation = create(path, calls);
    if (!creation)
        return std::unexpected(creation.error());
    if (*creation == Creation::isNew)
        return {};
    // Whoever made it may not have got it to the device. One above that may not be read is left to the system.
    (void)synchronizeFolder(folderOf(path).c_str(), calls);
    return closeToOthers(path, calls);
}

} // namespace quelm
