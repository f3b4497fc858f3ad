#include "Quelm/EditorWindow/EditorView.h"

#include "Quelm/EditorWindow/Divider.h"
#include "Quelm/EditorWindow/EditorToolBar.h"
#include "Quelm/EditorWindow/ModePicker.h"
#include "Quelm/EditorWindow/OpeningPage.h"
#include "Quelm/EditorWindow/StatusBar.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/Foundation/VisibleText.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <utility>

namespace quelm {

EditorView::EditorView(std::shared_ptr<JSONDocument> document, QWidget* parent, Clock& clock)
    : QMainWindow(parent), model_(std::move(document), clock), clock_(clock) {
    setMinimumSize(scaledPixels(480), scaledPixels(320));
    // The desktop's frame and title bar need room as well.
    const QSize frame(scaledPixels(16), scaledPixels(64));
    resize(defaultSize().boundedTo(screen()->availableSize() - frame));
    model_.setUndoManager(&undoManager_);
    toolBar_ = new EditorToolBar(model_);
    addToolBar(toolBar_);
    makeCentralWidget();
    connectDocument();
    connectModel();
    updateTitle();
    updateToolBar();
}

EditorView::~EditorView() {
    // Nobody may hear any more what a field would hand in as it goes.
    treeEditor().setEditing(std::nullopt);
    retireEditorArea();
    // What shows the model, also an editor that is about to go, must not outlive it.
    delete takeCentralWidget();
}

QSize EditorView::defaultSize() {
    return {scaledPixels(860), scaledPixels(760)};
}

void EditorView::makeCentralWidget() {
    divider_ = new Divider;
    statusBar_ = new StatusBar(model_);
    auto* container = new QWidget;
    layout_ = new QVBoxLayout(container);
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(0);
    layout_->addWidget(divider_);
    layout_->addWidget(statusBar_);
    // There is nothing to be said of a document that has still to come.
    divider_->hide();
    statusBar_->hide();
    setCentralWidget(container);
}

void EditorView::connectDocument() {
    connect(&document().configuration(), &DocumentConfiguration::fileLocationChanged, this, &EditorView::updateTitle);
    // Comes after a change of the mode too, when the tree has its rows.
    connect(&document(), &JSONDocument::revisionChanged, this, &EditorView::showRevision);
    // Steps name places of the content that they were made in.
    connect(&document(), &JSONDocument::didApply, &undoManager_, &UndoManager::removeAllActions);
    undoManager_.setStateToken(&document().stateToken());
    connect(&document(), &JSONDocument::isModifiedChanged, this,
            [this] { setWindowModified(document().isModified()); });
}

void EditorView::connectModel() {
    connect(&model_, &EditorModel::isBusyChanged, this, &EditorView::updateEditing);
    connect(&model_, &EditorModel::willReadDocument, this, &EditorView::finishEditing);
    connect(&model_, &EditorModel::goToChanged, this, &EditorView::deliverGoTo);
    connect(&model_, &EditorModel::errorMessageChanged, this, &EditorView::showErrorMessage);
    connect(&model_, &EditorModel::isGoToLinePresentedChanged, this, &EditorView::showGoToLine);
    connect(&model_, &EditorModel::exportChanged, this, &EditorView::showExport);
}

QToolBar& EditorView::toolBar() const {
    return *toolBar_;
}

ModePicker& EditorView::modePicker() const {
    return toolBar_->modePicker();
}

JSONTextView* EditorView::textEditor() const {
    return qobject_cast<JSONTextView*>(editorArea_.data());
}

TreeView* EditorView::treeView() const {
    return qobject_cast<TreeView*>(editorArea_.data());
}

void EditorView::showEvent(QShowEvent* event) {
    // As a rule the document is there before the window is shown.
    if (isOpening_ && !editorArea_)
        showOpeningPage();
    QMainWindow::showEvent(event);
}

void EditorView::keyPressEvent(QKeyEvent* event) {
    // Whoever has the focus had its turn.
    const bool isUnderWay = model_.isBusy() || model_.isExporting() || model_.isWorkShown();
    if (event->key() == Qt::Key_Escape && isOpening_)
        Q_EMIT openingCancelled();
    else if (event->key() == Qt::Key_Escape && isUnderWay)
        model_.cancelWork();
    else if (event->key() == Qt::Key_F6 && event->modifiers() == Qt::NoModifier && editorArea_)
        changeFocusedArea();
    else
        QMainWindow::keyPressEvent(event);
}

/// From the document to the toolbar and back: a key for where Tab is typed.
void EditorView::changeFocusedArea() {
    const QWidget* focused = focusWidget();
    const bool isInDocument = focused && (focused == editorArea_ || editorArea_->isAncestorOf(focused));
    if (isInDocument && modePicker().isEnabled())
        modePicker().setFocus(Qt::TabFocusReason);
    else
        editorArea_->setFocus(Qt::TabFocusReason);
}

void EditorView::updateTitle() {
    // What a name has of the mark's own characters is none.
    const auto shown = [](const QString& text) {
        return visibleCharacters(text).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    };
    QString title = shown(document().configuration().displayName()) + QStringLiteral("[*]");
    if (!titleFolder_.isEmpty())
        title += QStringLiteral(" (%1)").arg(shown(titleFolder_));
    setWindowTitle(title);
}

void EditorView::setTitleFolder(const QString& folder) {
    if (std::exchange(titleFolder_, folder) != folder)
        updateTitle();
}

// Until the document is there.

void EditorView::noteOpeningStarted(std::shared_ptr<const WorkProgress> progress) {
    openingCall_ = clock_.callAfter(EditorModel::patience, [this, progress = std::move(progress)]() mutable {
        openingProgress_ = std::move(progress);
        showOpeningProgress();
    });
}

void EditorView::showOpeningPage() {
    auto* page = new OpeningPage;
    connect(page, &OpeningPage::cancelled, this, &EditorView::openingCancelled);
    replaceEditorArea(page);
    showOpeningProgress();
}

void EditorView::showOpeningProgress() {
    auto* page = qobject_cast<OpeningPage*>(editorArea_.data());
    if (page && openingProgress_)
        page->showProgress(openingProgress_);
}

void EditorView::showDocument() {
    if (!std::exchange(isOpening_, false))
        return;
    openingCall_.reset();
    openingProgress_.reset();
    divider_->show();
    statusBar_->setVisible(true);
    updateToolBar();
    rebuildEditorArea();
    // From then on the model follows the revision by itself.
    model_.validateShownText();
}

// What can be done.

void EditorView::finishEditing() {
    if (TreeView* tree = treeView())
        tree->finishEditing();
    if (const JSONTextView* editor = textEditor())
        editor->textView().finishComposing();
}

void EditorView::setEditingLocked(bool isLocked) {
    if (isEditingLocked_ == isLocked)
        return;
    if (isLocked)
        finishEditing();
    isEditingLocked_ = isLocked;
    updateEditing();
}

void EditorView::updateEditing() {
    // The model does some of this for an operation of its own, and would undo it at its end under a lock.
    treeEditor().setReadOnly(isHeld());
    undoManager_.setSuspended(isHeld());
    if (const JSONTextView* editor = textEditor())
        editor->textView().setReadOnly(isHeld());
    updateToolBar();
}

void EditorView::updateToolBar() {
    const bool isUsable = !isOpening_ && !isHeld();
    if (!isUsable && !focusedItem_) {
        focusedItem_ = toolBar_->focusedItem();
        // An item that cannot be used any more would pass the focus on to whatever comes next.
        if (focusedItem_)
            focusWidget()->clearFocus();
    }
    toolBar_->setUsable(isUsable);
    if (isUsable && focusedItem_ && !focusWidget())
        focusedItem_->setFocus();
    if (isUsable)
        focusedItem_ = nullptr;
}

// The editor area.

void EditorView::showRevision() {
    // The tree reloads by itself, and so does a text whose storage is the document's text buffer.
    const JSONTextView* editor = textEditor();
    const bool isShown = document().mode() == EditorMode::tree
                             ? treeView() != nullptr
                             : editor && document().textBuffer() == editor->textView().sharedTextStorage();
    if (isOpening_)
        return;
    if (!isShown)
        rebuildEditorArea();
    else if (editor)
        revealCaret(editor->textView());
}

/// The text was replaced under the caret.
void EditorView::revealCaret(TextView& view) {
    // What is past the end of the new text has been taken back to it, which may be anywhere.
    const TextRange selection = view.selectedRange();
    if (selection.location == view.textStorage().length())
        view.setSelectedRange({0, 0});
    view.scrollRangeToVisible(view.selectedRange());
}

void EditorView::rebuildEditorArea() {
    if (document().mode() == EditorMode::tree)
        replaceEditorArea(new TreeView(treeEditor()));
    else
        replaceEditorArea(makeTextEditor());
}

QWidget* EditorView::makeTextEditor() {
    // Called for an editor that was replaced too, whose composition ends as it loses the focus.
    auto shown = std::make_shared<QPointer<JSONTextView>>();
    const auto textChanged = [this, shown] {
        if (*shown && *shown == textEditor() && document().textBuffer() == (*shown)->textView().sharedTextStorage())
            model_.noteTextChange();
    };
    auto* editor = new JSONTextView(model_.sharedDocument(), &undoManager_, textChanged);
    *shown = editor;
    editor->textView().setReadOnly(isHeld());
    // A place can be shown once the window has given the editor its size.
    QMetaObject::invokeMethod(editor, [this] { showParseError(); }, Qt::QueuedConnection);
    QMetaObject::invokeMethod(editor, [this] { deliverGoTo(); }, Qt::QueuedConnection);
    return editor;
}

void EditorView::replaceEditorArea(QWidget* area) {
    QWidget* focused = focusWidget();
    const bool isFocusHere =
        !focused || (editorArea_ && (editorArea_ == focused || editorArea_->isAncestorOf(focused)));
    QWidget* before = retireEditorArea();
    layout_->insertWidget(0, area, 1);
    area->show();
    editorArea_ = area;
    if (isFocusHere && !focusedItem_)
        area->setFocus();
    if (before) {
        before->hide();
        // It may be in the middle of an event of its own.
        before->deleteLater();
    }
    Q_EMIT editorAreaChanged();
}

/// Takes the place from what is shown, which stays a child of the window until it goes.
QWidget* EditorView::retireEditorArea() {
    // What the text still becomes, such as by the end of a composition when the focus leaves, reaches neither the
    // document nor the undo manager.
    if (const JSONTextView* editor = textEditor())
        editor->textView().setUndoManager(nullptr);
    if (TreeView* tree = treeView()) {
        treeEditor().setEditing(std::nullopt);
        treeEditor().disconnect(tree);
    }
    QWidget* area = editorArea_;
    editorArea_ = nullptr;
    if (area)
        layout_->removeWidget(area);
    return area;
}

void EditorView::showParseError() {
    const std::optional<JSONParseError>& error = document().content().parseError;
    if (error && !document().isTextBufferEdited())
        model_.setGoTo(TextLocation(error->line, error->column));
}

void EditorView::deliverGoTo() {
    if (!model_.goTo() || model_.goTo() == deliveredGoTo_)
        return;
    JSONTextView* editor = textEditor();
    // In a tree there is no such place, nor will it be what was meant in the next text.
    if (editor || treeView())
        deliveredGoTo_ = model_.goTo();
    if (!editor)
        return;
    // The text takes the focus.
    focusedItem_ = nullptr;
    editor->setGoTo(deliveredGoTo_);
}

} // namespace quelm
