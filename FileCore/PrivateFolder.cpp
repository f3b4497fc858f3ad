#include "FileCore/PrivateFolder.h"

#include "FileCore/FileDescriptor.h"
#include "FileCore/SaveTarget.h"
#include "FileCore/Uninterrupted.h"

namespace quelm {

std::expected<void, SystemError> createPrivateFolder(const std::string& path, SystemCalls& calls) {
    const auto make = [&] { return uninterrupted([&] { return calls.makeFolder(path.c_str(), 0700); }); };
    if (make() != 0) {
        if (errno == EEXIST)
            return {};
        const std::string above = folderOf(path);
        if (errno != ENOENT || above == path || path.find('/') == std::string::npos)
            return std::unexpected(SystemError::last());
        if (auto created = createPrivateFolder(above, calls); !created)
            return created;
        if (make() != 0 && errno != EEXIST)
            return std::unexpected(SystemError::last());
    }
    return synchronizeFolder(folderOf(path).c_str(), calls);
}

} // namespace quelm
