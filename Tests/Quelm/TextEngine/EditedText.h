#pragma once

#include "Quelm/TextEngine/TextEditing.h"

#include <QString>

#include <algorithm>
#include <memory>

namespace quelm {

/// A text under edit with an undo manager and a clock that stands still. Texts are written with a bar where the caret
/// is and, when something is selected, a circumflex where the selection began.
class EditedText {
public:
    explicit EditedText(const QString& marked)
        : storage(std::make_shared<TextStorage>(textOf(marked))), editing(storage) {
        editing.setUndoManager(&undoManager);
        editing.setClock([this] { return time; });
        select(marked);
    }

    /// What is there now, marked.
    QString marked() const {
        QString result = text();
        const TextSelection selection = editing.selection();
        const bool isCaretLast = selection.caret >= selection.anchor;
        const auto insertAnchor = [&] {
            if (!selection.isEmpty())
                result.insert(selection.anchor, u'^');
        };
        if (!isCaretLast)
            insertAnchor();
        result.insert(selection.caret, u'|');
        if (isCaretLast)
            insertAnchor();
        return result;
    }

    QString text() const { return storage->string({0, storage->length()}); }

    /// Selects as marked, in the text that is there.
    void select(const QString& marked) {
        const qint64 bar = marked.indexOf(u'|');
        const qint64 circumflex = marked.indexOf(u'^');
        const qint64 caret = bar - (circumflex >= 0 && circumflex < bar ? 1 : 0);
        const qint64 anchor = circumflex - (bar < circumflex ? 1 : 0);
        editing.setSelection({circumflex < 0 ? caret : anchor, caret});
    }

    /// Types character by character, as keys do.
    void typeKeys(const QString& text) {
        for (const QChar unit : text)
            editing.type(QString(unit));
    }
    void backspace() { editing.deleteSelectionOr(std::max<qint64>(editing.selection().caret - 1, 0)); }
    void deleteForward() { editing.deleteSelectionOr(editing.selection().caret + 1); }

    std::shared_ptr<TextStorage> storage;
    UndoManager undoManager;
    TextEditing editing;
    qint64 time = 0;

private:
    static TextRope textOf(QString marked) {
        marked.remove(u'|').remove(u'^');
        return TextRope::repairing(marked.toStdU16String());
    }
};

} // namespace quelm
