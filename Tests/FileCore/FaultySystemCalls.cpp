#include "Tests/FileCore/FaultySystemCalls.h"

#include <csignal>
#include <cstdlib>

namespace quelm::test {

namespace {

[[noreturn]] void endProcess() {
    std::raise(SIGKILL);
    // Not reached: nothing withstands that signal.
    std::abort();
}

} // namespace

void FaultySystemCalls::add(Fault fault) {
    const std::scoped_lock lock(mutex_);
    faults_.push_back(std::move(fault));
}

void FaultySystemCalls::clearFaults() {
    const std::scoped_lock lock(mutex_);
    faults_.clear();
}

std::vector<FaultySystemCalls::Call> FaultySystemCalls::made() const {
    const std::scoped_lock lock(mutex_);
    return made_;
}

int FaultySystemCalls::count() const {
    const std::scoped_lock lock(mutex_);
    return static_cast<int>(made_.size());
}

bool FaultySystemCalls::hasStruck() const {
    for (const Call& call : made()) {
        if (call.isStruck)
            return true;
    }
    return false;
}

std::string FaultySystemCalls::log() const {
    std::string lines;
    for (const Call& call : made())
        lines += call.kind + ' ' + call.path + (call.isStruck ? " !\n" : "\n");
    return lines;
}

std::string FaultySystemCalls::pathOf(int file) const {
    const std::scoped_lock lock(mutex_);
    const auto found = paths_.find(file);
    return found == paths_.end() ? "descriptor " + std::to_string(file) : found->second;
}

std::optional<Fault> FaultySystemCalls::noteCall(const std::string& kind, const std::string& path) {
    const std::scoped_lock lock(mutex_);
    const int number = static_cast<int>(made_.size());
    const int numberOfKind = countOfKind_[kind]++;
    std::optional<Fault> striking;
    for (const Fault& fault : faults_) {
        const int counted = fault.kind.empty() ? number : numberOfKind;
        if ((fault.kind.empty() || fault.kind == kind) && fault.first <= counted && counted <= fault.last) {
            striking = fault;
            break;
        }
    }
    made_.push_back({kind, path, striking.has_value()});
    return striking;
}

// `perform` takes the number of bytes that are to be read or written; `count` of them were asked for, 0 by other calls.
template <typename Result, typename Perform>
Result FaultySystemCalls::call(const std::string& kind, const std::string& path, std::size_t count,
                               const Perform& perform) {
    const std::optional<Fault> fault = noteCall(kind, path);
    if (!fault)
        return perform(count);
    switch (fault->effect) {
    case Fault::Effect::fail:
        if (kind == "close")
            perform(count);
        errno = fault->code;
        return Result{-1};
    case Fault::Effect::shorten:
        return perform(count > 1 ? count / 2 : count);
    case Fault::Effect::killAfter:
        perform(count);
        endProcess();
    case Fault::Effect::killInside:
        if (kind == "write" && count > 1)
            perform(count / 2);
        endProcess();
    }
    std::abort();
}

int FaultySystemCalls::open(const char* path, int flags, mode_t mode) {
    const int file = call<int>("open", path, 0, [&](std::size_t) { return calls_.open(path, flags, mode); });
    if (file >= 0) {
        const std::scoped_lock lock(mutex_);
        paths_[file] = path;
    }
    return file;
}

int FaultySystemCalls::close(int file) {
    const std::string path = pathOf(file);
    {
        // Before the call: its number may be given to another file right after it.
        const std::scoped_lock lock(mutex_);
        paths_.erase(file);
    }
    return call<int>("close", path, 0, [&](std::size_t) { return calls_.close(file); });
}

ssize_t FaultySystemCalls::read(int file, void* bytes, std::size_t count) {
    return call<ssize_t>("read", pathOf(file), count,
                         [&](std::size_t taken) { return calls_.read(file, bytes, taken); });
}

ssize_t FaultySystemCalls::write(int file, const void* bytes, std::size_t count) {
    return call<ssize_t>("write", pathOf(file), count,
                         [&](std::size_t taken) { return calls_.write(file, bytes, taken); });
}

off_t FaultySystemCalls::seek(int file, off_t offset, int whence) {
    return call<off_t>("seek", pathOf(file), 0, [&](std::size_t) { return calls_.seek(file, offset, whence); });
}

int FaultySystemCalls::truncate(int file, off_t length) {
    return call<int>("truncate", pathOf(file), 0, [&](std::size_t) { return calls_.truncate(file, length); });
}

int FaultySystemCalls::allocate(int file, int mode, off_t offset, off_t length) {
    return call<int>("allocate", pathOf(file), 0,
                     [&](std::size_t) { return calls_.allocate(file, mode, offset, length); });
}

int FaultySystemCalls::synchronize(int file) {
    return call<int>("synchronize", pathOf(file), 0, [&](std::size_t) { return calls_.synchronize(file); });
}

int FaultySystemCalls::synchronizeData(int file) {
    return call<int>("synchronizeData", pathOf(file), 0, [&](std::size_t) { return calls_.synchronizeData(file); });
}

int FaultySystemCalls::lock(int file, int operation) {
    return call<int>("lock", pathOf(file), 0, [&](std::size_t) { return calls_.lock(file, operation); });
}

int FaultySystemCalls::status(const char* path, struct stat& status) {
    return call<int>("status", path, 0, [&](std::size_t) { return calls_.status(path, status); });
}

int FaultySystemCalls::linkStatus(const char* path, struct stat& status) {
    return call<int>("linkStatus", path, 0, [&](std::size_t) { return calls_.linkStatus(path, status); });
}

int FaultySystemCalls::fileStatus(int file, struct stat& status) {
    return call<int>("fileStatus", pathOf(file), 0, [&](std::size_t) { return calls_.fileStatus(file, status); });
}

int FaultySystemCalls::access(const char* path, int mode) {
    return call<int>("access", path, 0, [&](std::size_t) { return calls_.access(path, mode); });
}

ssize_t FaultySystemCalls::readLink(const char* path, std::span<char> target) {
    return call<ssize_t>("readLink", path, 0, [&](std::size_t) { return calls_.readLink(path, target); });
}

int FaultySystemCalls::changeOwner(int file, uid_t owner, gid_t group) {
    return call<int>("changeOwner", pathOf(file), 0,
                     [&](std::size_t) { return calls_.changeOwner(file, owner, group); });
}

int FaultySystemCalls::changeMode(int file, mode_t mode) {
    return call<int>("changeMode", pathOf(file), 0, [&](std::size_t) { return calls_.changeMode(file, mode); });
}

ssize_t FaultySystemCalls::listAttributes(int file, std::span<char> names) {
    return call<ssize_t>("listAttributes", pathOf(file), 0,
                         [&](std::size_t) { return calls_.listAttributes(file, names); });
}

ssize_t FaultySystemCalls::attribute(int file, const char* name, std::span<char> value) {
    return call<ssize_t>("attribute", pathOf(file), 0,
                         [&](std::size_t) { return calls_.attribute(file, name, value); });
}

int FaultySystemCalls::setAttribute(int file, const char* name, std::span<const char> value) {
    return call<int>("setAttribute", pathOf(file), 0,
                     [&](std::size_t) { return calls_.setAttribute(file, name, value); });
}

int FaultySystemCalls::rename(const char* from, const char* to) {
    return call<int>("rename", std::string(from) + " -> " + to, 0,
                     [&](std::size_t) { return calls_.rename(from, to); });
}

int FaultySystemCalls::unlink(const char* path) {
    return call<int>("unlink", path, 0, [&](std::size_t) { return calls_.unlink(path); });
}

int FaultySystemCalls::makeFolder(const char* path, mode_t mode) {
    return call<int>("makeFolder", path, 0, [&](std::size_t) { return calls_.makeFolder(path, mode); });
}

} // namespace quelm::test
