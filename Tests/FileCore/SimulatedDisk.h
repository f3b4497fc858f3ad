#pragma once

#include "FileCore/SystemCalls.h"
#include "Tests/FileCore/SimulatedVolume.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quelm::test {

/// Calls on files that are nowhere but in memory, on a device that can lose its power at any moment:
///
///     SimulatedDisk disk;
///     disk.addFile("/datos/a.json", "before");
///     ... save with disk as the calls, or only begin to ...
///     for (std::uint32_t seed = 0; seed < 1000; ++seed) {
///         SimulatedDisk left(disk.afterPowerLoss(seed));
///         EXPECT_THAT(left.contents("/datos/a.json"), AnyOf("before", "after"));
///     }
///
/// What may be lost `SimulatedVolume` says. Together with `FaultySystemCalls` over it a procedure can be stopped at
/// each of its calls. The user is 1000, no root: permissions of owners count. Descriptors begin at 1000, so that none
/// is a real one by accident. For any thread.
class SimulatedDisk final : public SystemCalls {
public:
    SimulatedDisk() = default;
    explicit SimulatedDisk(SimulatedVolume volume) : volume_(std::move(volume)) {}

    /// What is there from the beginning, and survives. Folders above it come into being too.
    void addFolder(const std::string& path, mode_t mode = 0755);
    void addFile(const std::string& path, std::string_view bytes, mode_t mode = 0644);
    void addLink(const std::string& path, const std::string& target);
    /// Another name of a file.
    void addName(const std::string& path, const std::string& ofFile);

    /// Writes beyond that many bytes in all files together fail with ENOSPC, those that begin before it fall short.
    void setCapacity(std::size_t bytes) { capacity_ = bytes; }

    /// As a process sees them; absent when there is no such file.
    std::optional<std::string> contents(const std::string& path) const;
    std::optional<mode_t> mode(const std::string& path) const;
    /// Sorted.
    std::vector<std::string> names(const std::string& folder) const;
    int openCount() const;

    /// One of the states that are left when the power fails now; nothing is open there, nor locked.
    SimulatedVolume afterPowerLoss(std::uint32_t seed) const;

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
    using NodeID = SimulatedVolume::NodeID;
    using Kind = SimulatedVolume::Kind;
    enum class LastLink : std::uint8_t { follow, keep };

    // The last name of a path in its folder.
    struct Place {
        NodeID folder = SimulatedVolume::root;
        std::string name; // empty for the root
        std::optional<NodeID> node;
    };
    struct OpenFile {
        NodeID node = SimulatedVolume::root;
        int flags = 0;
        std::size_t offset = 0;
    };

    // Absent with errno set, when a folder on the way is not there.
    std::optional<Place> resolve(const std::string& path, LastLink lastLink, int depth = 0) const;
    // The node as well must be there.
    std::optional<NodeID> resolveNode(const std::string& path, LastLink lastLink) const;
    bool isAllowed(NodeID node, mode_t ownerBits) const;
    OpenFile* openFile(int file);
    bool isLockedByAnother(int file, NodeID node) const;
    int fill(NodeID node, struct stat& status) const;
    Place placeToAdd(const std::string& path);

    mutable std::mutex mutex_;
    SimulatedVolume volume_;
    std::map<int, OpenFile> open_;
    std::map<NodeID, int> locks_; // to the descriptor that holds it
    int nextFile_ = 1000;
    std::size_t capacity_ = static_cast<std::size_t>(-1);
};

} // namespace quelm::test
