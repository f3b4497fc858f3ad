#include "Tests/FileCore/SimulatedDisk.h"
#include "TextCore/Check.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quelm::test {

namespace {

int fail(int code) {
    errno = code;
    return -1;
}

bool isWriting(int flags) {
    return (flags & O_ACCMODE) != O_RDONLY;
}

bool isReading(int flags) {
    return (flags & O_ACCMODE) != O_WRONLY;
}

// The size that is asked for with no room, else as much as there is.
ssize_t copyTo(std::span<char> room, std::string_view bytes) {
    if (room.empty())
        return static_cast<ssize_t>(bytes.size());
    if (bytes.size() > room.size())
        return fail(ERANGE);
    std::ranges::copy(bytes, room.begin());
    return static_cast<ssize_t>(bytes.size());
}

} // namespace

SimulatedDisk::OpenFile* SimulatedDisk::openFile(int file) {
    const auto found = open_.find(file);
    if (found != open_.end())
        return &found->second;
    errno = EBADF;
    return nullptr;
}

int SimulatedDisk::close(int file) {
    const std::scoped_lock lock(mutex_);
    if (!openFile(file))
        return -1;
    std::erase_if(locks_, [&](const auto& each) { return each.second == file; });
    open_.erase(file);
    return 0;
}

ssize_t SimulatedDisk::read(int file, void* bytes, std::size_t count) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    if (!isReading(opened->flags))
        return fail(EBADF);
    if (volume_.kind(opened->node) == Kind::folder)
        return fail(EISDIR);
    const std::string& whole = volume_.bytes(opened->node);
    const std::size_t length = opened->offset < whole.size() ? std::min(count, whole.size() - opened->offset) : 0;
    std::memcpy(bytes, whole.data() + std::min(opened->offset, whole.size()), length);
    opened->offset += length;
    return static_cast<ssize_t>(length);
}

ssize_t SimulatedDisk::write(int file, const void* bytes, std::size_t count) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    if (!isWriting(opened->flags))
        return fail(EBADF);
    const std::size_t size = volume_.bytes(opened->node).size();
    const std::size_t offset = (opened->flags & O_APPEND) != 0 ? size : opened->offset;
    // What is written over takes no space.
    const std::size_t used = volume_.usedBytes();
    const std::size_t room = (used < capacity_ ? capacity_ - used : 0) + (offset < size ? size - offset : 0);
    const std::size_t length = std::min(count, room);
    if (length == 0 && count > 0)
        return fail(ENOSPC);
    volume_.write(opened->node, offset, std::string_view(static_cast<const char*>(bytes), length));
    opened->offset = offset + length;
    return static_cast<ssize_t>(length);
}

off_t SimulatedDisk::seek(int file, off_t offset, int whence) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    off_t from = 0;
    if (whence == SEEK_CUR)
        from = static_cast<off_t>(opened->offset);
    else if (whence == SEEK_END)
        from = static_cast<off_t>(volume_.bytes(opened->node).size());
    else if (whence != SEEK_SET)
        return fail(EINVAL);
    if (from + offset < 0)
        return fail(EINVAL);
    opened->offset = static_cast<std::size_t>(from + offset);
    return from + offset;
}

int SimulatedDisk::truncate(int file, off_t length) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    if (!isWriting(opened->flags) || length < 0)
        return fail(EINVAL);
    volume_.truncate(opened->node, static_cast<std::size_t>(length));
    return 0;
}

int SimulatedDisk::allocate(int file, int mode, off_t offset, off_t length) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    if ((mode & ~FALLOC_FL_KEEP_SIZE) != 0)
        return fail(EOPNOTSUPP);
    const std::size_t size = volume_.bytes(opened->node).size();
    const std::size_t end = static_cast<std::size_t>(offset + length);
    if (end > size && volume_.usedBytes() + (end - size) > capacity_)
        return fail(ENOSPC);
    if (end > size && mode == 0)
        volume_.truncate(opened->node, end);
    return 0;
}

int SimulatedDisk::synchronize(int file) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    volume_.synchronize(opened->node);
    return 0;
}

int SimulatedDisk::synchronizeData(int file) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    volume_.synchronizeData(opened->node);
    return 0;
}

bool SimulatedDisk::isLockedByAnother(int file, NodeID node) const {
    const auto found = locks_.find(node);
    return found != locks_.end() && found->second != file;
}

int SimulatedDisk::lock(int file, int operation) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    if ((operation & LOCK_UN) != 0) {
        if (!isLockedByAnother(file, opened->node))
            locks_.erase(opened->node);
        return 0;
    }
    require((operation & LOCK_EX) != 0, "locks on a simulated disk are exclusive");
    if (isLockedByAnother(file, opened->node)) {
        require((operation & LOCK_NB) != 0, "nobody waits for a lock on a simulated disk");
        return fail(EWOULDBLOCK);
    }
    locks_[opened->node] = file;
    return 0;
}

int SimulatedDisk::changeOwner(int file, uid_t owner, gid_t group) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    auto attributes = volume_.attributes(opened->node);
    if (owner != attributes.owner && owner != static_cast<uid_t>(-1))
        return fail(EPERM);
    if (group != static_cast<gid_t>(-1))
        attributes.group = group;
    volume_.setAttributes(opened->node, attributes);
    return 0;
}

int SimulatedDisk::changeMode(int file, mode_t mode) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    auto attributes = volume_.attributes(opened->node);
    attributes.mode = mode & 07777;
    volume_.setAttributes(opened->node, attributes);
    return 0;
}

ssize_t SimulatedDisk::listAttributes(int file, std::span<char> names) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    std::string list;
    for (const auto& [name, value] : volume_.attributes(opened->node).extended)
        list.append(name).push_back('\0');
    return copyTo(names, list);
}

ssize_t SimulatedDisk::attribute(int file, const char* name, std::span<char> value) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    const auto& extended = volume_.attributes(opened->node).extended;
    const auto found = extended.find(name);
    return found == extended.end() ? fail(ENODATA) : copyTo(value, found->second);
}

int SimulatedDisk::setAttribute(int file, const char* name, std::span<const char> value) {
    const std::scoped_lock lock(mutex_);
    OpenFile* const opened = openFile(file);
    if (!opened)
        return -1;
    auto attributes = volume_.attributes(opened->node);
    attributes.extended[name] = std::string(value.data(), value.size());
    volume_.setAttributes(opened->node, attributes);
    return 0;
}

int SimulatedDisk::fileStatus(int file, struct stat& status) {
    const std::scoped_lock lock(mutex_);
    const OpenFile* const opened = openFile(file);
    return opened ? fill(opened->node, status) : -1;
}

} // namespace quelm::test
