#pragma once

#include "Quelm/Foundation/BackgroundTask.h"
#include "Quelm/TextEditor/SyntaxHighlighter.h"
#include "Quelm/TextEditor/TextLocation.h"
#include "Quelm/TextEngine/TextSelection.h"
#include "Quelm/TextEngine/TextStorage.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <optional>

namespace quelm {

class LineNumberGutter;
class TextView;

/// Keeps what is beside and around a text view in step with it: the line numbers and the colours with every edit of its
/// storage, the current line's number and the matching brackets with its selection. Carries out requests to go to a
/// place, and tells of changes that the user made. For the main thread.
class Coordinator : public QObject {
    Q_OBJECT

public:
    explicit Coordinator(std::function<void()> onTextChange, QObject* parent = nullptr);

    /// The views that it serves from now on, and the storage that they show. Called once.
    void attach(TextView& textView, LineNumberGutter& gutter);

    /// Moves the caret to the place, shows it and flashes its paragraph, unless it is the last request carried out. A
    /// place far into a long line is looked for on another thread, in the text as it is by then: the caret moves when
    /// it is found, unless the user has moved it, edited the text or asked for another place meanwhile.
    void goTo(const std::optional<TextLocation>& location);
    const std::optional<TextLocation>& lastGoTo() const { return lastGoTo_; }
    /// Whether the place of the last request is still being looked for.
    bool isLocating() const { return locating_.isRunning(); }

private:
    void locate(const TextLocation& location);
    void show(qint64 offset);
    void didProcessEditing(EditedMask mask, TextRange range, qint64 delta);
    void textDidChange();
    void selectionDidChange();
    void showMatchingBrackets();

    const std::function<void()> onTextChange_;
    std::optional<TextLocation> lastGoTo_;
    BackgroundTask locating_;
    /// The selection that only the user can have changed, if it is another one now: it follows edits made elsewhere.
    TextSelection followedSelection_;
    QPointer<LineNumberGutter> gutter_;
    QPointer<TextView> textView_;
    SyntaxHighlighter highlighter_;
    /// Brackets are looked for once the events that move the caret have been handled.
    QTimer bracketTimer_;
};

} // namespace quelm
