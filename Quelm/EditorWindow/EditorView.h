#pragma once

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TreeEditor/TreeEditor.h"

#include <QMainWindow>

#include <memory>

namespace quelm {

class JSONTextView;

/// One document window: the tree or the text of its document, by the document's mode. Until `showDocument` it says that
/// the document is being opened.
class EditorView : public QMainWindow {
    Q_OBJECT

public:
    explicit EditorView(std::shared_ptr<JSONDocument> document, QWidget* parent = nullptr);
    ~EditorView() override;

    /// The size of a new window, as far as the screen has room for it.
    static QSize defaultSize();

    JSONDocument& document() const { return *document_; }
    std::shared_ptr<JSONDocument> sharedDocument() const { return document_; }
    TreeEditor& treeEditor() { return treeEditor_; }
    /// The steps of this window, in whichever editor they were made.
    UndoManager& undoManager() { return undoManager_; }
    /// The text editor; null in tree mode.
    JSONTextView* textEditor() const;

    /// Whether the document's content has still to come; what the document holds until then is not the file's.
    bool isOpening() const { return isOpening_; }

    /// The document has its content: from now on the window shows it.
    void showDocument();

    /// What is being typed into a field of the tree, or composed in the text, becomes a part of the document: for
    /// whoever is about to save it, or to ask whether it is modified.
    void finishEditing();

Q_SIGNALS:
    /// An operation on the tree failed. The message is a first line, a line feed, and the details.
    void failed(const QString& message);
    /// There is another editor in the window.
    void editorAreaChanged();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void updateTitle();
    void showRevision();
    void rebuildEditorArea();
    void replaceEditorArea(QWidget* area);

    const std::shared_ptr<JSONDocument> document_;
    UndoManager undoManager_;
    TreeEditor treeEditor_;
    bool isOpening_ = true;
};

} // namespace quelm
