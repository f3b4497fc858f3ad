#pragma once

#include "CommandLine/SystemError.h"

#include <expected>
#include <string_view>
#include <utility>

namespace quelm {

/// The sole owner of an open file descriptor, which it closes at the end of its life. Movable, not copyable.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~FileDescriptor();

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

    /// Closes now and tells whether the system had kept an error of an earlier write for this moment.
    std::expected<void, SystemError> close();

private:
    int number_ = -1;
};

/// Opens a file without handing it to programs started later. `flags` and `mode` as open(2) takes them.
std::expected<FileDescriptor, SystemError> openFile(const char* path, int flags, unsigned mode = 0);

/// Sleeps until a descriptor in non-blocking mode takes or has bytes again; `events` as poll(2) takes them.
void waitUntilReady(int descriptor, short events);

/// Writes all the bytes, in as few calls as the system allows, whether the descriptor is in blocking mode or
/// not.
std::expected<void, SystemError> writeAll(int descriptor, std::string_view bytes);

} // namespace quelm
