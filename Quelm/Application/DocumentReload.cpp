#include "Quelm/Application/DocumentReload.h"

#include "Quelm/EditorWindow/EditorView.h"
#include "Quelm/Foundation/Disposal.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEditor/TextViewState.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <new>
#include <utility>

namespace quelm {

namespace {

/// For an editor that shows the text: it asks for places at once.
void prepareText(LoadedDocument& document) {
    try {
        if (document.content.text)
            document.content.text->prepare();
    } catch (const std::bad_alloc&) {
        // Then the main thread has to wait for it.
    }
}

} // namespace

DocumentReload::DocumentReload(EditorView& window, const QString& path, Finished finished)
    : window_(window), finished_(std::move(finished)) {
    task_ = startInBackground(
        &window,
        [path, isText = window.document().mode() == EditorMode::text](std::stop_token stop) {
            std::expected<LoadedDocument, FileError> document = loadDocument(path, std::move(stop));
            if (document && isText)
                prepareText(*document);
            return document;
        },
        [this](std::expected<LoadedDocument, FileError> document) {
            if (document)
                carryOver(*std::move(document));
            else
                finish(std::unexpected(std::move(document.error())));
        });
}

void DocumentReload::carryOver(LoadedDocument document) {
    TreeView* view = window_.treeView();
    if (!document.content.tree || !view || !view->editor().hasCurrentRows())
        return finish(ReloadedDocument{std::move(document), std::nullopt});
    // The tree and the rows of before go off the main thread too.
    const DisposedInBackground<TreeViewState> state(TreeViewState::of(*view));
    task_ = startInBackground(
        &window_,
        [state, document = std::move(document)](const std::stop_token& stop) mutable {
            std::optional<CarriedTreeViewState> tree = (*state).carriedOverTo(*document.content.tree, stop);
            return ReloadedDocument{std::move(document), std::move(tree)};
        },
        [this, state](ReloadedDocument reloaded) {
            // What was expanded, selected or scrolled meanwhile is to stay too.
            TreeView* shown = window_.treeView();
            const bool isOutdated = reloaded.tree && shown && !(*state).isStillOf(*shown);
            if (isOutdated)
                carryOver(std::move(reloaded.document));
            else
                finish(std::move(reloaded));
        });
}

void DocumentReload::finish(std::expected<ReloadedDocument, FileError> result) {
    const Finished finished = std::move(finished_);
    finished(std::move(result));
}

void ReloadedDocument::install(EditorView& window) && {
    const JSONTextView* editor = window.textEditor();
    const std::optional<TextViewState> text = editor ? std::optional(TextViewState::of(*editor)) : std::nullopt;
    JSONDocument& shown = window.document();
    shown.configuration().setFileState(document.state);
    if (tree)
        window.treeEditor().setPreparedRows(std::move(tree->rows));
    shown.reload(std::move(document.content));
    window.treeEditor().setPreparedRows(std::nullopt);
    if (TreeView* view = window.treeView(); view && tree)
        tree->restore(*view);
    // Another editor of the text gets its size from the event loop, and its caret put at an error.
    if (JSONTextView* view = window.textEditor(); view && text)
        QMetaObject::invokeMethod(
            view, [view, state = *text] { state.restore(*view); }, Qt::QueuedConnection);
}

} // namespace quelm
