#include "Quelm/TextEngine/TextEditing.h"

#include "Quelm/TextEngine/SelectionFollowing.h"
#include "Quelm/TextEngine/TextBoundaries.h"
#include "TextCore/Check.h"
#include "TextCore/Graphemes.h"

#include <QMetaObject>
#include <QStringView>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quelm {

namespace {

qint64 systemTime() {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

TextSelection wholeOf(TextRange range) {
    return {.anchor = range.location, .caret = range.end()};
}

qint64 placeBetweenCharacters(const TextRope& text, qint64 offset) {
    return text.summaryBeforeUTF16(std::clamp<qint64>(offset, 0, text.utf16Count())).utf16;
}

bool isOneCluster(const TextRope& text, qint64 caret, qint64 otherEnd) {
    return otherEnd < caret ? otherEnd >= boundaries::previousCluster(text, caret)
                            : otherEnd <= boundaries::nextCluster(text, caret);
}

} // namespace

TextEditing::TextEditing(std::shared_ptr<TextStorage> storage, QObject* parent)
    : QObject(parent), storage_(std::move(storage)), followedText_(storage_->text()), clock_(systemTime) {
    connect(storage_.get(), &TextStorage::didProcessEditing, this, &TextEditing::followEdit);
}

TextEditing::~TextEditing() = default;

void TextEditing::setUndoManager(UndoManager* manager) {
    if (manager == undoManager_)
        return;
    endTypingStep();
    if (undoManager_)
        undoManager_->disconnect(this);
    undoManager_ = manager;
    if (manager)
        connect(manager, &UndoManager::willUndoOrRedo, this, &TextEditing::endTypingStep);
}

UndoManager* TextEditing::undoManager() const {
    return undoManager_;
}

void TextEditing::setReadOnly(bool readOnly) {
    if (isReadOnly_ == readOnly)
        return;
    endTypingStep();
    isReadOnly_ = readOnly;
}

void TextEditing::setClock(std::function<qint64()> clock) {
    clock_ = std::move(clock);
}

// The selection.

void TextEditing::setSelection(TextSelection selection) {
    const TextRope& text = storage_->text();
    selection = {placeBetweenCharacters(text, selection.anchor), placeBetweenCharacters(text, selection.caret)};
    if (selection == selection_)
        return;
    endTypingStep();
    selection_ = selection;
    Q_EMIT selectionDidChange();
}

QString TextEditing::selectedText() const {
    return storage_->string(selection_.range());
}

void TextEditing::followEdit(EditedMask mask, TextRange range, qint64 delta) {
    if (mask != EditedMask::characters)
        return;
    const TextRope before = std::exchange(followedText_, storage_->text());
    const TextSelection followed = followedSelection(selection_, before, followedText_, range, delta);
    const bool differs = followed != selection_;
    selection_ = followed;
    if (phase_ == Phase::changing)
        return;

    endTypingStep();
    if (!differs || std::exchange(hasSelectionNotice_, true))
        return;
    const auto announce = [this] {
        hasSelectionNotice_ = false;
        Q_EMIT selectionDidChange();
    };
    QMetaObject::invokeMethod(this, announce, Qt::QueuedConnection);
}

void TextEditing::announceSelectionUnless(const TextSelection& same) {
    if (selection_ != same)
        Q_EMIT selectionDidChange();
}

// What is inserted where.

TextRange TextEditing::normalized(TextRange range) const {
    const TextRope& text = storage_->text();
    return TextRange::between(placeBetweenCharacters(text, range.location), placeBetweenCharacters(text, range.end()));
}

TextRope TextEditing::insertable(QString text) const {
    if (isSingleLine_) {
        text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
        text.replace(u'\n', u' ');
    }
    return TextRope::repairing(std::u16string_view(QStringView(text).utf16(), static_cast<std::size_t>(text.size())));
}

TextRange TextEditing::overwrittenRange(const TextRope& typed) const {
    TextRange range = selection_.range();
    if (!isOverwriting_ || !range.isEmpty() || typed.summary().lineFeeds > 0)
        return range;
    const TextRope& text = storage_->text();
    const qint64 endOfLine = storage_->lineContents(storage_->lineAt(range.location)).end();
    qint64 end = range.location;
    for (std::int64_t count = graphemes::count(typed.contiguous().view()); count > 0 && end < endOfLine; --count) {
        const qint64 next = boundaries::nextCluster(text, end);
        // A CR LF is one cluster and ends the line as a line feed does.
        if (next > endOfLine)
            break;
        end = next;
    }
    return TextRange::between(range.location, end);
}

QString TextEditing::lineEnding() const {
    const qint64 line = storage_->lineAt(selection_.range().location);
    // The line feed of the caret's line, or in the last line that of the one before.
    const qint64 ended = line + 1 < storage_->lineCount() ? line : line - 1;
    const qint64 end = ended < 0 ? 0 : storage_->lineContents(ended).end();
    const bool isAfterReturn = end > 0 && storage_->string({end - 1, 1}) == QStringLiteral("\r");
    return isAfterReturn ? QStringLiteral("\r\n") : QStringLiteral("\n");
}

QString TextEditing::indentation() const {
    constexpr qint64 longestIndentation = 4096;
    const qint64 place = selection_.range().location;
    const qint64 start = storage_->lineStart(storage_->lineAt(place));
    const QString before = storage_->string(TextRange::between(start, std::min(place, start + longestIndentation)));
    const auto isBlank = [](QChar unit) { return unit == u' ' || unit == u'\t'; };
    return QString(before.cbegin(), std::ranges::find_if_not(before, isBlank) - before.cbegin());
}

// Edits.

void TextEditing::type(const QString& text) {
    if (isReadOnly_ || text.isEmpty())
        return;
    QString typed = std::exchange(heldHalf_, {}) + text;
    QString half;
    if (typed.back().isHighSurrogate()) {
        half = typed.back();
        typed.chop(1);
    }
    if (!typed.isEmpty()) {
        const TextRope insertion = insertable(typed);
        insertTyped(insertion, overwrittenRange(insertion));
    }
    heldHalf_ = half;
}

void TextEditing::typeLineFeed() {
    if (isReadOnly_)
        return;
    insertTyped(insertable(isSingleLine_ ? QStringLiteral("\n") : lineEnding() + indentation()), selection_.range());
}

void TextEditing::insertTyped(const TextRope& text, TextRange range) {
    performTyping(TypingStep::Kind::inserting, replacementOf(range, text));
    if (text.summary().lineFeeds > 0)
        endTypingStep();
}

void TextEditing::deleteSelectionOr(qint64 otherEnd) {
    if (isReadOnly_)
        return;
    if (!selection_.isEmpty()) {
        performAlone(replacementOf(selection_.range(), {}), tr("Borrar"));
        return;
    }
    const qint64 end = placeBetweenCharacters(storage_->text(), otherEnd);
    const TextRange range = TextSelection{.anchor = selection_.caret, .caret = end}.range();
    if (range.isEmpty())
        return;
    const EditStep step = replacementOf(range, {});
    if (isOneCluster(storage_->text(), selection_.caret, end))
        performTyping(TypingStep::Kind::deleting, step);
    else
        performAlone(step, tr("Borrar"));
}

void TextEditing::paste(const QString& text) {
    if (!isReadOnly_ && !text.isEmpty())
        performAlone(replacementOf(selection_.range(), insertable(text)), tr("Pegar"));
}

void TextEditing::paste(const TextRope& text) {
    const auto string = [&text] {
        // QString's conversions would drop a leading byte-order mark.
        const std::u16string units = text.utf16({0, text.byteCount()});
        return QString(reinterpret_cast<const QChar*>(units.data()), static_cast<qsizetype>(units.size()));
    };
    if (isSingleLine_)
        paste(string());
    else if (!isReadOnly_ && !text.isEmpty())
        performAlone(replacementOf(selection_.range(), text), tr("Pegar"));
}

void TextEditing::cut() {
    if (!isReadOnly_ && !selection_.isEmpty())
        performAlone(replacementOf(selection_.range(), {}), tr("Cortar"));
}

void TextEditing::commitComposition(const QString& text, TextRange replaced) {
    TextRange range = normalized(replaced);
    const TextRange selected = selection_.range();
    if (range.isEmpty() && selected.location <= range.location && range.location <= selected.end())
        range = selected;
    if (isReadOnly_ || (text.isEmpty() && range.isEmpty()))
        return;
    performAlone(replacementOf(range, insertable(text)), tr("Escribir"));
}

void TextEditing::replace(TextRange range, const TextRope& replacement, const QString& name) {
    const TextRange replaced = normalized(range);
    if (isReadOnly_ || (replaced.isEmpty() && replacement.isEmpty()))
        return;
    EditStep step = replacementOf(replaced, replacement);
    step.selection.anchor = replaced.location;
    performAlone(step, name);
}

void TextEditing::move(TextRange range, qint64 target) {
    const TextRange moved = normalized(range);
    const qint64 place = placeBetweenCharacters(storage_->text(), target);
    require(place <= moved.location || place >= moved.end(), "a stretch is not moved into itself");
    if (isReadOnly_ || moved.isEmpty() || place == moved.location || place == moved.end())
        return;
    const TextRange arrived{place < moved.location ? place : place - moved.length, moved.length};
    performAlone({.replacements = {{moved, {}}, {{arrived.location, 0}, slice(storage_->text(), moved)}},
                  .selection = wholeOf(arrived),
                  .selectionBefore = wholeOf(moved)},
                 tr("Mover"));
}

void TextEditing::endTypingStep() {
    typingStep_ = nullptr;
    heldHalf_.clear();
}

} // namespace quelm
