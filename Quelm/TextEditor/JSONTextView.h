#pragma once

#include "Quelm/TextEditor/Coordinator.h"
#include "Quelm/TextEditor/TextLocation.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace quelm {

class FindBar;
class JSONDocument;
class LineNumberGutter;
class TextView;
class UndoManager;

/// The text editor of a document window: the document's text, coloured and with line numbers, under a find bar that is
/// hidden until it is asked for. While it lives, its storage is the document's text buffer.
class JSONTextView : public QWidget {
    Q_OBJECT

public:
    /// Shows the document's text, or none when it has none. `undoManager` is held weakly and may be null.
    /// `onTextChange` is called after every change of the text by the user.
    JSONTextView(std::shared_ptr<JSONDocument> document, UndoManager* undoManager, std::function<void()> onTextChange,
                 QWidget* parent = nullptr);
    ~JSONTextView() override;

    TextView& textView() const { return *textView_; }
    LineNumberGutter& gutter() const { return *gutter_; }
    FindBar& findBar() const { return *findBar_; }
    Coordinator& coordinator() const { return *coordinator_; }

    /// A request to move the caret; the same value given again does nothing.
    void setGoTo(const std::optional<TextLocation>& goTo);

private:
    TextView* makeTextView(UndoManager* undoManager);

    const std::shared_ptr<JSONDocument> document_;
    TextView* textView_;
    LineNumberGutter* gutter_;
    FindBar* findBar_;
    Coordinator* coordinator_;
};

} // namespace quelm
