#pragma once

#include "FileCore/SystemCalls.h"
#include "FileCore/SystemError.h"

#include <cstddef>
#include <expected>
#include <span>
#include <string_view>
#include <utility>

namespace quelm {

/// The sole owner of an open file descriptor, which it closes at the end of its life by the calls that opened it.
/// Movable, not copyable.
class FileDescriptor {
public:
    FileDescriptor() = default;
    /// One that `calls` opened.
    explicit FileDescriptor(int number, SystemCalls& calls = SystemCalls::real()) : number_(number), calls_(&calls) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)), calls_(other.calls_) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        std::swap(calls_, other.calls_);
        return *this;
    }
    ~FileDescriptor();

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

    /// Closes now and tells whether the system had kept an error of an earlier write for this moment.
    std::expected<void, SystemError> close();

private:
    int number_ = -1;
    SystemCalls* calls_ = nullptr; // there while it is open
};

/// Opens a file without handing it to programs started later. `flags` and `mode` as open(2) takes them.
std::expected<FileDescriptor, SystemError> openFile(const char* path, int flags, unsigned mode = 0,
                                                    SystemCalls& calls = SystemCalls::real());

/// Sleeps until a descriptor in non-blocking mode takes or has bytes again; `events` as poll(2) takes them.
void waitUntilReady(int descriptor, short events);

/// Writes all the bytes, in as few calls as the system allows, whether the descriptor is in blocking mode or
/// not.
std::expected<void, SystemError> writeAll(int descriptor, std::string_view bytes,
                                          SystemCalls& calls = SystemCalls::real());

/// Reads as many bytes as there are at once, none at the end of the file. For descriptors of files.
std::expected<std::size_t, SystemError> readSome(int descriptor, std::span<char> room,
                                                 SystemCalls& calls = SystemCalls::real());

/// Brings what was written to the device. A file system that has nothing to bring anywhere and says so is no error.
std::expected<void, SystemError> synchronize(int descriptor, SystemCalls& calls = SystemCalls::real());

/// The same without what is not needed to read the bytes again, such as the time of the change.
std::expected<void, SystemError> synchronizeData(int descriptor, SystemCalls& calls = SystemCalls::real());

/// The same for the names in a folder.
std::expected<void, SystemError> synchronizeFolder(const char* path, SystemCalls& calls = SystemCalls::real());

} // namespace quelm
