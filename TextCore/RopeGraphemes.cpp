#include "TextCore/RopeGraphemes.h"

#include "TextCore/Check.h"
#include "TextCore/Graphemes.h"

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>

// A boundary between clusters depends on what is before it and on the character after it, so the walk can read a long
// text in windows: all clusters of a window but the last, which may go on after it, are clusters of the text. And
// between two ASCII characters other than CR LF there is always a boundary, so where the sums of the text say that a
// stretch has nothing else, its clusters need not be read at all.

namespace quelm {

namespace {

// All in UTF-16 units, because those are places between characters that can be asked for without reading.

/// The least stretch that is asked about before it is read: asking costs as much as reading about as many bytes.
constexpr std::int64_t leastSkip = 4096;

/// A window is read at first so long, if so many clusters are wanted, and longer where a single cluster fills it.
constexpr std::int64_t leastWindow = 256;
constexpr std::int64_t usualWindow = std::int64_t{32} << 10;

/// How many bytes at the end of a window are searched for a boundary that needs no counting.
constexpr std::size_t searchedForCut = 256;

/// The clusters of a window, less a last one that may go on after it.
std::string_view withoutOpenCluster(std::string_view window) {
    if (const std::size_t cut = graphemes::lastSureBoundary(window, searchedForCut))
        return window.substr(0, cut);
    return graphemes::prefix(window, graphemes::count(window) - 1);
}

/// A walk over the clusters of a stretch from its start. Between two steps it stands at a boundary.
class RopeClusterWalk {
public:
    RopeClusterWalk(const TextRope& text, ByteRange range)
        : text_(text), place_(text.summaryBefore(range.location)), end_(text.summaryBefore(range.end())) {}

    std::int64_t position() const { return place_.bytes; }
    std::int64_t clusters() const { return clusters_; }

    /// Goes on until it has passed `limit` clusters, the stretch ends, or it is stopped.
    void advance(std::int64_t limit, const std::stop_token& stop) {
        limit_ = limit;
        while (!isDone() && !stop.stop_requested())
            if (!skipASCII())
                readWindow();
    }

private:
    bool isDone() const { return place_.bytes == end_.bytes || clusters_ == limit_; }
    std::int64_t clustersWanted() const { return limit_ - clusters_; }
    std::int64_t unitsLeft() const { return end_.utf16 - place_.utf16; }

    /// Whether so many units from here on are as many clusters, but for what may join the last one.
    bool isSimple(std::int64_t units) const {
        const TextSummary passed = text_.summaryBeforeUTF16(place_.utf16 + units) - place_;
        // Units within a surrogate pair are not passed.
        return passed.bytes == units && passed.utf16 == units && passed.carriageReturns == 0;
    }

    /// Passes ASCII characters without reading them. False when other characters are near.
    bool skipASCII() {
        // One character more than the clusters wanted shows where the last of them ends.
        const std::int64_t most = clustersWanted() < unitsLeft() ? clustersWanted() + 1 : unitsLeft();
        std::int64_t simple = std::min(most, leastSkip);
        if (!isSimple(simple))
            return false;
        std::int64_t other = most + 1;
        while (simple < most && other > most) {
            const std::int64_t tried = simple < most / 2 ? 2 * simple : most;
            (isSimple(tried) ? simple : other) = tried;
        }
        while (other - simple > leastSkip) {
            const std::int64_t tried = simple + (other - simple) / 2;
            (isSimple(tried) ? simple : other) = tried;
        }
        const std::int64_t clusters = std::min(simple == unitsLeft() ? simple : simple - 1, clustersWanted());
        place_ = text_.summaryBeforeUTF16(place_.utf16 + clusters);
        clusters_ += clusters;
        return true;
    }

    /// Passes at least one cluster by reading.
    void readWindow() {
        std::int64_t units = std::clamp(clustersWanted(), leastWindow, usualWindow);
        while (!readWindow(std::min(units, unitsLeft())))
            units *= 2;
    }

    /// Passes the clusters wanted among those that end within so many units. False when there are none.
    bool readWindow(std::int64_t units) {
        const TextSummary windowEnd = text_.summaryBeforeUTF16(place_.utf16 + units);
        const std::string bytes = text_.bytes(ByteRange::between(place_.bytes, windowEnd.bytes));
        std::string_view passed = bytes;
        if (windowEnd.bytes != end_.bytes)
            passed = withoutOpenCluster(bytes);
        std::int64_t clusters = graphemes::count(passed);
        if (clusters > clustersWanted()) {
            clusters = clustersWanted();
            passed = graphemes::prefix(passed, clusters);
        }
        place_ = text_.summaryBefore(place_.bytes + static_cast<std::int64_t>(passed.size()));
        clusters_ += clusters;
        return clusters > 0;
    }

    const TextRope& text_;
    TextSummary place_;
    TextSummary end_;
    std::int64_t clusters_ = 0;
    std::int64_t limit_ = 0;
};

} // namespace

std::int64_t clusterCount(const TextRope& text, ByteRange range) {
    RopeClusterWalk walk(text, range);
    walk.advance(std::numeric_limits<std::int64_t>::max(), {});
    return walk.clusters();
}

std::int64_t offsetAfterClusters(const TextRope& text, ByteRange range, std::int64_t clusters,
                                 const std::stop_token& stop) {
    require(clusters >= 0, "a number of clusters is not negative");
    RopeClusterWalk walk(text, range);
    walk.advance(clusters, stop);
    return walk.position();
}

} // namespace quelm
