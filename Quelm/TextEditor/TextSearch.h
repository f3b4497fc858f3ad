#pragma once

#include "Quelm/Foundation/BackgroundTask.h"
#include "Quelm/TextEditor/SearchQuery.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "TextCore/MatchIndex.h"

#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <optional>

namespace quelm {

class TextView;

/// The search in the text of one view: selects and shows one match after the other, and, while it follows the text,
/// marks those near the viewport and counts all of them. Long searches run on other threads over snapshots of the text,
/// and never keep the main thread longer than some milliseconds; what was found in a text that has changed since is
/// dropped. Offsets are UTF-16 units. For the main thread.
class TextSearch : public QObject {
    Q_OBJECT

public:
    /// `view` is held weakly; the search is at rest once it is gone.
    explicit TextSearch(TextView& view, QObject* parent = nullptr);
    ~TextSearch() override;

    const SearchQuery& query() const { return query_; }
    void setQuery(const SearchQuery& query);
    /// Absent while there is nothing to look for.
    const std::optional<SearchPattern>& pattern() const { return pattern_; }

    /// Whether a search that comes to an end of the text goes on from the other one (at first).
    bool wraps() const { return wraps_; }
    void setWraps(bool wraps) { wraps_ = wraps; }

    /// Whether matches are marked and counted (not at first).
    bool isFollowing() const { return isFollowing_; }
    void setFollowing(bool follows);

    /// Each selects the match and shows it, at once where one is near or all are known, else as soon as it is found. An
    /// edit, an input method that begins to compose, or another call gives up the search that is under way. What is
    /// being composed when they are called is committed first.
    void findNext();
    void findPrevious();
    /// The first match from where the selection was before the query was typed: the caret goes back there without one.
    void findWhileTyping();

    /// Whether a match is still being looked for.
    bool isFinding() const { return jump_.isRunning(); }
    void stopFinding() { jump_.cancel(); }

    /// The number of matches in the present text, absent until it is known.
    std::optional<qint64> count() const;
    /// The number, from 1, of the match that is selected.
    std::optional<qint64> currentNumber() const;
    bool isSelectionMatch() const;

    /// How far the count of a long text has come, from 0 to 1; absent for the first moment and when nothing is counted.
    std::optional<double> countingProgress() const;

    /// Longer texts are counted on another thread, and after edits only once these have paused.
    static constexpr qint64 longestImmediate = qint64{256} << 10; // bytes
    static constexpr int pauseAfterEdit = 150;                    // milliseconds

Q_SIGNALS:
    /// The query, the count, its progress or the number of the selected match may be others.
    void changed();
    void found(quelm::TextRange range);
    void notFound();

private:
    enum class Direction : std::uint8_t { forward, backward };
    enum class Occasion : std::uint8_t { step, typing };
    struct Jump {
        Direction direction;
        Occasion occasion;
        /// In bytes: matches begin here or later, or end here or earlier.
        std::int64_t place;
    };

    void start(Direction direction, Occasion occasion, qint64 offset);
    std::optional<ByteRange> findInIndex(const Jump& jump) const;
    std::optional<ByteRange> findNear(const Jump& jump) const;
    void startFinding(const Jump& jump);
    void finishFinding(const Jump& jump, std::optional<ByteRange> match);
    void finish(const Jump& jump, std::optional<ByteRange> match);

    void noteEdit(EditedMask mask);
    void startCounting();
    void takeIndex(std::optional<MatchIndex> index);
    void stopCounting();
    void scheduleMarks();
    void updateMarks();
    bool isIndexPresent() const;

    QPointer<TextView> view_;
    SearchQuery query_;
    std::optional<SearchPattern> pattern_;
    bool wraps_ = true;
    bool isFollowing_ = false;
    bool areMarksDue_ = false;

    /// Where the selection was before the query was typed, and what typing made of it.
    qint64 typingOrigin_ = 0;
    std::optional<TextRange> typingResult_;

    std::optional<MatchIndex> index_;
    std::shared_ptr<SearchProgress> progress_;
    bool isCountingLong_ = false;
    QTimer editPause_;
    QTimer progressTicks_;

    /// A thread for the count and one for the next match. The tasks are cancelled before their threads are waited for.
    QThreadPool pool_;
    BackgroundTask counting_;
    BackgroundTask jump_;
};

} // namespace quelm
