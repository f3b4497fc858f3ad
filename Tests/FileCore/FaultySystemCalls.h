#pragma once

#include "FileCore/SystemCalls.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace quelm::test {

/// What goes wrong, and with which calls.
struct Fault {
    enum class Effect : std::uint8_t {
        /// The call does nothing and fails with `code`; only `close` closes all the same, as on Linux.
        fail,
        /// A call that reads or writes several bytes takes half of them; others are as ever.
        shorten,
        /// The process ends by SIGKILL, right after the call.
        killAfter,
        /// The same in the middle: of several bytes to be written the first half is; other calls are not made.
        killInside,
    };
    Effect effect = Effect::fail;
    int code = EIO;
    /// The kind of the calls, such as "write"; empty for all kinds.
    std::string kind;
    /// Which of the calls of that kind, counted from 0 since the object was made.
    int first = 0;
    int last = 0;

    static Fault failing(int code) { return {Effect::fail, code, {}, 0, 0}; }
    static Fault interrupting() { return failing(EINTR); }
    static Fault shortening() { return {Effect::shorten, 0, {}, 0, 0}; }
    static Fault killingAfter() { return {Effect::killAfter, 0, {}, 0, 0}; }
    static Fault killingInside() { return {Effect::killInside, 0, {}, 0, 0}; }

    /// The fault at that call of any kind, or of one kind.
    Fault at(int number) const { return between({}, number, number); }
    Fault at(std::string callKind, int number) const { return between(std::move(callKind), number, number); }
    /// The fault at that call and all later ones.
    Fault from(int number) const { return between({}, number, never); }
    Fault from(std::string callKind, int number) const { return between(std::move(callKind), number, never); }

    friend void PrintTo(const Fault& fault, std::ostream* stream) {
        static constexpr std::array effects{"fail", "shorten", "kill after", "kill inside"};
        *stream << effects[static_cast<std::size_t>(fault.effect)] << ' ' << fault.kind << " at " << fault.first;
    }

private:
    static constexpr int never = 1 << 30;
    Fault between(std::string callKind, int firstNumber, int lastNumber) const {
        return {effect, code, std::move(callKind), firstNumber, lastNumber};
    }
};

/// Calls that are passed on to others, except where a fault strikes; the first fault that does decides. Every call is
/// put down, so that a failure can be read. For any thread, and for the process that a fork makes.
class FaultySystemCalls : public SystemCalls {
public:
    explicit FaultySystemCalls(SystemCalls& calls = SystemCalls::real()) : calls_(calls) {}
    explicit FaultySystemCalls(Fault fault, SystemCalls& calls = SystemCalls::real())
        : calls_(calls), faults_{std::move(fault)} {}

    void add(Fault fault);
    void clearFaults();

    struct Call {
        /// Named as the function.
        std::string kind;
        /// What it was about; of a descriptor, the path that it was opened by.
        std::string path;
        /// Whether a fault struck.
        bool isStruck = false;

        friend bool operator==(const Call&, const Call&) = default;
    };
    std::vector<Call> made() const;
    int count() const;
    /// Whether any fault has struck.
    bool hasStruck() const;
    /// All calls, one a line, as in "write /tmp/a.json !".
    std::string log() const;

    int open(const char* path, int flags, mode_t mode) override;
    int close(int file) override;
    ssize_t read(int file, void* bytes, std::size_t count) override;
    ssize_t write(int file, const void* bytes, std::size_t count) override;
    off_t seek(int file, off_t offset, int whence) override;
    int truncate(int file, off_t length) override;
    int allocate(int file, int mode, off_t offset, off_t length) override;
    int synchronize(int file) override;
    int synchronizeData(int file) override;
    int lock(int file, int operation) override;
    int status(const char* path, struct stat& status) override;
    int linkStatus(const char* path, struct stat& status) override;
    int fileStatus(int file, struct stat& status) override;
    int access(const char* path, int mode) override;
    ssize_t readLink(const char* path, std::span<char> target) override;
    int changeOwner(int file, uid_t owner, gid_t group) override;
    int changeMode(int file, mode_t mode) override;
    ssize_t listAttributes(int file, std::span<char> names) override;
    ssize_t attribute(int file, const char* name, std::span<char> value) override;
    int setAttribute(int file, const char* name, std::span<const char> value) override;
    int rename(const char* from, const char* to) override;
    int unlink(const char* path) override;
    int makeFolder(const char* path, mode_t mode) override;

private:
    template <typename Result, typename Perform>
    Result call(const std::string& kind, const std::string& path, std::size_t count, const Perform& perform);
    std::optional<Fault> noteCall(const std::string& kind, const std::string& path);
    std::string pathOf(int file) const;

    SystemCalls& calls_;
    mutable std::mutex mutex_;
    std::vector<Fault> faults_;
    std::vector<Call> made_;
    std::map<std::string, int> countOfKind_;
    std::map<int, std::string> paths_;
};

} // namespace quelm::test
