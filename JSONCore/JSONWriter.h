#pragma once

#include "JSONCore/SortedMembers.h"
#include "JSONCore/Storage/TreeStorage.h"
#include "TextCore/SharedText.h"

#include <string>
#include <string_view>
#include <vector>

namespace quelm {

/// The state of one serialisation: writes one value, and all in it, and is then done.
class JSONWriter {
public:
    /// An empty `indentUnit` makes the output compact.
    JSONWriter(const TreeStorage& storage, std::string_view indentUnit, bool sortKeys);

    SharedText write(NodeID start);

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
        bool isFirst;
    };

    bool isPretty() const { return !indentUnit_.empty(); }
    bool hasNext(const Frame& frame) const;
    NodeID takeNext(Frame& frame) const;

    void writeValue(const NodeRecord& record);
    void openContainer(const NodeRecord& record);
    void closeContainer();
    void writeString(TextRef text);
    void writeEscaped(std::string_view text);
    void writeLineBreak(std::size_t depth);
    /// Between as many quotation marks at each end, 0 or 1.
    void writePlain(TextRef text, std::size_t quotes);

    const TreeStorage& storage_;
    std::string_view indentUnit_;
    bool sortKeys_;
    TextBuilder output_;
    std::vector<Frame> open_;
    std::vector<NodeID> sorted_;
    MemberSorter sorter_;
    /// A line feed and the indentation of many levels.
    std::string lineBreak_;
};

} // namespace quelm
