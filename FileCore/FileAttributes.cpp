#include "FileCore/FileAttributes.h"

#include "FileCore/FileDescriptor.h"
#include "FileCore/Uninterrupted.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <span>
#include <string_view>
#include <vector>

namespace quelm {

namespace {

using Status = struct stat;

constexpr std::string_view accessList = "system.posix_acl_access";
/// As long as Linux lets names and values get (XATTR_LIST_MAX, XATTR_SIZE_MAX).
constexpr std::size_t longest = 65536;

constexpr mode_t groupPermissions = 070;

/// What a system says that does not know of attributes, or of those of that kind, or keeps them to itself.
bool isRefusal(int code) {
    return code == EPERM || code == EACCES || code == ENOTSUP || code == ENOSYS || code == EINVAL || code == EROFS;
}

std::vector<char> attributeOf(int file, const std::string& name, SystemCalls& calls) {
    std::vector<char> value(longest);
    const ssize_t length = uninterrupted([&] { return calls.attribute(file, name.c_str(), value); });
    value.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return value;
}

std::expected<std::vector<std::string>, SystemError> attributeNames(int file, SystemCalls& calls) {
    std::vector<char> list(longest);
    const ssize_t length = uninterrupted([&] { return calls.listAttributes(file, list); });
    if (length < 0 && !isRefusal(errno))
        return std::unexpected(SystemError::last());
    std::vector<std::string> names;
    for (std::string_view rest(list.data(), length > 0 ? static_cast<std::size_t>(length) : 0); !rest.empty();) {
        names.emplace_back(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(rest.size(), names.back().size() + 1));
    }
    return names;
}

/// Which of the old file's attributes the new one has.
struct Attributes {
    bool areAll = true;
    /// Without its list of access rights, the permissions of the group are the widest rights of anybody on that list.
    bool lacksAccessList = false;
};

std::expected<Attributes, SystemError> copyAttributes(int from, int to, SystemCalls& calls) {
    const auto names = attributeNames(from, calls);
    if (!names)
        return std::unexpected(names.error());
    Attributes copied;
    for (const std::string& name : *names) {
        std::vector<char> value(longest);
        const ssize_t length = uninterrupted([&] { return calls.attribute(from, name.c_str(), value); });
        if (length >= 0) {
            value.resize(static_cast<std::size_t>(length));
            // A label that the system gives every file by itself is there already, and need not be allowed to be set.
            if (length > 0 && attributeOf(to, name, calls) == value)
                continue;
            if (uninterrupted([&] { return calls.setAttribute(to, name.c_str(), value); }) == 0)
                continue;
        }
        const SystemError error = SystemError::last();
        if (name.starts_with("user.") && !isRefusal(error.code) && error.code != ENODATA)
            return std::unexpected(error);
        copied.areAll = false;
        copied.lacksAccessList = copied.lacksAccessList || name == accessList;
    }
    return copied;
}

/// Takes away what the folder's default list of access rights gave the new file and the old one did not have.
bool dropInheritedAccessList(int file, SystemCalls& calls) {
    if (attributeOf(file, std::string(accessList), calls).empty())
        return true;
    // The list that says no more than the permissions 0600 do, as <linux/posix_acl_xattr.h> lays it out: the version,
    // and for owner, group and others a tag, the rights and no id.
    constexpr std::array<unsigned char, 28> plain{2,    0,    0,    0, 0x01, 0,    6,    0,    0xff, 0xff,
                                                  0xff, 0xff, 0x04, 0, 0,    0,    0xff, 0xff, 0xff, 0xff,
                                                  0x20, 0,    0,    0, 0xff, 0xff, 0xff, 0xff};
    const std::span value(reinterpret_cast<const char*>(plain.data()), plain.size());
    return uninterrupted([&] { return calls.setAttribute(file, accessList.data(), value); }) == 0;
}

std::expected<Attributes, SystemError> adoptExtended(int descriptor, const std::string& oldPath, SystemCalls& calls) {
    // Whoever may write to a file need not be allowed to read it.
    const auto old = openFile(oldPath.c_str(), O_RDONLY | O_NONBLOCK, 0, calls);
    if (!old && !isRefusal(old.error().code))
        return std::unexpected(old.error());
    if (!old)
        return Attributes{.areAll = false, .lacksAccessList = true};
    const bool hasList = !attributeOf(old->number(), std::string(accessList), calls).empty();
    const bool isPlain = hasList || dropInheritedAccessList(descriptor, calls);
    auto copied = copyAttributes(old->number(), descriptor, calls);
    if (copied && !isPlain)
        *copied = {.areAll = false, .lacksAccessList = true};
    return copied;
}

} // namespace

std::expected<bool, SystemError> adoptAttributes(int descriptor, const std::string& oldPath, const Status& old,
                                                 SystemCalls& calls) {
    Status now{};
    if (uninterrupted([&] { return calls.fileStatus(descriptor, now); }) != 0)
        return std::unexpected(SystemError::last());
    const auto change = [&](uid_t owner, gid_t group) {
        return uninterrupted([&] { return calls.changeOwner(descriptor, owner, group); }) == 0;
    };
    const bool hasOwner = now.st_uid == old.st_uid || change(old.st_uid, static_cast<gid_t>(-1));
    const bool hasGroup = now.st_gid == old.st_gid || change(static_cast<uid_t>(-1), old.st_gid);

    const auto extended = adoptExtended(descriptor, oldPath, calls);
    if (!extended)
        return std::unexpected(extended.error());

    mode_t mode = old.st_mode & 07777;
    if (!hasOwner)
        mode &= 0777;
    if (!hasGroup)
        mode &= 0707;
    if (extended->lacksAccessList)
        mode &= ~groupPermissions;
    // Asked anew: owner, group and a list of access rights change the permissions.
    if (uninterrupted([&] { return calls.fileStatus(descriptor, now); }) != 0)
        return std::unexpected(SystemError::last());
    if (mode != (now.st_mode & 07777) && uninterrupted([&] { return calls.changeMode(descriptor, mode); }) != 0)
        return std::unexpected(SystemError::last());
    return hasOwner && hasGroup && extended->areAll;
}

} // namespace quelm
