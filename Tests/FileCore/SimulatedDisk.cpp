#include "Tests/FileCore/SimulatedDisk.h"

#include "TextCore/Check.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace quelm::test {

namespace {

constexpr mode_t mayRead = 0400;
constexpr mode_t mayWrite = 0200;
constexpr mode_t maySearch = 0100;

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

} // namespace

std::optional<SimulatedDisk::Place> SimulatedDisk::resolve(const std::string& path, LastLink lastLink,
                                                           int depth) const {
    if (depth > 8 || path.empty()) {
        errno = path.empty() ? ENOENT : ELOOP;
        return std::nullopt;
    }
    Place place{SimulatedVolume::root, {}, SimulatedVolume::root};
    std::string before; // the path of the folder, for links
    std::size_t position = 0;
    while (position < path.size()) {
        const std::size_t end = std::min(path.find('/', position), path.size());
        const std::string name = path.substr(position, end - position);
        position = end + 1;
        if (name.empty() || name == ".")
            continue;
        require(name != "..", "paths on a simulated disk have no '..'");
        if (!place.node || volume_.kind(*place.node) != Kind::folder) {
            errno = place.node ? ENOTDIR : ENOENT;
            return std::nullopt;
        }
        if (!isAllowed(*place.node, maySearch)) {
            errno = EACCES;
            return std::nullopt;
        }
        const NodeID folder = *place.node;
        place = {folder, name, volume_.find(folder, name)};
        const bool isLast = path.find_first_not_of('/', end) == std::string::npos;
        if (place.node && volume_.kind(*place.node) == Kind::link && (!isLast || lastLink == LastLink::follow)) {
            const std::string& target = volume_.bytes(*place.node);
            const std::string whole = (target.starts_with('/') ? target : before + "/" + target) +
                                      (isLast ? std::string() : path.substr(end));
            return resolve(whole, lastLink, depth + 1);
        }
        before += "/" + name;
    }
    return place;
}

std::optional<SimulatedDisk::NodeID> SimulatedDisk::resolveNode(const std::string& path, LastLink lastLink) const {
    const auto place = resolve(path, lastLink);
    if (!place)
        return std::nullopt;
    if (!place->node)
        errno = ENOENT;
    return place->node;
}

bool SimulatedDisk::isAllowed(NodeID node, mode_t ownerBits) const {
    return (volume_.attributes(node).mode & ownerBits) == ownerBits;
}

// Preparing and looking.

SimulatedDisk::Place SimulatedDisk::placeToAdd(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    require(slash != std::string::npos, "paths on a simulated disk are absolute");
    const std::string above = path.substr(0, slash);
    NodeID folder = SimulatedVolume::root;
    if (!above.empty()) {
        const Place place = placeToAdd(above);
        if (place.node) {
            folder = *place.node;
        } else {
            folder = volume_.addNode(Kind::folder, 0755);
            volume_.setName(place.folder, place.name, folder);
        }
    }
    const std::string name = path.substr(slash + 1);
    return {folder, name, volume_.find(folder, name)};
}

void SimulatedDisk::addFolder(const std::string& path, mode_t mode) {
    const Place place = placeToAdd(path);
    volume_.setName(place.folder, place.name, volume_.addNode(Kind::folder, mode));
    volume_.synchronizeAll();
}

void SimulatedDisk::addFile(const std::string& path, std::string_view bytes, mode_t mode) {
    const Place place = placeToAdd(path);
    const NodeID file = volume_.addNode(Kind::file, mode);
    volume_.write(file, 0, bytes);
    volume_.setName(place.folder, place.name, file);
    volume_.synchronizeAll();
}

void SimulatedDisk::addLink(const std::string& path, const std::string& target) {
    const Place place = placeToAdd(path);
    const NodeID link = volume_.addNode(Kind::link, 0777);
    volume_.write(link, 0, target);
    volume_.setName(place.folder, place.name, link);
    volume_.synchronizeAll();
}

void SimulatedDisk::addName(const std::string& path, const std::string& ofFile) {
    const Place place = placeToAdd(path);
    const auto node = resolveNode(ofFile, LastLink::follow);
    require(node.has_value(), "a file that gets another name is there");
    volume_.setName(place.folder, place.name, *node);
    volume_.synchronizeAll();
}

std::optional<std::string> SimulatedDisk::contents(const std::string& path) const {
    const std::scoped_lock lock(mutex_);
    const auto node = resolveNode(path, LastLink::follow);
    if (!node || volume_.kind(*node) != Kind::file)
        return std::nullopt;
    return volume_.bytes(*node);
}

std::optional<mode_t> SimulatedDisk::mode(const std::string& path) const {
    const std::scoped_lock lock(mutex_);
    const auto node = resolveNode(path, LastLink::follow);
    return node ? std::optional(volume_.attributes(*node).mode) : std::nullopt;
}

std::vector<std::string> SimulatedDisk::names(const std::string& folder) const {
    const std::scoped_lock lock(mutex_);
    std::vector<std::string> names;
    if (const auto node = resolveNode(folder, LastLink::follow)) {
        for (const auto& [name, named] : volume_.names(*node))
            names.push_back(name);
    }
    return names;
}

int SimulatedDisk::openCount() const {
    const std::scoped_lock lock(mutex_);
    return static_cast<int>(open_.size());
}

SimulatedVolume SimulatedDisk::afterPowerLoss(std::uint32_t seed) const {
    const std::scoped_lock lock(mutex_);
    return volume_.afterPowerLoss(seed);
}

