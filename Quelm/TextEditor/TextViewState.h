#pragma once

#include <QtGlobal>

namespace quelm {

class JSONTextView;

/// What is selected in a text editor and which part of the text it shows, in terms that mean something in another text
/// too.
struct TextViewState {
    /// From 0; the column in UTF-16 units.
    struct Place {
        qint64 line = 0;
        qint64 column = 0;
    };
    Place selectionStart;
    Place selectionEnd;
    qint64 verticalPosition = 0;
    qint64 horizontalPosition = 0;
    double zoom = 1;

    /// O(log n).
    static TextViewState of(const JSONTextView& editor);

    /// Selects and scrolls an editor that has its size likewise, as far as its text goes. O(log n) besides the rows in
    /// the viewport.
    void restore(JSONTextView& editor) const;
};

} // namespace quelm
