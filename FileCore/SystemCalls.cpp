#include "FileCore/SystemCalls.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quelm {

namespace {

class RealSystemCalls final : public SystemCalls {
public:
    int open(const char* path, int flags, mode_t mode) override { return ::open(path, flags, mode); }
    int close(int file) override { return ::close(file); }
    ssize_t read(int file, void* bytes, std::size_t count) override { return ::read(file, bytes, count); }
    ssize_t write(int file, const void* bytes, std::size_t count) override { return ::write(file, bytes, count); }
    off_t seek(int file, off_t offset, int whence) override { return ::lseek(file, offset, whence); }
    int truncate(int file, off_t length) override { return ::ftruncate(file, length); }
    int allocate(int file, int mode, off_t offset, off_t length) override {
        return ::fallocate(file, mode, offset, length);
    }
    int synchronize(int file) override { return ::fsync(file); }
    int synchronizeData(int file) override { return ::fdatasync(file); }
    int lock(int file, int operation) override { return ::flock(file, operation); }

    int status(const char* path, struct stat& status) override { return ::stat(path, &status); }
    int linkStatus(const char* path, struct stat& status) override { return ::lstat(path, &status); }
    int fileStatus(int file, struct stat& status) override { return ::fstat(file, &status); }
    int access(const char* path, int mode) override { return ::faccessat(AT_FDCWD, path, mode, AT_EACCESS); }
    ssize_t readLink(const char* path, std::span<char> target) override {
        return ::readlink(path, target.data(), target.size());
    }

    int changeOwner(int file, uid_t owner, gid_t group) override { return ::fchown(file, owner, group); }
    int changeMode(int file, mode_t mode) override { return ::fchmod(file, mode); }
    ssize_t listAttributes(int file, std::span<char> names) override {
        return ::flistxattr(file, names.data(), names.size());
    }
    ssize_t attribute(int file, const char* name, std::span<char> value) override {
        return ::fgetxattr(file, name, value.data(), value.size());
    }
    int setAttribute(int file, const char* name, std::span<const char> value) override {
        return ::fsetxattr(file, name, value.data(), value.size(), 0);
    }

    int rename(const char* from, const char* to) override { return ::rename(from, to); }
    int unlink(const char* path) override { return ::unlink(path); }
    int makeFolder(const char* path, mode_t mode) override { return ::mkdir(path, mode); }
};

} // namespace

SystemCalls& SystemCalls::real() {
    static RealSystemCalls calls;
    return calls;
}

} // namespace quelm
