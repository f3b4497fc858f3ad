#include "Quelm/Application/InstanceSocket.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quelm {

namespace {

constexpr int waitingConnections = 16;
constexpr std::size_t longestScreen = 64;

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// The folder, if nobody else can have put anything there. Links are not followed.
FileDescriptor openOwnFolder(const std::string& path) {
    FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status{};
    const bool isOwn = folder.isOpen() && fstat(folder.number(), &status) == 0 && status.st_uid == geteuid() &&
                       (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    return isOwn ? std::move(folder) : FileDescriptor();
}

bool makeOwnFolder(const std::string& path) {
    // One that there is already is as good, if it is this user's.
    (void)::mkdir(path.c_str(), S_IRWXU);
    return openOwnFolder(path).isOpen();
}

/// What decides which screen windows come up on, as the name of a file.
std::string screenName() {
    std::string name;
    for (const char* deciding : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
        for (const char character : variable(deciding)) {
            const bool isPlain = std::isalnum(static_cast<unsigned char>(character)) || character == '.';
            name.push_back(isPlain ? character : '_');
        }
        name.push_back('-');
    }
    return name;
}

} // namespace

std::optional<InstanceAddress> InstanceAddress::own() {
    const std::string runtime = variable("XDG_RUNTIME_DIR");
    if (runtime.starts_with('/') && openOwnFolder(runtime).isOpen())
        return in(runtime, screenName());
    const std::string temporary = "/tmp/quelm-" + std::to_string(geteuid());
    return makeOwnFolder(temporary) ? in(temporary, screenName()) : std::nullopt;
}

std::optional<InstanceAddress> InstanceAddress::in(const std::string& folder, const std::string& screen) {
    InstanceAddress address;
    address.folder_ = folder + "/quelm/" + screen;
    const std::string path = address.folder_ + "/socket";
    if (screen.size() > longestScreen || path.size() >= sizeof address.address_.sun_path)
        return std::nullopt;
    if (!makeOwnFolder(folder + "/quelm") || !makeOwnFolder(address.folder_))
        return std::nullopt;
    address.address_.sun_family = AF_UNIX;
    std::memcpy(address.address_.sun_path, path.c_str(), path.size() + 1);
    return address;
}

std::optional<InstanceSocket> InstanceSocket::claim(const InstanceAddress& address) {
    FileDescriptor lock = openOwnFolder(address.folder());
    if (!lock.isOpen() || flock(lock.number(), LOCK_EX | LOCK_NB) != 0)
        return std::nullopt;
    const char* path = address.socketAddress().sun_path;
    // Whoever made it has ended, or the lock would not be free.
    (void)::unlink(path);
    FileDescriptor listening(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    // The mode of the descriptor becomes that of the file.
    const bool isListening = listening.isOpen() && ::fchmod(listening.number(), S_IRUSR | S_IWUSR) == 0 &&
                             ::bind(listening.number(), reinterpret_cast<const sockaddr*>(&address.socketAddress()),
                                    sizeof address.socketAddress()) == 0 &&
                             ::listen(listening.number(), waitingConnections) == 0;
    if (!isListening)
        return std::nullopt;
    return InstanceSocket(std::move(lock), std::move(listening), path);
}

InstanceSocket::~InstanceSocket() {
    // Before the lock is free: afterwards it may be another one's.
    if (listening_.isOpen())
        (void)::unlink(path_.c_str());
}

bool isOwnPeer(int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

} // namespace quelm
