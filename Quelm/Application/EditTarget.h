#pragma once

#include <QString>

#include <cstdint>
#include <memory>

class QWidget;

namespace quelm {

class TreeEditor;
class UndoManager;

/// What the menu "Edición" asks of whatever has the focus.
enum class EditCommand : std::uint8_t { undo, redo, cut, copy, paste, delete_, selectAll };

/// The one that the commands act on at a moment. It refers to its widget and is made anew for every use.
class EditTarget {
public:
    virtual ~EditTarget() = default;

    virtual bool canPerform(EditCommand command) const = 0;
    /// True at least where `canPerform` is. Asks neither the clipboard nor anything else that has to be asked anew
    /// whenever the target changes unannounced: for items that are not seen but can be reached by their keys.
    virtual bool mightPerform(EditCommand command) const = 0;
    /// The command must be one that can be performed.
    virtual void perform(EditCommand command) = 0;

    /// "Deshacer Escribir", or "Deshacer" alone.
    virtual QString undoTitle() const;
    virtual QString redoTitle() const;
};

/// A text view or text field that has the focus; for any other widget, or none, the selected node of the window's tree
/// while its document is shown as one, else the steps of the window alone. `windowSteps` and `tree` may be null.
std::unique_ptr<EditTarget> editTargetOf(QWidget* focused, UndoManager* windowSteps, TreeEditor* tree);

} // namespace quelm
