#pragma once

#include "JSONCore/SortedMembers.h"
#include "JSONCore/Storage/TreeStorage.h"
#include "TextCore/SharedText.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// The state of one serialisation: writes one value, and all in it, and is then done.
class JSONWriter {
public:
    /// An empty `indentUnit` makes the output compact.
    JSONWriter(const TreeStorage& storage, std::string_view indentUnit, bool sortKeys);

    /// About how many bytes the output takes, rather more than fewer. O(1).
    std::size_t expectedSize(NodeID start) const;

    /// The whole output.
    SharedText write(NodeID start);

    /// The output in pieces of about a megabyte, given to `take` one after the other; each is valid during its call.
    /// What `take` throws ends the writing.
    void write(NodeID start, const std::function<void(std::string_view)>& take);

private:
    /// An open container that has children.
    struct Frame {
        ChildList::Iterator next;
        ChildList::Iterator end;
        /// When members are sorted: their range in `sorted_` instead.
        std::size_t firstSorted;
        std::size_t nextSorted;
        std::size_t endSorted;
        bool isObject;

        bool hasNext() const { return nextSorted != endSorted || !(next == end); }
    };

    bool isPretty() const { return !indentUnit_.empty(); }
    void writeInto(TextBuilder output, NodeID start);

    // Each writes at `at`, growing the output if need be, and returns where the next byte goes.

    char* needRoom(char* at, std::size_t count);
    char* makeRoom(char* at, std::size_t count);
    char* writeMemberOrElement(char* at, NodeID id, bool hasKey);
    char* writeValue(char* at, const NodeRecord& record);
    char* openContainer(char* at, const NodeRecord& record);
    char* closeContainer(char* at);
    char* writeString(char* at, TextRef text);
    char* writeEscaped(char* at, std::string_view text);
    char* writeLineBreak(char* at, std::size_t depth);

    const TreeStorage& storage_;
    std::string_view indentUnit_;
    bool sortKeys_;
    TextBuilder output_;
    /// Where the room in `output_` ends.
    char* limit_ = nullptr;
    /// Who takes the output in pieces; null when it is wanted whole.
    const std::function<void(std::string_view)>* take_ = nullptr;
    std::vector<Frame> open_;
    std::vector<NodeID> sorted_;
    MemberSorter sorter_;
    /// A line feed and the indentation of many levels.
    std::string lineBreak_;
};

} // namespace quelm
