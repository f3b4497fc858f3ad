#pragma once

#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/EditStep.h"
#include "Quelm/TextEngine/TextSelection.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Quelm/TextEngine/TypingStep.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

namespace quelm {

/// What a user does to a text: a selection over a text storage, and the edits made there, each an undo step of the
/// manager that is set. It needs no widget. Offsets are UTF-16 units; those of a selection are always between
/// characters (surrogate pairs are never split) and within the text. For the main thread.
///
/// Typing is joined: adjacent insertions by keys make one step "Escribir", adjacent deletions of single characters,
/// forwards and backwards, one step "Borrar". A typed line feed is the last of its step. A caret move, a pause, another
/// kind of edit, another step of the manager, and `endTypingStep` (for a save, or losing the focus) end a step too. The
/// steps of whole commands stand alone: "Cortar", "Pegar", "Reemplazar", "Mover", and a "Borrar" of a selection or a
/// word. Undoing a step selects what it brings back, or puts the caret where it took away; redoing it restores the
/// selection that it left.
///
/// Every edit changes the storage and the selection first, then emits `textDidChange`, then registers the step: what
/// names states (see `UndoManager`) advances in between. What is connected to `textDidChange` must not edit.
///
/// The selection follows edits of the storage that are made elsewhere. Such edits must be steps of the same manager, or
/// its steps be dropped: the steps here name offsets of the text that they left.
class TextEditing : public QObject {
    Q_OBJECT

public:
    explicit TextEditing(std::shared_ptr<TextStorage> storage, QObject* parent = nullptr);
    ~TextEditing() override;

    TextStorage& storage() const { return *storage_; }

    /// Held weakly; null (as at first) makes edits that cannot be undone.
    void setUndoManager(UndoManager* manager);
    UndoManager* undoManager() const;

    /// A text that only looks and copies: every edit below does nothing. Steps can be undone and redone nonetheless, as
    /// long as their manager lets them. What is typed afterwards begins a step of its own.
    bool isReadOnly() const { return isReadOnly_; }
    void setReadOnly(bool readOnly);

    /// Whether typing replaces the character after the caret (of the same line).
    bool isOverwriting() const { return isOverwriting_; }
    void setOverwriting(bool overwriting) { isOverwriting_ = overwriting; }

    /// Whether a text has one line only: each line feed or CR LF of what is inserted becomes a space, except in
    /// `replace`.
    bool isSingleLine() const { return isSingleLine_; }
    void setSingleLine(bool singleLine) { isSingleLine_ = singleLine; }

    const TextSelection& selection() const { return selection_; }
    /// Offsets are clamped. Ends the typing step if it differs.
    void setSelection(TextSelection selection);
    QString selectedText() const;

    /// The longest pause that typing is joined across.
    static constexpr int longestTypingPause = 2000; // milliseconds
    /// Tells the time in milliseconds since any moment, in place of the system's clock.
    void setClock(std::function<qint64()> clock);

    // Edits of the selection, as keys make them.

    /// Replaces the selection with typed text, or inserts it at the caret. A last high surrogate waits for the next
    /// call to bring its other half, and is forgotten if anything else comes first; other lone surrogates become
    /// U+FFFD.
    void type(const QString& text);
    /// What ends the line of the selection's start (a line feed, or CR LF), and the spaces and tabs that the line of
    /// the selection's start begins with (as far as that place, and no more than some thousands).
    void typeLineFeed();
    /// Deletes the selection; without one, the stretch between the caret and `otherEnd` (a place that a key's deletion
    /// reaches).
    void deleteSelectionOr(qint64 otherEnd);
    /// Inserts text from elsewhere in place of the selection: "Pegar". An empty text changes nothing.
    void paste(const QString& text);
    /// The same; O(log n) in a text of several lines.
    void paste(const TextRope& text);
    /// Deletes the selection: "Cortar". (Whoever calls has copied it.)
    void cut();
    /// Commits the text of an input method, in place of a stretch near the caret that the method says: one step
    /// "Escribir". An empty stretch at the selection stands for all of the selection.
    void commitComposition(const QString& text, TextRange replaced);

    // Edits elsewhere, the caret going to their end.

    /// One step called `name`; the selection becomes what was inserted, or a caret.
    void replace(TextRange range, const TextRope& replacement, const QString& name);
    /// Takes the stretch out and puts it at `target` (an offset before the edit, not within the stretch): one step
    /// "Mover". The moved text is selected.
    void move(TextRange range, qint64 target);

    /// The next typing begins a step of its own.
    void endTypingStep();

Q_SIGNALS:
    /// An edit made here, undone or redone: once each, when the storage and the selection are as they stay.
    void textDidChange();
    /// After `textDidChange` when an edit moved it. When it followed an edit made elsewhere, from the event loop, so
    /// that everything else has taken note of that edit before.
    void selectionDidChange();

private:
    void followEdit(EditedMask mask, TextRange range, qint64 delta);
    TextRange normalized(TextRange range) const;
    TextRope insertable(QString text) const;
    TextRange overwrittenRange(const TextRope& typed) const;
    /// What ends lines where the selection begins.
    QString lineEnding() const;
    QString indentation() const;

    EditStep replacementOf(TextRange range, const TextRope& text) const;
    void insertTyped(const TextRope& text, TextRange range);
    void performTyping(TypingStep::Kind kind, const EditStep& step);
    void performAlone(const EditStep& step, const QString& name);
    EditStep make(const EditStep& step);
    UndoManager::StepID registerStep(std::shared_ptr<const EditStep> opposite, const QString& name);
    void announceSelectionUnless(const TextSelection& same);

    const std::shared_ptr<TextStorage> storage_;
    /// The storage's text as of the last edit that the selection followed.
    TextRope followedText_;
    TextSelection selection_;
    QPointer<UndoManager> undoManager_;
    std::function<qint64()> clock_;

    /// The step that typing may still join.
    std::shared_ptr<TypingStep> typingStep_;
    /// A high surrogate that was typed alone, or nothing.
    QString heldHalf_;

    enum class Phase : std::uint8_t { idle, changing, announcing };
    Phase phase_ = Phase::idle;
    bool hasSelectionNotice_ = false;
    bool isReadOnly_ = false;
    bool isOverwriting_ = false;
    bool isSingleLine_ = false;
};

} // namespace quelm
