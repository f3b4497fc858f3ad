#include "Quelm/TextEngine/TextViewNotices.h"

#include "Quelm/TextEngine/AccessibleOffsets.h"
#include "Quelm/TextEngine/TextView.h"

#include <QAccessible>
#include <QEvent>

#include <algorithm>
#include <limits>
#include <utility>

namespace quelm {

namespace {

QString startOf(const TextRope& text, TextRange range) {
    const qint64 end = range.location + std::min(range.length, TextViewNotices::longestText);
    const std::u16string units = text.utf16(
        ByteRange::between(text.summaryBeforeUTF16(range.location).bytes, text.summaryBeforeUTF16(end).bytes));
    return QStringView(units).toString();
}

/// Where an edit was; the events add the length of what they tell to it.
int editOffset(qint64 offset) {
    return accessibleOffset(std::min<qint64>(offset, std::numeric_limits<int>::max() - TextViewNotices::longestText));
}

} // namespace

TextViewNotices::Receiver TextViewNotices::Receiver::assistiveTechnology() {
    return {QAccessible::isActive, [](QAccessibleEvent& event) { QAccessible::updateAccessibility(&event); }};
}

TextViewNotices::TextViewNotices(TextView& view, Receiver receiver)
    : QObject(&view), view_(view), receiver_(std::move(receiver)), announcedText_(view.textStorage().text()),
      announcedSelection_(view.editing().selection()) {
    connect(&view.textStorage(), &TextStorage::didProcessEditing, this, &TextViewNotices::announceEdit);
    connect(&view.editing(), &TextEditing::selectionDidChange, this, &TextViewNotices::announceSelection);
    view.installEventFilter(this);
}

bool TextViewNotices::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ReadOnlyChange)
        announceReadOnly();
    return QObject::eventFilter(watched, event);
}

void TextViewNotices::announceEdit(EditedMask mask, TextRange range, qint64 delta) {
    if (mask != EditedMask::characters)
        return;
    const TextRope before = std::exchange(announcedText_, view_.textStorage().text());
    const TextRange replaced{range.location, range.length - delta};
    if (!receiver_.isListening() || (range.isEmpty() && replaced.isEmpty()))
        return;

    const int place = editOffset(range.location);
    const QString removed = startOf(before, replaced);
    const QString inserted = startOf(announcedText_, range);
    if (replaced.isEmpty()) {
        QAccessibleTextInsertEvent event(&view_, place, inserted);
        receiver_.take(event);
    } else if (range.isEmpty()) {
        QAccessibleTextRemoveEvent event(&view_, place, removed);
        receiver_.take(event);
    } else {
        QAccessibleTextUpdateEvent event(&view_, place, removed, inserted);
        receiver_.take(event);
    }
}

void TextViewNotices::announceSelection() {
    const TextSelection selection = view_.editing().selection();
    const TextSelection before = std::exchange(announcedSelection_, selection);
    if (!receiver_.isListening())
        return;

    const int caret = accessibleOffset(selection.caret);
    if (!selection.isEmpty() || !before.isEmpty()) {
        const TextRange range = selection.range();
        QAccessibleTextSelectionEvent event(&view_, accessibleOffset(range.location), accessibleOffset(range.end()));
        event.setCursorPosition(caret);
        receiver_.take(event);
    }
    QAccessibleTextCursorEvent event(&view_, caret);
    receiver_.take(event);
}

void TextViewNotices::announceReadOnly() {
    if (!receiver_.isListening())
        return;
    QAccessible::State changed;
    changed.readOnly = true;
    changed.editable = true;
    QAccessibleStateChangeEvent event(&view_, changed);
    receiver_.take(event);
}

} // namespace quelm
