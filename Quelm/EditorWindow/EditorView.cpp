#include "Quelm/EditorWindow/EditorView.h"

#include "Quelm/EditorWindow/OpeningPage.h"
#include "Quelm/EditorWindow/TextPage.h"
#include "Quelm/Foundation/Fonts.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <QScreen>

namespace quelm {

EditorView::EditorView(std::shared_ptr<JSONDocument> document, QWidget* parent)
    : QMainWindow(parent), document_(std::move(document)), treeEditor_(document_) {
    resize(defaultSize().boundedTo(screen()->availableSize()));
    updateTitle();
    connect(&document_->configuration(), &DocumentConfiguration::fileLocationChanged, this, &EditorView::updateTitle);
    connect(document_.get(), &JSONDocument::modeChanged, this, &EditorView::rebuildEditorArea);
    connect(document_.get(), &JSONDocument::revisionChanged, this, [this] {
        // The tree reloads by itself; a text page keeps what it was made with.
        if (document_->mode() == EditorMode::text)
            rebuildEditorArea();
    });
}

QSize EditorView::defaultSize() {
    return {scaledPixels(860), scaledPixels(760)};
}

EditorView::~EditorView() {
    // The view of the tree must not outlive its editor, which goes before the window's children.
    delete takeCentralWidget();
}

void EditorView::showDocument() {
    if (!isOpening_)
        return;
    isOpening_ = false;
    rebuildEditorArea();
}

void EditorView::showEvent(QShowEvent* event) {
    // As a rule the document is there before the window is shown.
    if (isOpening_ && !centralWidget())
        setCentralWidget(new OpeningPage);
    QMainWindow::showEvent(event);
}

void EditorView::updateTitle() {
    setWindowTitle(document_->configuration().displayName());
}

void EditorView::rebuildEditorArea() {
    if (isOpening_)
        return;
    if (document_->mode() == EditorMode::tree)
        replaceEditorArea(new TreeView(treeEditor_));
    else
        replaceEditorArea(new TextPage(*document_));
}

void EditorView::replaceEditorArea(QWidget* area) {
    delete takeCentralWidget();
    setCentralWidget(area);
    area->setFocus();
}

} // namespace quelm
