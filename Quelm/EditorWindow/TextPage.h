#pragma once

#include <QWidget>

#include <memory>

namespace quelm {

class JSONDocument;
class JSONTextView;
class MessageBar;
class UndoManager;

/// A document in text mode: its text editor, over a strip that says where the text stops being JSON for as long as
/// that text was not changed. The caret is put there at first.
class TextPage : public QWidget {
    Q_OBJECT

public:
    /// `undoManager` is held weakly.
    TextPage(std::shared_ptr<JSONDocument> document, UndoManager* undoManager, QWidget* parent = nullptr);

    JSONTextView& editor() const { return *editor_; }

    /// Another page takes over: what the text still becomes, such as by the end of a composition when the focus leaves,
    /// reaches neither the document nor the undo manager.
    void retire();

    /// The strip with the place of the error; null for valid JSON.
    MessageBar* errorBar() const { return errorBar_; }

private:
    void textChanged();
    void showError();

    const std::shared_ptr<JSONDocument> document_;
    MessageBar* errorBar_ = nullptr;
    JSONTextView* editor_;
    bool isRetired_ = false;
};

} // namespace quelm
