#pragma once

#include "JSONCore/JSONContent.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace quelm::bench {

/// A document's tree in a shown window with an undo manager, driven as a user drives it: whatever is done is waited for
/// until all that it changed is painted.
class TreeWindow : public QObject {
public:
    explicit TreeWindow(JSONTree tree);
    ~TreeWindow() override;

    JSONDocument& document() { return *document_; }
    TreeEditor& editor() { return *editor_; }
    TreeView& view() { return *view_; }
    UndoManager& undoManager() { return undoManager_; }
    const JSONTree& tree() const { return *editor_->tree(); }
    const TreeOutline& outline() const { return editor_->outline(); }

    /// The seconds from the start of `work` to the painted frame, of which there must be one.
    double secondsToFrame(const std::function<void()>& work) { return secondsToFrame(work, *view_->viewport()); }
    /// The same to a frame of another widget.
    double secondsToFrame(const std::function<void()>& work, QWidget& painted);

    /// A key to whatever has the focus: the tree, or the field that is open.
    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {});
    void turnWheel(int notches);

    /// Selects a node and shows it without being measured.
    void goTo(NodeID id);

    /// Handles events until all that there is to paint is painted.
    void settle();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::shared_ptr<JSONDocument> document_;
    UndoManager undoManager_;
    std::unique_ptr<TreeEditor> editor_;
    std::unique_ptr<QWidget> window_;
    TreeView* view_;
    std::int64_t frames_ = 0;
};

} // namespace quelm::bench
