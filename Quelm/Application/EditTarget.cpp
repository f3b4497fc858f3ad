#include "Quelm/Application/EditTarget.h"

#include "Quelm/Foundation/Preferences.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/TreeEditor.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>

namespace quelm {

namespace {

/// May ask another program.
bool clipboardHasText() {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasText();
}

/// Undo and redo of a manager's steps.
class StepsTarget : public EditTarget {
public:
    explicit StepsTarget(UndoManager* steps) : steps_(steps) {}

    bool canPerform(EditCommand command) const override {
        if (!steps_)
            return false;
        return command == EditCommand::undo ? steps_->canUndo() : command == EditCommand::redo && steps_->canRedo();
    }
    void perform(EditCommand command) override {
        if (command == EditCommand::undo)
            steps_->undo();
        else
            steps_->redo();
    }
    bool mightPerform(EditCommand command) const override { return canPerform(command); }
    QString undoTitle() const override { return steps_ ? steps_->undoMenuItemTitle() : EditTarget::undoTitle(); }
    QString redoTitle() const override { return steps_ ? steps_->redoMenuItemTitle() : EditTarget::redoTitle(); }

private:
    UndoManager* steps_;
};

class TextViewTarget : public StepsTarget {
public:
    explicit TextViewTarget(TextView& view)
        : StepsTarget(view.isReadOnly() ? nullptr : view.editing().undoManager()), view_(view) {}

    bool canPerform(EditCommand command) const override {
        switch (command) {
        case EditCommand::cut:
        case EditCommand::delete_:
            return view_.canCut();
        case EditCommand::copy:
            return view_.canCopy();
        case EditCommand::paste:
            return view_.canPaste();
        case EditCommand::selectAll:
            return view_.textStorage().length() > 0;
        default:
            return StepsTarget::canPerform(command);
        }
    }
    void perform(EditCommand command) override {
        switch (command) {
        case EditCommand::undo:
            return view_.undo();
        case EditCommand::redo:
            return view_.redo();
        case EditCommand::cut:
            return view_.cut();
        case EditCommand::copy:
            return view_.copy();
        case EditCommand::paste:
            return view_.paste();
        case EditCommand::delete_:
            return view_.deleteSelection();
        case EditCommand::selectAll:
            return view_.selectAll();
        }
    }
    bool mightPerform(EditCommand command) const override {
        return !view_.isReadOnly() || command == EditCommand::copy || command == EditCommand::selectAll;
    }

private:
    TextView& view_;
};

class LineEditTarget : public EditTarget {
public:
    explicit LineEditTarget(QLineEdit& field) : field_(field) {}

    bool canPerform(EditCommand command) const override {
        const bool isEditable = !field_.isReadOnly();
        const bool isReadable = field_.echoMode() == QLineEdit::Normal;
        switch (command) {
        case EditCommand::undo:
            return isEditable && field_.isUndoAvailable();
        case EditCommand::redo:
            return isEditable && field_.isRedoAvailable();
        case EditCommand::cut:
            return isEditable && isReadable && field_.hasSelectedText();
        case EditCommand::copy:
            return isReadable && field_.hasSelectedText();
        case EditCommand::paste:
            return isEditable && clipboardHasText();
        case EditCommand::delete_:
            return isEditable && field_.hasSelectedText();
        case EditCommand::selectAll:
            return !field_.text().isEmpty();
        }
        return false;
    }
    void perform(EditCommand command) override {
        switch (command) {
        case EditCommand::undo:
            return field_.undo();
        case EditCommand::redo:
            return field_.redo();
        case EditCommand::cut:
            return field_.cut();
        case EditCommand::copy:
            return field_.copy();
        case EditCommand::paste:
            return field_.paste();
        case EditCommand::delete_:
            return field_.del();
        case EditCommand::selectAll:
            return field_.selectAll();
        }
    }
    bool mightPerform(EditCommand) const override { return true; }

private:
    QLineEdit& field_;
};

/// The selected node, which is exchanged as JSON, and the steps of its window.
class TreeTarget : public StepsTarget {
public:
    TreeTarget(TreeEditor& editor, UndoManager* steps) : StepsTarget(steps), editor_(editor) {}

    bool canPerform(EditCommand command) const override {
        return mightPerform(command) && (command != EditCommand::paste || clipboardHasText());
    }
    bool mightPerform(EditCommand command) const override {
        switch (command) {
        case EditCommand::cut:
        case EditCommand::delete_:
            return !editor_.isReadOnly() && hasSelection() && editor_.selection() != editor_.tree()->root();
        case EditCommand::copy:
            return hasSelection();
        case EditCommand::paste:
            return !editor_.isReadOnly() && hasSelection();
        case EditCommand::selectAll:
            return false;
        default:
            return StepsTarget::canPerform(command);
        }
    }
    void perform(EditCommand command) override {
        switch (command) {
        case EditCommand::cut:
            if (editor_.copyJSON(Preferences::preferredStyle()))
                editor_.remove();
            return;
        case EditCommand::copy:
            editor_.copyJSON(Preferences::preferredStyle());
            return;
        case EditCommand::paste:
            return editor_.pasteJSON();
        case EditCommand::delete_:
            return editor_.remove();
        default:
            return StepsTarget::perform(command);
        }
    }

private:
    bool hasSelection() const { return editor_.selection() && editor_.isLinked(*editor_.selection()); }

    TreeEditor& editor_;
};

} // namespace

QString EditTarget::undoTitle() const {
    return UndoManager::tr("Deshacer");
}

QString EditTarget::redoTitle() const {
    return UndoManager::tr("Rehacer");
}

std::unique_ptr<EditTarget> editTargetOf(QWidget* focused, UndoManager* windowSteps, TreeEditor* tree) {
    if (auto* view = qobject_cast<TextView*>(focused))
        return std::make_unique<TextViewTarget>(*view);
    if (auto* field = qobject_cast<QLineEdit*>(focused))
        return std::make_unique<LineEditTarget>(*field);
    if (tree && tree->hasCurrentRows())
        return std::make_unique<TreeTarget>(*tree, windowSteps);
    return std::make_unique<StepsTarget>(windowSteps);
}

} // namespace quelm
