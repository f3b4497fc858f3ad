#include "Quelm/EditorWindow/EditorView.h"

#include "Quelm/EditorWindow/OpeningPage.h"
#include "Quelm/EditorWindow/TextPage.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <QScreen>

namespace quelm {

EditorView::EditorView(std::shared_ptr<JSONDocument> document, QWidget* parent)
    : QMainWindow(parent), document_(std::move(document)), treeEditor_(document_) {
    resize(defaultSize().boundedTo(screen()->availableSize()));
    updateTitle();
    connect(&document_->configuration(), &DocumentConfiguration::fileLocationChanged, this, &EditorView::updateTitle);
    connect(document_.get(), &JSONDocument::modeChanged, this, &EditorView::rebuildEditorArea);
    connect(document_.get(), &JSONDocument::revisionChanged, this, &EditorView::showRevision);
    // Steps name places of the content that they were made in.
    connect(document_.get(), &JSONDocument::didApply, &undoManager_, &UndoManager::removeAllActions);
    undoManager_.setStateToken(&document_->stateToken());
    treeEditor_.setUndoManager(&undoManager_);
    treeEditor_.onError = [this](const QString& message) { Q_EMIT failed(message); };
    connect(document_.get(), &JSONDocument::isModifiedChanged, this,
            [this] { setWindowModified(document_->isModified()); });
}

QSize EditorView::defaultSize() {
    return {scaledPixels(860), scaledPixels(760)};
}

EditorView::~EditorView() {
    // Nobody may hear any more what a field would hand in as it goes.
    treeEditor_.setEditing(std::nullopt);
    // The view of the tree must not outlive its editor, which goes before the window's children.
    delete takeCentralWidget();
}

void EditorView::showDocument() {
    if (!isOpening_)
        return;
    isOpening_ = false;
    rebuildEditorArea();
}

void EditorView::finishEditing() {
    if (auto* tree = qobject_cast<TreeView*>(centralWidget()))
        tree->finishEditing();
    if (const JSONTextView* editor = textEditor())
        editor->textView().finishComposing();
}

void EditorView::showEvent(QShowEvent* event) {
    // As a rule the document is there before the window is shown.
    if (isOpening_ && !centralWidget())
        setCentralWidget(new OpeningPage);
    QMainWindow::showEvent(event);
}

void EditorView::updateTitle() {
    setWindowTitle(document_->configuration().displayName() + QStringLiteral("[*]"));
}

JSONTextView* EditorView::textEditor() const {
    const auto* page = qobject_cast<TextPage*>(centralWidget());
    return page ? &page->editor() : nullptr;
}

void EditorView::showRevision() {
    // The tree reloads by itself, and so does a text whose storage is the document's text buffer.
    const JSONTextView* editor = textEditor();
    const bool isShown = editor && document_->textBuffer() == editor->textView().sharedTextStorage();
    if (document_->mode() == EditorMode::text && !isShown)
        rebuildEditorArea();
}

void EditorView::rebuildEditorArea() {
    if (isOpening_)
        return;
    if (document_->mode() == EditorMode::tree)
        replaceEditorArea(new TreeView(treeEditor_));
    else
        replaceEditorArea(new TextPage(document_, &undoManager_));
}

void EditorView::replaceEditorArea(QWidget* area) {
    // Taking it away takes the focus from it, which it may answer with an edit.
    if (auto* page = qobject_cast<TextPage*>(centralWidget()))
        page->retire();
    delete takeCentralWidget();
    setCentralWidget(area);
    area->setFocus();
    Q_EMIT editorAreaChanged();
}

} // namespace quelm
