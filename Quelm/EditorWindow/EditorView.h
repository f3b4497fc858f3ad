#pragma once

#include "Quelm/EditorWindow/EditorModel.h"
#include "Quelm/Foundation/UndoManager.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>
#include <optional>

class QFileDialog;
class QMessageBox;
class QToolBar;
class QVBoxLayout;

namespace quelm {

class Divider;
class EditorToolBar;
class GoToLineDialog;
class JSONTextView;
class ModePicker;
class StatusBar;
class TextView;
class TreeView;

/// One document window: a toolbar, the tree or the text of its document by the document's mode, and the status bar,
/// with the alerts and prompts that its model asks for. Until `showDocument` it says that the document is being opened.
class EditorView : public QMainWindow {
    Q_OBJECT

public:
    /// The clock must outlive the window.
    explicit EditorView(std::shared_ptr<JSONDocument> document, QWidget* parent = nullptr,
                        Clock& clock = Clock::system());
    ~EditorView() override;

    /// The size of a new window, as far as the screen has room for it.
    static QSize defaultSize();

    EditorModel& model() { return model_; }
    JSONDocument& document() const { return model_.document(); }
    std::shared_ptr<JSONDocument> sharedDocument() const { return model_.sharedDocument(); }
    TreeEditor& treeEditor() { return model_.tree(); }
    /// The steps of this window, in whichever editor they were made.
    UndoManager& undoManager() { return undoManager_; }

    /// What is over the status bar; null while nothing is.
    QWidget* editorArea() const { return editorArea_; }
    /// The text editor; null in tree mode.
    JSONTextView* textEditor() const;
    /// The tree; null in text mode.
    TreeView* treeView() const;
    StatusBar& documentStatusBar() const { return *statusBar_; }
    ModePicker& modePicker() const;
    QToolBar& toolBar() const;

    /// Whether the document's content has still to come; what the document holds until then is not the file's.
    bool isOpening() const { return isOpening_; }

    /// The document is being read from now on: when that takes long, the window says how far it is.
    void noteOpeningStarted(std::shared_ptr<const WorkProgress> progress);

    /// The document has its content: from now on the window shows it.
    void showDocument();

    /// The folder by which its title tells the window from another one; empty for none.
    void setTitleFolder(const QString& folder);

    /// What is being typed into a field of the tree, or composed in the text, becomes a part of the document: for
    /// whoever is about to save it, or to ask whether it is modified.
    void finishEditing();

    /// Keeps the document from being edited while something else than the model has it in hand, such as the file being
    /// read anew.
    void setEditingLocked(bool isLocked);

Q_SIGNALS:
    /// There is another editor in the window.
    void editorAreaChanged();
    /// The user does not want to wait for the document any more.
    void openingCancelled();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void makeCentralWidget();
    void connectDocument();
    void connectModel();
    void updateTitle();
    void showOpeningPage();
    void showOpeningProgress();

    // What can be done.
    bool isHeld() const { return isEditingLocked_ || model_.isBusy(); }
    void updateEditing();
    void updateToolBar();

    // The editor area.
    void showRevision();
    static void revealCaret(TextView& view);
    void changeFocusedArea();
    void rebuildEditorArea();
    void replaceEditorArea(QWidget* area);
    QWidget* makeTextEditor();
    QWidget* retireEditorArea();
    void showParseError();
    void deliverGoTo();

    // What the model asks for.
    void showErrorMessage();
    void showGoToLine();
    void showExport();

    UndoManager undoManager_;
    EditorModel model_;
    EditorToolBar* toolBar_ = nullptr;
    QVBoxLayout* layout_ = nullptr;
    QPointer<QWidget> editorArea_;
    Divider* divider_ = nullptr;
    StatusBar* statusBar_ = nullptr;
    QPointer<QMessageBox> alert_;
    QPointer<GoToLineDialog> goToLineDialog_;
    QPointer<QFileDialog> exportDialog_;
    /// The item of the toolbar that had the focus before it could not be used.
    QPointer<QWidget> focusedItem_;
    /// The last request for a place that a text editor was given.
    std::optional<TextLocation> deliveredGoTo_;
    QString titleFolder_;
    /// What was last typed into the prompt for a line.
    QString lineInput_;
    bool isOpening_ = true;
    Clock& clock_;
    DelayedCall openingCall_;
    /// From when on it is shown.
    std::shared_ptr<const WorkProgress> openingProgress_;
    bool isEditingLocked_ = false;
};

} // namespace quelm
