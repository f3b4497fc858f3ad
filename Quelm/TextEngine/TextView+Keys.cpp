#include "Quelm/TextEngine/TextBoundaries.h"
#include "Quelm/TextEngine/TextView.h"

#include <QKeyEvent>

namespace quelm {

namespace {

bool isEditing(const TextKeyMeaning& meaning) {
    const auto* command = std::get_if<TextCommand>(&meaning);
    return command ? isEdit(*command) : std::holds_alternative<QString>(meaning);
}

} // namespace

void TextView::keyPressEvent(QKeyEvent* event) {
    const auto meaning = usedMeaning(*event);
    // What cannot be typed at the moment is not meant for whatever is around the text either.
    event->setAccepted(meaning || isRefused(*event));
    if (meaning)
        perform(*meaning);
}

/// Whether the key would edit a text that is only read.
bool TextView::isRefused(const QKeyEvent& event) const {
    const auto meaning = isReadOnly() ? meaningOf(event) : std::nullopt;
    return meaning && isEditing(*meaning);
}

/// What the key means here and now; absent for keys that others may use.
std::optional<TextKeyMeaning> TextView::usedMeaning(const QKeyEvent& event) const {
    auto meaning = meaningOf(event);
    if (!meaning || (isReadOnly() && isEditing(*meaning)))
        return std::nullopt;
    if (const auto* command = std::get_if<TextCommand>(&*meaning)) {
        const bool isZoom =
            *command == TextCommand::zoomIn || *command == TextCommand::zoomOut || *command == TextCommand::resetZoom;
        if (isZoom && !isZoomable_)
            return std::nullopt;
    }
    if (const auto* text = std::get_if<QString>(&*meaning))
        if (tabChangesFocus_ && *text == u'\t')
            return std::nullopt;
    return meaning;
}

void TextView::perform(const TextKeyMeaning& meaning) {
    finishComposing();
    if (const auto* text = std::get_if<QString>(&meaning))
        editing_->type(*text);
    else if (const auto* command = std::get_if<TextCommand>(&meaning))
        perform(*command);
    else
        move(std::get<TextMove>(meaning));
}

void TextView::move(TextMove move) {
    const TextSelection selection = editing_->selection();
    const bool collapses = move.selection == TextMove::Selection::collapses;
    const double x = columnX_.value_or(layout_->x(selection.caret));
    const qint64 page = std::max<qint64>(1, scrolling_->rowsAPage() - 1);

    qint64 caret = navigation().destination(move.motion, selection.caret, {x, page});
    // An arrow first leaves the selection, on its side.
    if (collapses && !selection.isEmpty() && move.motion == TextMotion::nextCharacter)
        caret = selection.range().end();
    if (collapses && !selection.isEmpty() && move.motion == TextMotion::previousCharacter)
        caret = selection.range().location;

    // A page goes by with what shows it, so that the caret stays where it is in the viewport.
    if (move.motion == TextMotion::nextPage)
        scrolling_->scrollRows(page);
    if (move.motion == TextMotion::previousPage)
        scrolling_->scrollRows(-page);
    editing_->setSelection({collapses ? caret : selection.anchor, caret});
    if (keepsToColumn(move.motion))
        columnX_ = x;
    caretBlinking_.restart();
    revealCaret();
    if (!collapses)
        publishPrimarySelection();
}

void TextView::revealCaret() {
    const qint64 caret = editing_->selection().caret;
    const qint64 row = layout_->caretRow(caret);
    const double x = layout_->caretX(caret);
    scrolling_->reveal(row, row, x, x);
}

void TextView::perform(TextCommand command) {
    switch (command) {
    case TextCommand::copy:
        return copy();
    case TextCommand::selectAll:
        return selectAll();
    case TextCommand::zoomIn:
        return zoomIn();
    case TextCommand::zoomOut:
        return zoomOut();
    case TextCommand::resetZoom:
        return setZoom(1);
    case TextCommand::scrollRowUp:
        return scrolling_->scrollRows(-1);
    case TextCommand::scrollRowDown:
        return scrolling_->scrollRows(1);
    case TextCommand::cut:
        return cut();
    case TextCommand::paste:
        return paste();
    case TextCommand::undo:
        return undo();
    case TextCommand::redo:
        return redo();
    case TextCommand::typeLineFeed:
        return editing_->typeLineFeed();
    case TextCommand::toggleOverwriting:
        editing_->setOverwriting(!editing_->isOverwriting());
        return viewport()->update();
    default:
        return performDeletion(command);
    }
}

void TextView::performDeletion(TextCommand command) {
    const TextRope& text = storage_->text();
    const qint64 caret = editing_->selection().caret;
    switch (command) {
    case TextCommand::deleteNextCharacter:
        return editing_->deleteSelectionOr(boundaries::nextCluster(text, caret));
    case TextCommand::deletePreviousCharacter:
        return editing_->deleteSelectionOr(boundaries::backspaceStart(text, caret));
    case TextCommand::deleteToNextWord:
        return editing_->deleteSelectionOr(boundaries::nextWord(text, caret));
    case TextCommand::deleteToPreviousWord:
        return editing_->deleteSelectionOr(boundaries::previousWord(text, caret));
    case TextCommand::deleteToLineEnd: {
        const qint64 end = navigation().destination(TextMotion::lineEnd, caret, {});
        return editing_->deleteSelectionOr(end > caret ? end : boundaries::nextCluster(text, caret));
    }
    case TextCommand::deleteToLineStart: {
        const qint64 start = navigation().destination(TextMotion::lineStart, caret, {});
        return editing_->deleteSelectionOr(start < caret ? start : boundaries::backspaceStart(text, caret));
    }
    case TextCommand::deleteLine:
        return deleteLine();
    default:
        return;
    }
}

void TextView::deleteLine() {
    const TextRange line = storage_->lineRange(selectedRange());
    if (!line.isEmpty())
        editing_->replace(line, {}, tr("Borrar"));
}

} // namespace quelm
