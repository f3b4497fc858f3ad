#include "Quelm/TextEditor/TextViewState.h"

#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Quelm/TextEngine/TextView.h"

#include <algorithm>

namespace quelm {

namespace {

TextViewState::Place placeOf(qint64 offset, const TextStorage& text) {
    const qint64 line = text.lineAt(offset);
    return {line, offset - text.lineStart(line)};
}

qint64 offsetOf(const TextViewState::Place& place, const TextStorage& text) {
    const TextRange line = text.lineContents(std::min(place.line, text.lineCount() - 1));
    return line.location + std::min(place.column, line.length);
}

} // namespace

TextViewState TextViewState::of(const JSONTextView& editor) {
    TextView& view = editor.textView();
    const TextRange selection = view.selectedRange();
    return {.selectionStart = placeOf(selection.location, view.textStorage()),
            .selectionEnd = placeOf(selection.end(), view.textStorage()),
            .verticalPosition = view.verticalAxis().position(),
            .horizontalPosition = view.horizontalAxis().position(),
            .zoom = view.zoom()};
}

void TextViewState::restore(JSONTextView& editor) const {
    TextView& view = editor.textView();
    view.setZoom(zoom);
    const qint64 start = offsetOf(selectionStart, view.textStorage());
    const qint64 end = std::max(start, offsetOf(selectionEnd, view.textStorage()));
    view.setSelectedRange({start, end - start});
    view.verticalAxis().setPosition(verticalPosition);
    view.horizontalAxis().setPosition(horizontalPosition);
}

} // namespace quelm