// The calls on paths.

int SimulatedDisk::open(const char* path, int flags, mode_t mode) {
    const std::scoped_lock lock(mutex_);
    const bool isExclusive = (flags & O_CREAT) != 0 && (flags & O_EXCL) != 0;
    const bool keepsLink = isExclusive || (flags & O_NOFOLLOW) != 0;
    auto place = resolve(path, keepsLink ? LastLink::keep : LastLink::follow);
    if (!place)
        return -1;
    if (place->node) {
        const Kind kind = volume_.kind(*place->node);
        const mode_t needed = (isReading(flags) ? mayRead : 0) | (isWriting(flags) ? mayWrite : 0);
        if (isExclusive)
            return fail(EEXIST);
        if (kind == Kind::link)
            return fail(ELOOP);
        if (kind == Kind::folder && isWriting(flags))
            return fail(EISDIR);
        if (kind != Kind::folder && (flags & O_DIRECTORY) != 0)
            return fail(ENOTDIR);
        if (!isAllowed(*place->node, needed))
            return fail(EACCES);
        if ((flags & O_TRUNC) != 0 && isWriting(flags))
            volume_.truncate(*place->node, 0);
    } else {
        if ((flags & O_CREAT) == 0)
            return fail(ENOENT);
        if (!isAllowed(place->folder, mayWrite))
            return fail(EACCES);
        place->node = volume_.addNode(Kind::file, mode);
        volume_.setName(place->folder, place->name, *place->node);
    }
    open_[nextFile_] = {*place->node, flags, 0};
    return nextFile_++;
}

int SimulatedDisk::fill(NodeID node, struct stat& status) const {
    const auto& attributes = volume_.attributes(node);
    const Kind kind = volume_.kind(node);
    status = {};
    status.st_dev = 1;
    status.st_ino = static_cast<ino_t>(node) + 1;
    status.st_mode = attributes.mode | (kind == Kind::file ? S_IFREG : kind == Kind::folder ? S_IFDIR : S_IFLNK);
    status.st_nlink = static_cast<nlink_t>(volume_.linkCount(node));
    status.st_uid = attributes.owner;
    status.st_gid = attributes.group;
    status.st_size = static_cast<off_t>(volume_.bytes(node).size());
    status.st_mtim.tv_sec = volume_.timeOfChange(node);
    return 0;
}

int SimulatedDisk::status(const char* path, struct stat& status) {
    const std::scoped_lock lock(mutex_);
    const auto node = resolveNode(path, LastLink::follow);
    return node ? fill(*node, status) : -1;
}

int SimulatedDisk::linkStatus(const char* path, struct stat& status) {
    const std::scoped_lock lock(mutex_);
    const auto node = resolveNode(path, LastLink::keep);
    return node ? fill(*node, status) : -1;
}

int SimulatedDisk::access(const char* path, int mode) {
    const std::scoped_lock lock(mutex_);
    const auto node = resolveNode(path, LastLink::follow);
    if (!node)
        return -1;
    const mode_t needed =
        ((mode & R_OK) ? mayRead : 0) | ((mode & W_OK) ? mayWrite : 0) | ((mode & X_OK) ? maySearch : 0);
    return isAllowed(*node, needed) ? 0 : fail(EACCES);
}

ssize_t SimulatedDisk::readLink(const char* path, std::span<char> target) {
    const std::scoped_lock lock(mutex_);
    const auto node = resolveNode(path, LastLink::keep);
    if (!node)
        return -1;
    if (volume_.kind(*node) != Kind::link)
        return fail(EINVAL);
    const std::string_view whole = volume_.bytes(*node);
    const std::string_view taken = whole.substr(0, target.size());
    std::ranges::copy(taken, target.begin());
    return static_cast<ssize_t>(taken.size());
}

int SimulatedDisk::rename(const char* from, const char* to) {
    const std::scoped_lock lock(mutex_);
    const auto source = resolve(from, LastLink::keep);
    if (!source)
        return -1;
    if (!source->node)
        return fail(ENOENT);
    const auto target = resolve(to, LastLink::keep);
    if (!target)
        return -1;
    if (!isAllowed(source->folder, mayWrite) || !isAllowed(target->folder, mayWrite))
        return fail(EACCES);
    if (target->node && volume_.kind(*target->node) == Kind::folder)
        return fail(EISDIR);
    // Two names of one file: nothing happens.
    if (target->node != source->node)
        volume_.moveName(source->folder, source->name, target->folder, target->name);
    return 0;
}

int SimulatedDisk::unlink(const char* path) {
    const std::scoped_lock lock(mutex_);
    const auto place = resolve(path, LastLink::keep);
    if (!place)
        return -1;
    if (!place->node)
        return fail(ENOENT);
    if (volume_.kind(*place->node) == Kind::folder)
        return fail(EISDIR);
    if (!isAllowed(place->folder, mayWrite))
        return fail(EACCES);
    volume_.removeName(place->folder, place->name);
    return 0;
}

int SimulatedDisk::makeFolder(const char* path, mode_t mode) {
    const std::scoped_lock lock(mutex_);
    const auto place = resolve(path, LastLink::keep);
    if (!place)
        return -1;
    if (place->node)
        return fail(EEXIST);
    if (!isAllowed(place->folder, mayWrite))
        return fail(EACCES);
    volume_.setName(place->folder, place->name, volume_.addNode(Kind::folder, mode));
    return 0;
}

} // namespace quelm::test
