#include "Quelm/TreeEditor/TreeViewState.h"

#include "JSONCore/TreeCounterparts.h"
#include "Quelm/TreeEditor/TreeView.h"
#include "TextCore/Check.h"

#include <new>

namespace quelm {

void CarriedTreeViewState::restore(TreeView& view) const {
    const std::optional<std::int64_t> row = anchor ? view.editor().outline().index(*anchor) : std::nullopt;
    if (row)
        view.scrollRowToTop(*row, pixelsAboveAnchor);
    else
        view.verticalAxis().setPosition(verticalPosition);
    view.horizontalAxis().setPosition(horizontalPosition);
}

TreeViewState TreeViewState::of(TreeView& view) {
    const TreeEditor& editor = view.editor();
    require(editor.hasCurrentRows(), "what a tree view shows is asked for when it has rows");
    std::vector<NodeID> visible = view.visibleNodes();
    const auto area =
        visible.empty() ? std::nullopt : view.rowArea(editor.outline().index(visible.front()).value_or(0));
    return {.tree = *editor.tree(),
            .outline = editor.outline(),
            .selection = editor.selection(),
            .visible = std::move(visible),
            .pixelsAboveFirst = area ? -area->top() : 0,
            .rowHeight = view.rowStyle().rowHeight,
            .verticalPosition = view.verticalAxis().position(),
            .horizontalPosition = view.horizontalAxis().position()};
}

bool TreeViewState::isStillOf(TreeView& view) const {
    const TreeEditor& editor = view.editor();
    return editor.hasCurrentRows() && editor.tree()->isSameValue(tree) && editor.selection() == selection &&
           editor.outline().rowCount() == outline.rowCount() &&
           editor.outline().expanded().size() == outline.expanded().size() &&
           view.verticalAxis().position() == verticalPosition && view.visibleNodes() == visible;
}

std::optional<CarriedTreeViewState> TreeViewState::carriedOverTo(const JSONTree& other,
                                                                 const std::stop_token& stop) const {
    try {
        const TreeCounterparts counterparts(tree, other);
        CarriedTreeViewState carried{
            .rows = {.outline = counterparts.outline(outline, stop), .selection = other.root()},
            .anchor = std::nullopt,
            .verticalPosition = verticalPosition,
            .horizontalPosition = horizontalPosition};
        if (stop.stop_requested())
            return std::nullopt;
        // A row that has gone, or is hidden now, cannot be selected: the nearest above it is.
        const TreeOutline& rows = carried.rows.outline;
        NodeID selected = selection ? counterparts.findNearest(*selection) : other.root();
        while (!rows.index(selected))
            selected = other.parent(selected).value_or(other.root());
        carried.rows.selection = selected;

        for (std::size_t row = 0; row < visible.size() && !carried.anchor && !stop.stop_requested(); ++row) {
            const std::optional<NodeID> counterpart = counterparts.find(visible[row]);
            if (!counterpart || !rows.index(*counterpart))
                continue;
            carried.anchor = counterpart;
            carried.pixelsAboveAnchor = pixelsAboveFirst - static_cast<std::int64_t>(row) * rowHeight;
        }
        return carried;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

} // namespace quelm
