#pragma once

#include "Quelm/Foundation/UndoStep.h"

#include <QPointer>
#include <QUndoStack>

#include <cstdint>
#include <exception>
#include <vector>

namespace quelm {

/// The steps behind an undo manager: those that can be undone, then those that can be redone, and how one is taken.
/// It announces nothing. A handler may drop all steps, and destroy the manager as long as the line lives on.
///
/// A step whose targets are gone counts as absent and is dropped when the line passes it. While a step is taken, what
/// is registered becomes that step's handlers, and the stack stays as it is until they have all been called.
class UndoLine {
public:
    enum class Direction : std::uint8_t { undo, redo };

    /// The step that would be taken next; null for none.
    UndoStep* next(Direction direction) const;
    /// The step being taken; null when none is, or when it has been dropped meanwhile.
    UndoStep* running() const { return running_; }
    bool isRunning() const { return isRunning_; }
    /// The step that was registered last; null when it has been dropped.
    UndoStep* lastRegistered() const;

    /// Returns the step that the handler takes back; 0 when it is being taken and has been dropped.
    std::uint64_t add(UndoHandler handler);

    /// The next step, of which there must be one, got a further change.
    void grow();

    /// Calls the handlers of the next step, of which there must be one. Returns what one of them threw; those after it
    /// are not called, and what was registered until then remains.
    std::exception_ptr take(Direction direction);

    /// Drops all steps, the one being taken included: what its handlers register is dropped as well, and those that
    /// were not called yet never are.
    void clear();

    bool isEmpty() const { return stack_.count() == 0; }
    void dropDeadHandlers();

    void setStateToken(StateToken* token);

private:
    struct Run;

    UndoStep* stepAt(int index) const;
    void dropAbsentSteps(Direction direction);
    std::exception_ptr callHandlers(Run& run);
    void settle(Direction direction, const Run& run);
    void pass(Direction direction);
    /// Empties the steps from an index on that are about to go. What handlers hold may be the last owner of a target,
    /// so it must not go before the stack is whole again.
    std::vector<UndoHandler> takeHandlers(int firstIndex);
    void claimChange();
    std::optional<StateToken::Value> currentToken() const;

    QUndoStack stack_;
    UndoStep* running_ = nullptr;
    bool isRunning_ = false;
    std::vector<UndoHandler> opposite_;
    std::uint64_t lastID_ = 0;

    QPointer<StateToken> token_;
    /// The state as it was when a step was last registered, grown or taken.
    StateToken::Value seen_ = 0;
};

} // namespace quelm
