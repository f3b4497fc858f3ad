#include "Quelm/TextEditor/TextSearch.h"

#include "Quelm/TextEditor/MatchMarks.h"
#include "Quelm/TextEditor/SearchRanges.h"
#include "Quelm/TextEngine/TextView.h"

#include <algorithm>
#include <utility>

namespace quelm {

namespace {

/// How far a match is looked for on the main thread, in UTF-16 units.
constexpr qint64 nearby = qint64{128} << 10;

constexpr int progressInterval = 200; // milliseconds

ByteRange whole(const TextRope& text) {
    return {0, text.byteCount()};
}

} // namespace

TextSearch::TextSearch(TextView& view, QObject* parent) : QObject(parent), view_(&view) {
    pool_.setMaxThreadCount(2);
    editPause_.setSingleShot(true);
    editPause_.setInterval(pauseAfterEdit);
    progressTicks_.setInterval(progressInterval);
    connect(&editPause_, &QTimer::timeout, this, &TextSearch::startCounting);
    connect(&progressTicks_, &QTimer::timeout, this, [this] {
        isCountingLong_ = true;
        Q_EMIT changed();
    });
    connect(&view.textStorage(), &TextStorage::didProcessEditing, this, &TextSearch::noteEdit);
    connect(&view, &TextView::visibleAreaDidChange, this, &TextSearch::scheduleMarks);
    connect(&view, &TextView::selectionDidChange, this, &TextSearch::changed);
}

TextSearch::~TextSearch() = default;

void TextSearch::setQuery(const SearchQuery& query) {
    if (query == query_)
        return;
    query_ = query;
    pattern_ = query.pattern();
    jump_.cancel();
    index_.reset();
    scheduleMarks();
    startCounting();
}

void TextSearch::setFollowing(bool follows) {
    if (isFollowing_ == follows)
        return;
    isFollowing_ = follows;
    scheduleMarks();
    startCounting();
}

// Finding.

void TextSearch::findNext() {
    if (!view_)
        return;
    view_->finishComposing();
    start(Direction::forward, Occasion::step, view_->selectedRange().end());
}

void TextSearch::findPrevious() {
    if (!view_)
        return;
    view_->finishComposing();
    start(Direction::backward, Occasion::step, view_->selectedRange().location);
}

void TextSearch::findWhileTyping() {
    if (!view_)
        return;
    view_->finishComposing();
    if (typingResult_ != view_->selectedRange())
        typingOrigin_ = view_->selectedRange().location;
    typingResult_ = view_->selectedRange();
    start(Direction::forward, Occasion::typing, typingOrigin_);
}

void TextSearch::start(Direction direction, Occasion occasion, qint64 offset) {
    jump_.cancel();
    const TextRope& text = view_->textStorage().text();
    const Jump jump{direction, occasion, text.summaryBeforeUTF16(std::min<qint64>(offset, text.utf16Count())).bytes};
    if (!pattern_)
        finish(jump, std::nullopt);
    else if (isIndexPresent())
        finish(jump, findInIndex(jump));
    else if (const auto match = findNear(jump))
        finish(jump, match);
    else
        startFinding(jump);
}

std::optional<ByteRange> TextSearch::findInIndex(const Jump& jump) const {
    const bool isForward = jump.direction == Direction::forward;
    const auto match = isForward ? index_->firstFrom(jump.place) : index_->lastBefore(jump.place);
    if (match)
        return match->range;
    if (!wraps_ || index_->count() == 0)
        return std::nullopt;
    return index_->match(isForward ? 0 : index_->count() - 1);
}

std::optional<ByteRange> TextSearch::findNear(const Jump& jump) const {
    const TextRope& text = view_->textStorage().text();
    const qint64 offset = text.summaryBefore(jump.place).utf16;
    if (jump.direction == Direction::forward)
        return firstMatch(
            text, *pattern_,
            byteRange(text, TextRange::between(offset, std::min<qint64>(offset + nearby, text.utf16Count()))));
    return lastMatch(text, *pattern_,
                     byteRange(text, TextRange::between(std::max<qint64>(offset - nearby, 0), offset)));
}

void TextSearch::startFinding(const Jump& jump) {
    const auto work = [text = view_->textStorage().text(), pattern = *pattern_, jump,
                       wraps = wraps_](const std::stop_token& stop) {
        const bool isForward = jump.direction == Direction::forward;
        auto match = isForward ? firstMatch(text, pattern, ByteRange::between(jump.place, text.byteCount()), stop)
                               : lastMatch(text, pattern, ByteRange::between(0, jump.place), stop);
        if (!match && wraps)
            match =
                isForward ? firstMatch(text, pattern, whole(text), stop) : lastMatch(text, pattern, whole(text), stop);
        return match;
    };
    jump_ = startInBackground(pool_, this, work,
                              [this, jump](std::optional<ByteRange> match) { finishFinding(jump, match); });
}

void TextSearch::finishFinding(const Jump& jump, std::optional<ByteRange> match) {
    // Whoever composes is typing: as after an edit, the caret stays there.
    if (view_ && !view_->isComposing())
        finish(jump, match);
}

void TextSearch::finish(const Jump& jump, std::optional<ByteRange> match) {
    if (!view_)
        return;
    std::optional<TextRange> range;
    if (match)
        range = textRange(view_->textStorage().text(), *match);
    else if (jump.occasion == Occasion::typing)
        range = TextRange{std::min(typingOrigin_, view_->textStorage().length()), 0};

    if (range) {
        view_->setSelectedRange(*range);
        view_->scrollRangeToVisible(*range);
    }
    if (match)
        view_->showFindIndicator(*range);
    typingResult_ = jump.occasion == Occasion::typing ? range : std::nullopt;

    if (match)
        Q_EMIT found(*range);
    else
        Q_EMIT notFound();
}

// Marking and counting.

std::optional<qint64> TextSearch::count() const {
    return isIndexPresent() ? std::optional(index_->count()) : std::nullopt;
}

std::optional<qint64> TextSearch::currentNumber() const {
    if (!isIndexPresent() || !isSelectionMatch())
        return std::nullopt;
    const auto match = index_->matchAt(byteRange(index_->text(), view_->selectedRange()));
    return match ? std::optional(match->number + 1) : std::nullopt;
}

bool TextSearch::isSelectionMatch() const {
    if (!view_ || !pattern_)
        return false;
    const TextRope& text = view_->textStorage().text();
    return isMatch(text, *pattern_, byteRange(text, view_->selectedRange()));
}

std::optional<double> TextSearch::countingProgress() const {
    if (!isCountingLong_ || !counting_.isRunning() || !view_)
        return std::nullopt;
    const auto done = static_cast<double>(progress_->bytes.load(std::memory_order_relaxed));
    return std::min(done / static_cast<double>(view_->textStorage().text().byteCount()), 1.0);
}

bool TextSearch::isIndexPresent() const {
    return view_ && index_ && index_->text().isSameValue(view_->textStorage().text());
}

void TextSearch::noteEdit(EditedMask mask) {
    if (mask != EditedMask::characters)
        return;
    // Whoever types on wants to stay there.
    jump_.cancel();
    if (!isFollowing_ || !pattern_)
        return;
    scheduleMarks();
    stopCounting();
    editPause_.start();
}

void TextSearch::startCounting() {
    stopCounting();
    if (!isFollowing_ || !pattern_ || !view_) {
        index_.reset();
    } else if (const TextRope& text = view_->textStorage().text(); !isIndexPresent()) {
        if (text.byteCount() <= longestImmediate) {
            index_ = MatchIndex::build(text, *pattern_);
        } else {
            progress_ = std::make_shared<SearchProgress>();
            progressTicks_.start();
            const auto work = [text, pattern = *pattern_, progress = progress_](const std::stop_token& stop) {
                return MatchIndex::build(text, pattern, stop, progress.get());
            };
            counting_ = startInBackground(pool_, this, work,
                                          [this](std::optional<MatchIndex> index) { takeIndex(std::move(index)); });
        }
    }
    Q_EMIT changed();
}

void TextSearch::takeIndex(std::optional<MatchIndex> index) {
    stopCounting();
    index_ = std::move(index);
    scheduleMarks();
    Q_EMIT changed();
}

void TextSearch::stopCounting() {
    counting_.cancel();
    editPause_.stop();
    progressTicks_.stop();
    isCountingLong_ = false;
}

void TextSearch::scheduleMarks() {
    if (std::exchange(areMarksDue_, true))
        return;
    // After the view has followed an edit, and before it is painted.
    QMetaObject::invokeMethod(this, &TextSearch::updateMarks, Qt::QueuedConnection);
}

void TextSearch::updateMarks() {
    areMarksDue_ = false;
    if (!view_)
        return;
    if (isFollowing_ && pattern_)
        view_->setMarkedRanges(matchesNearViewport(*view_, *pattern_, index_ ? &*index_ : nullptr));
    else
        view_->setMarkedRanges({});
}

} // namespace quelm
