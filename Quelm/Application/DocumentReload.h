#pragma once

#include "Quelm/Documents/DocumentLoading.h"
#include "Quelm/Foundation/BackgroundTask.h"
#include "Quelm/TreeEditor/TreeViewState.h"

#include <QString>

#include <expected>
#include <functional>
#include <optional>

namespace quelm {

class EditorView;

/// A file as it is now, with what its window shows of the tree carried over to it.
struct ReloadedDocument {
    LoadedDocument document;
    /// Absent when there is no tree on one side, or no memory to carry it over.
    std::optional<CarriedTreeViewState> tree;

    /// Puts it into the window in place of what the document holds, and the state of the file into its configuration.
    /// Mode, expansion, selection and place stay as far as the content allows. The main thread does what follows the
    /// viewport only.
    void install(EditorView& window) &&;
};

/// Reads the file of a window anew, off the main thread. Its end cancels without a word. For the main thread.
class DocumentReload {
public:
    using Finished = std::function<void(std::expected<ReloadedDocument, FileError>)>;

    /// Begins. `finished` is called once, from the event loop, with what can be installed at once; it may destroy this.
    /// The window must outlive it.
    DocumentReload(EditorView& window, const QString& path, Finished finished);

private:
    struct Carried;

    void carryOver(LoadedDocument document);
    void finish(std::expected<ReloadedDocument, FileError> result);

    EditorView& window_;
    Finished finished_;
    BackgroundTask task_;
};

} // namespace quelm
