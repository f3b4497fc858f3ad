#include "Quelm/TextEngine/TextBoundaries.h"
#include "Quelm/TextEngine/TextView.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QScopedValueRollback>

#include <algorithm>

namespace quelm {

namespace {

/// How much of the text on either side of the caret an input method gets to see.
constexpr qint64 surroundingUnits = 1024;

const QInputMethodEvent::Attribute* attribute(const QInputMethodEvent& event, QInputMethodEvent::AttributeType type) {
    const auto& all = event.attributes();
    const auto found = std::ranges::find(all, type, &QInputMethodEvent::Attribute::type);
    return found == all.end() ? nullptr : &*found;
}

} // namespace

void TextView::inputMethodEvent(QInputMethodEvent* event) {
    if (isReadOnly() || !isEnabled())
        return event->ignore();
    event->accept();
    if (isResettingInputMethod_)
        return;
    if (!event->commitString().isEmpty() || event->replacementLength() > 0) {
        // Without anything composed before it is a key's text by another way.
        const bool isTyped = !isComposing() && event->replacementLength() == 0;
        const TextRange replaced = replacedByCommit(*event);
        endComposition();
        if (isTyped)
            editing_->type(event->commitString());
        else
            editing_->commitComposition(event->commitString(), replaced);
    }
    if (const auto* moved = attribute(*event, QInputMethodEvent::Selection)) {
        const qint64 start = surroundingRange().location + moved->start;
        editing_->setSelection({start, start + moved->length});
    }
    showComposition(*event);
}

/// A composition takes the place of the selection, besides what the input method wants replaced around the caret.
TextRange TextView::replacedByCommit(const QInputMethodEvent& event) const {
    const TextRange selected = selectedRange();
    if (event.replacementLength() == 0)
        return selected;
    const qint64 start = std::clamp<qint64>(selected.location + event.replacementStart(), 0, storage_->length());
    const qint64 end = std::clamp<qint64>(start + event.replacementLength(), start, storage_->length());
    return selected.isEmpty() ? TextRange::between(start, end)
                              : TextRange::between(std::min(start, selected.location), std::max(end, selected.end()));
}

void TextView::showComposition(const QInputMethodEvent& event) {
    const QString& text = event.preeditString();
    // Whoever heard of what was just committed may have made the text read-only.
    if (text.isEmpty() || isReadOnly())
        return endComposition();
    const auto* cursor = attribute(event, QInputMethodEvent::Cursor);
    isCompositionCaretShown_ = !cursor || cursor->length > 0;
    const auto end = static_cast<int>(text.size());
    layout_->setComposition({editing_->selection().caret, text, cursor ? std::clamp(cursor->start, 0, end) : end});
    caretBlinking_.restart();
    revealCaret();
    viewport()->update();
    updateMicroFocus();
}

/// Takes the composition from the screen; the input method knows.
void TextView::endComposition() {
    if (!isComposing())
        return;
    layout_->setComposition({});
    viewport()->update();
    updateMicroFocus();
}

/// Its place is no more: nothing of it is kept. The input method is told from the event loop, since it may ask for the
/// text around the caret at once, and this happens amid edits, which not everybody has followed yet.
void TextView::dropComposition() {
    layout_->setComposition({});
    viewport()->update();
    QMetaObject::invokeMethod(this, &TextView::noteCompositionDropped, Qt::QueuedConnection);
}

void TextView::noteCompositionDropped() {
    updateMicroFocus();
    // By now it may belong to another widget, or have gone on composing at the new place.
    if (hasFocus() && !isComposing())
        resetInputMethod();
}

/// Makes the input method forget what it composes. One that commits it on that occasion is not listened to: here it is
/// either dropped or committed already.
void TextView::resetInputMethod() {
    const QScopedValueRollback resetting(isResettingInputMethod_, true);
    QGuiApplication::inputMethod()->reset();
}

/// Something else happens: what was composed so far is committed.
void TextView::finishComposing() {
    if (!isComposing())
        return;
    QGuiApplication::inputMethod()->commit();
    // An input method that does not commit by itself is told to forget what is committed here.
    if (!isComposing())
        return;
    const QString text = layout_->composition().text;
    endComposition();
    editing_->commitComposition(text, selectedRange());
    resetInputMethod();
}

/// The neighbourhood of the caret within its line.
TextRange TextView::surroundingRange() const {
    const TextRope& text = storage_->text();
    const qint64 caret = editing_->selection().caret;
    const TextRange line = storage_->lineContents(storage_->lineAt(caret));
    const qint64 start = std::max(line.location, caret - surroundingUnits);
    const qint64 end = std::min(line.end(), caret + surroundingUnits);
    return TextRange::between(std::min(boundaries::clusterStart(text, start), caret),
                              std::max(boundaries::clusterStart(text, end), caret));
}

QVariant TextView::inputMethodQuery(Qt::InputMethodQuery query) const {
    const TextSelection selection = editing_->selection();
    const auto inSurrounding = [this](qint64 offset) {
        const TextRange range = surroundingRange();
        return static_cast<int>(std::clamp(offset, range.location, range.end()) - range.location);
    };
    const auto inWidget = [this](const QRect& area) { return area.translated(viewport()->pos()); };

    switch (query) {
    case Qt::ImEnabled:
        return isEnabled() && !isReadOnly();
    case Qt::ImReadOnly:
        return isReadOnly();
    case Qt::ImCursorRectangle:
        return inWidget(caretRectangle());
    case Qt::ImAnchorRectangle:
        return inWidget(caretRectangleAt(selection.anchor));
    case Qt::ImFont:
        return layout_->font().font();
    case Qt::ImSurroundingText:
        return storage_->string(surroundingRange());
    case Qt::ImCursorPosition:
        return inSurrounding(selection.caret);
    case Qt::ImAnchorPosition:
        return inSurrounding(selection.anchor);
    case Qt::ImTextBeforeCursor:
        return storage_->string(TextRange::between(surroundingRange().location, selection.caret));
    case Qt::ImTextAfterCursor:
        return storage_->string(TextRange::between(selection.caret, surroundingRange().end()));
    case Qt::ImCurrentSelection:
        return storage_->string(surroundingRange().intersection(selection.range()));
    default:
        return QAbstractScrollArea::inputMethodQuery(query);
    }
}

} // namespace quelm
