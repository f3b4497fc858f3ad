#pragma once

#include "FileCore/FileDescriptor.h"

#include <optional>
#include <string>
#include <sys/un.h>
#include <utility>

namespace quelm {

/// Where programs of this user on this screen find each other: a folder that is theirs alone (0700), which is also
/// their lock, with a socket in it.
class InstanceAddress {
public:
    /// That of this process: below `$XDG_RUNTIME_DIR`, or a folder of the user's own below the one for temporary files.
    /// Absent where there is none that only this user can have made.
    static std::optional<InstanceAddress> own();
    /// One in a folder that there is, for programs on a screen of that name.
    static std::optional<InstanceAddress> in(const std::string& folder, const std::string& screen);

    const std::string& folder() const { return folder_; }
    const sockaddr_un& socketAddress() const { return address_; }

private:
    InstanceAddress() = default;

    std::string folder_;
    sockaddr_un address_{};
};

/// The socket of the one program that others hand their files over to; others may connect from the moment on that it
/// exists. Its file goes at the end of its life. Movable, not copyable.
class InstanceSocket {
public:
    /// Absent while another process has it, or when it cannot be made. What a process that has ended left is replaced.
    static std::optional<InstanceSocket> claim(const InstanceAddress& address);

    InstanceSocket(InstanceSocket&&) noexcept = default;
    InstanceSocket& operator=(InstanceSocket&& other) noexcept {
        std::swap(lock_, other.lock_);
        std::swap(listening_, other.listening_);
        std::swap(path_, other.path_);
        return *this;
    }
    ~InstanceSocket();

    /// Listening, in non-blocking mode.
    int number() const { return listening_.number(); }

private:
    InstanceSocket(FileDescriptor lock, FileDescriptor listening, std::string path)
        : lock_(std::move(lock)), listening_(std::move(listening)), path_(std::move(path)) {}

    /// Outlives the others.
    FileDescriptor lock_;
    FileDescriptor listening_;
    std::string path_;
};

/// Whether the process at the other end of a socket is one of this user's.
bool isOwnPeer(int socket);

} // namespace quelm
