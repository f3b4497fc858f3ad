#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace quelm::test {

/// What a device in memory holds: files, folders and symbolic links, each in the state that processes see and in the
/// one that is known to survive a loss of power. What lies between the two is kept as a list of changes, of which any
/// may be lost that POSIX allows to be. A value.
///
/// 1. What `synchronize` was called for survives: of a file its bytes and attributes, of a folder its names. A file's
///    own synchronization does not make its name survive, and a folder's not what its files hold.
/// 2. Changes of names are lost from any one on, or in any combination; a rename is one change, lost as a whole or not
///    at all, also between folders.
/// 3. Bytes that were written and not synchronized are lost by sectors, in any combination; what was known to survive
/// in
///    a sector does. The length may be any that the file had between, with zeros for what is lost.
class SimulatedVolume {
public:
    using NodeID = int;
    static constexpr NodeID root = 0;
    static constexpr std::size_t sectorSize = 512;

    enum class Kind : std::uint8_t { file, folder, link };
    struct Attributes {
        mode_t mode = 0;
        uid_t owner = 1000;
        gid_t group = 1000;
        std::map<std::string, std::string> extended;
        friend bool operator==(const Attributes&, const Attributes&) = default;
    };

    SimulatedVolume();

    NodeID addNode(Kind kind, mode_t mode);
    Kind kind(NodeID node) const { return at(node).kind; }
    const Attributes& attributes(NodeID node) const { return at(node).attributes; }
    void setAttributes(NodeID node, Attributes attributes) { at(node).attributes = std::move(attributes); }

    /// Of a file, or the target of a link.
    const std::string& bytes(NodeID node) const { return at(node).bytes; }
    /// Grows with every change of the bytes anywhere on the volume.
    std::int64_t timeOfChange(NodeID node) const { return at(node).time; }
    void write(NodeID file, std::size_t offset, std::string_view bytes);
    void truncate(NodeID file, std::size_t length);

    const std::map<std::string, NodeID>& names(NodeID folder) const { return at(folder).names; }
    std::optional<NodeID> find(NodeID folder, const std::string& name) const;
    int linkCount(NodeID node) const;
    void setName(NodeID folder, const std::string& name, NodeID node);
    void removeName(NodeID folder, const std::string& name);
    void moveName(NodeID from, const std::string& fromName, NodeID to, const std::string& toName);

    /// The sum of the bytes of all files that have a name.
    std::size_t usedBytes() const;

    /// As fsync(2) does for a file or a folder; the other leaves out the attributes.
    void synchronize(NodeID node);
    void synchronizeData(NodeID node);
    /// Everything.
    void synchronizeAll();

    /// One of the states that a loss of power now may leave; the same for the same seed.
    SimulatedVolume afterPowerLoss(std::uint32_t seed) const;

private:
    // Of a file's bytes: written there, or cut to that length (when there are none).
    struct DataChange {
        std::size_t offset = 0;
        std::optional<std::string> bytes;
    };
    struct Node {
        Kind kind = Kind::file;
        Attributes attributes;
        Attributes safeAttributes;
        std::int64_t time = 0;
        std::string bytes;
        std::string safeBytes;
        std::vector<DataChange> dataChanges;
        std::map<std::string, NodeID> names;
        std::map<std::string, NodeID> safeNames;
    };
    // What a name stands for from now on.
    struct NameChange {
        NodeID folder = root;
        std::string name;
        std::optional<NodeID> node;

        bool isSameName(const NameChange& other) const { return folder == other.folder && name == other.name; }
    };
    // Those that are lost or kept together.
    using NameChanges = std::vector<NameChange>;

    Node& at(NodeID node) { return nodes_.at(static_cast<std::size_t>(node)); }
    const Node& at(NodeID node) const { return nodes_.at(static_cast<std::size_t>(node)); }
    void apply(NameChanges changes);
    static void apply(const DataChange& change, std::string& bytes);
    void keepNames(const NameChanges& changes);
    std::string bytesAfterPowerLoss(const Node& file, std::mt19937& random) const;

    std::vector<Node> nodes_;
    std::vector<NameChanges> nameChanges_;
    std::int64_t clock_ = 0;
};

} // namespace quelm::test
