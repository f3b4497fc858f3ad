#pragma once

#include "Quelm/Foundation/StateToken.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

namespace quelm {

/// The steps of a window that can be undone and done again, in one line. For the main thread.
///
/// A change is made first and then registered, with a handler that takes it back. The handler makes the opposite change
/// in the same way and so registers what does the change again: what is registered while a step is undone becomes the
/// redo of that very step, what is registered while it is redone becomes its undo again. A step whose handler registers
/// nothing, or whose target is gone, is dropped. What handlers register in one run is one step: it is taken back in
/// reverse order.
///
/// A handler may destroy targets and the manager itself, and may drop all steps: what it registers is then dropped as
/// well. What it throws reaches whoever called `undo` or `redo`; what it had registered until then remains the opposite
/// of its step.
class UndoManager : public QObject {
    Q_OBJECT

public:
    explicit UndoManager(QObject* parent = nullptr);
    ~UndoManager() override;

    /// Names a step for as long as the manager lives; 0 is none.
    using StepID = std::uint64_t;

    /// One step that `handler(target)` takes back. The target is held weakly. The steps that were undone are dropped,
    /// unless this is called by a handler. Returns the step; 0 within a handler that has dropped all steps.
    template <class Target>
    StepID registerUndo(Target* target, std::function<void(Target&)> handler) {
        return registerHandler(target, [target, handler = std::move(handler)] { handler(*target); });
    }

    /// What the last registered step, or within a handler the step being undone or redone, is called.
    void setActionName(const QString& name);

    bool canUndo() const;
    bool canRedo() const;
    /// The name of the step that would be undone; empty without one or when it has none.
    QString undoActionName() const;
    QString redoActionName() const;
    /// "Deshacer Escribir", or "Deshacer" alone.
    QString undoMenuItemTitle() const;
    /// "Rehacer Escribir", or "Rehacer" alone.
    QString redoMenuItemTitle() const;

    /// Takes back the last step that is not undone. Nothing when there is none, or within a handler.
    void undo();
    void redo();
    /// While it is suspended nothing can be undone or done again (as if there were no steps), and steps are kept as
    /// they are: for as long as something else has the document in hand. Steps can still be registered. No change joins
    /// a step that was registered before the suspension or during it.
    void setSuspended(bool isSuspended);
    bool isSuspended() const;
    bool isUndoing() const;
    bool isRedoing() const;

    /// The step that `undo` would take back; 0 for none, when a step can be redone, or when nothing may join it.
    StepID openStep() const;
    /// The open step, of which there must be one, grew by a further change, just made: its state after it is the
    /// present one. For whoever joins changes in one step.
    void noteOpenStepGrew();

    /// Drops all steps, within a handler also the one being undone or redone. The state token stays.
    void removeAllActions();

    /// The token of the state that the steps change, held weakly. Whoever makes a change advances the token once, then
    /// registers the step or says that it grew; where the token was not advanced since, that does it. Undoing a step
    /// moves the token to what it was before that step, redoing to what it was after it, if nothing else changed the
    /// state in between; otherwise to a new one.
    void setStateToken(StateToken* token);

Q_SIGNALS:
    /// Steps, names or what can be undone or redone changed.
    void changed();
    /// A step is about to be undone or redone: whoever joins changes in one step must end it.
    void willUndoOrRedo();

private:
    StepID registerHandler(QObject* target, std::function<void()> handler);
    void forgetTarget(QObject* target);

    class Implementation;
    /// Shared with the call that runs a handler, which may destroy the manager.
    std::shared_ptr<Implementation> implementation_;
};

} // namespace quelm
