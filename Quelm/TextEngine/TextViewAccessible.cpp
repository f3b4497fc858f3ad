#include "Quelm/TextEngine/TextViewAccessible.h"

#include "Quelm/TextEngine/AccessibleOffsets.h"
#include "Quelm/TextEngine/TextBoundaries.h"
#include "Quelm/TextEngine/TextView.h"

#include <algorithm>
#include <string_view>

namespace quelm {

namespace {

QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
    auto* view =
        className == QLatin1String(TextView::staticMetaObject.className()) ? qobject_cast<TextView*>(object) : nullptr;
    return view != nullptr ? new TextViewAccessible(*view) : nullptr;
}

} // namespace

void installTextViewAccessibility() {
    QAccessible::installFactory(makeInterface);
}

TextViewAccessible::TextViewAccessible(TextView& view) : QAccessibleWidget(&view, QAccessible::EditableText) {}

TextView& TextViewAccessible::view() const {
    return *static_cast<TextView*>(widget());
}

ReadingUnits TextViewAccessible::units() const {
    return ReadingUnits(view().textStorage(), view().textLayout());
}

// The interface.

bool TextViewAccessible::isValid() const {
    return QAccessibleWidget::isValid() && qobject_cast<TextView*>(widget()) != nullptr;
}

QAccessible::State TextViewAccessible::state() const {
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state = QAccessibleWidget::state();
    state.multiLine = !view().editing().isSingleLine();
    state.selectableText = true;
    state.readOnly = view().isReadOnly();
    state.editable = !view().isReadOnly();
    return state;
}

QString TextViewAccessible::text(QAccessible::Text kind) const {
    if (!isValid())
        return {};
    if (kind == QAccessible::Value)
        return text(0, longestText);
    return QAccessibleWidget::text(kind);
}

void TextViewAccessible::setText(QAccessible::Text kind, const QString& text) {
    if (kind == QAccessible::Value)
        replace({0, length()}, text, TextEditing::tr("Reemplazar"));
    else
        QAccessibleWidget::setText(kind, text);
}

void* TextViewAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface*>(this);
    if (type == QAccessible::EditableTextInterface)
        return static_cast<QAccessibleEditableTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

// Offsets.

qint64 TextViewAccessible::length() const {
    return view().textStorage().length();
}

/// What an offset means, which may be outside of the text.
qint64 TextViewAccessible::resolved(int offset) const {
    constexpr int end = -1;
    constexpr int caret = -2;
    switch (offset) {
    case end:
        return length();
    case caret:
        return view().editing().selection().caret;
    default:
        return offset;
    }
}

qint64 TextViewAccessible::place(int offset) const {
    return std::clamp<qint64>(resolved(offset), 0, length());
}

/// What lies between two offsets, in whichever order.
TextRange TextViewAccessible::stretch(int start, int end) const {
    return TextSelection{place(start), place(end)}.range();
}

// The selection.

int TextViewAccessible::selectionCount() const {
    return view().editing().selection().isEmpty() ? 0 : 1;
}

void TextViewAccessible::selection(int index, int* start, int* end) const {
    const TextRange range = index < selectionCount() ? view().selectedRange() : TextRange();
    *start = accessibleOffset(range.location);
    *end = accessibleOffset(range.end());
}

void TextViewAccessible::addSelection(int start, int end) {
    select({place(start), place(end)});
}

void TextViewAccessible::removeSelection(int index) {
    if (index == 0)
        select(TextSelection::at(view().editing().selection().caret));
}

void TextViewAccessible::setSelection(int index, int start, int end) {
    if (index == 0)
        select({place(start), place(end)});
}

int TextViewAccessible::cursorPosition() const {
    return accessibleOffset(view().editing().selection().caret);
}

void TextViewAccessible::setCursorPosition(int position) {
    const qint64 caret = boundaries::clusterStart(view().textStorage().text(), place(position));
    select(TextSelection::at(caret));
    view().scrollRangeToVisible({caret, 0});
}

void TextViewAccessible::select(TextSelection selection) {
    // The view first ends what an input method has begun.
    view().setSelectedRange(selection.range());
    view().editing().setSelection(selection);
}

// Edits.

void TextViewAccessible::replace(TextRange range, const QString& text, const QString& name) {
    if (view().isReadOnly())
        return;
    const std::u16string_view units(QStringView(text).utf16(), static_cast<std::size_t>(text.size()));
    TextEditing& editing = view().editing();
    editing.replace(range, TextRope::repairing(units), name);
    // The edit selects what it inserted, which the next key would replace.
    editing.setSelection(TextSelection::at(editing.selection().range().end()));
}

void TextViewAccessible::insertText(int offset, const QString& text) {
    replace({place(offset), 0}, text, TextEditing::tr("Escribir"));
}

void TextViewAccessible::deleteText(int start, int end) {
    replace(stretch(start, end), {}, TextEditing::tr("Borrar"));
}

void TextViewAccessible::replaceText(int start, int end, const QString& text) {
    replace(stretch(start, end), text, TextEditing::tr("Reemplazar"));
}

} // namespace quelm
