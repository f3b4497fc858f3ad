#pragma once

#include "Quelm/TextEngine/TextRange.h"

#include <compare>
#include <list>
#include <map>
#include <memory>

namespace quelm {

/// Something laid out that is worth keeping: a short line, or a segment of a long one.
class LayoutPart {
public:
    LayoutPart() = default;
    LayoutPart(const LayoutPart&) = delete;
    LayoutPart& operator=(const LayoutPart&) = delete;
    virtual ~LayoutPart() = default;

    /// Attributes changed: colours that were kept are none any more.
    virtual void forgetColors() const = 0;
};

/// The parts that were asked about last. Parts are kept by line number; what an edit elsewhere does to the numbers
/// costs no more than the parts there are.
class LayoutCache {
public:
    /// Enough for the rows of a high screen, two segments each.
    static constexpr std::size_t capacity = 512;

    struct Key {
        qint64 line = 0;
        /// The number of a segment of the line, or `wholeLine`.
        qint64 segment = wholeLine;
        friend auto operator<=>(const Key&, const Key&) = default;
    };
    static constexpr qint64 wholeLine = -1;

    /// Null when there is none. O(log n), as is `insert`.
    std::shared_ptr<const LayoutPart> find(Key key);
    void insert(Key key, std::shared_ptr<const LayoutPart> part);
    int count() const { return static_cast<int>(parts_.size()); }

    void clear() { erase(parts_.begin(), parts_.end()); }
    void dropLine(qint64 line);

    /// Lines from `first` to `last` were edited and are as many more as `added` now. Of `first`, the segments before
    /// `keptSegments` stay.
    void noteEditedLines(qint64 first, qint64 last, qint64 added, qint64 keptSegments);
    void forgetColors(qint64 firstLine, qint64 lastLine) const;

private:
    /// Of the parts, the one that was used last first. Keys stay where they are as long as their parts are kept.
    using Uses = std::list<const Key*>;
    struct Entry {
        std::shared_ptr<const LayoutPart> part;
        Uses::iterator use;
    };
    using Parts = std::map<Key, Entry>;

    void erase(Parts::iterator first, Parts::iterator end);

    Parts parts_;
    Uses uses_;
};

} // namespace quelm
