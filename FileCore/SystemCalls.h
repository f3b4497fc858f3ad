#pragma once

#include <cstddef>
#include <span>
#include <sys/stat.h>
#include <sys/types.h>

namespace quelm {

/// The calls of the system by which files are read, saved and journalled: the one place at which tests make each fail
/// in turn. Each function does, returns and leaves in `errno` what the POSIX or Linux function of its name does. The
/// objects hold no state of their own unless they are made for tests. For any thread.
class SystemCalls {
public:
    virtual ~SystemCalls() = default;

    /// Those of the system itself.
    static SystemCalls& real();

    virtual int open(const char* path, int flags, mode_t mode) = 0;
    virtual int close(int file) = 0;
    virtual ssize_t read(int file, void* bytes, std::size_t count) = 0;
    virtual ssize_t write(int file, const void* bytes, std::size_t count) = 0;
    virtual off_t seek(int file, off_t offset, int whence) = 0;
    virtual int truncate(int file, off_t length) = 0;
    /// fallocate(2).
    virtual int allocate(int file, int mode, off_t offset, off_t length) = 0;
    virtual int synchronize(int file) = 0;
    /// fdatasync(2).
    virtual int synchronizeData(int file) = 0;
    /// flock(2).
    virtual int lock(int file, int operation) = 0;

    virtual int status(const char* path, struct stat& status) = 0;
    virtual int linkStatus(const char* path, struct stat& status) = 0;
    virtual int fileStatus(int file, struct stat& status) = 0;
    /// faccessat(2) with the effective ids.
    virtual int access(const char* path, int mode) = 0;
    virtual ssize_t readLink(const char* path, std::span<char> target) = 0;

    virtual int changeOwner(int file, uid_t owner, gid_t group) = 0;
    virtual int changeMode(int file, mode_t mode) = 0;
    virtual ssize_t listAttributes(int file, std::span<char> names) = 0;
    virtual ssize_t attribute(int file, const char* name, std::span<char> value) = 0;
    virtual int setAttribute(int file, const char* name, std::span<const char> value) = 0;

    virtual int rename(const char* from, const char* to) = 0;
    virtual int unlink(const char* path) = 0;
    virtual int makeFolder(const char* path, mode_t mode) = 0;
};

} // namespace quelm
