#pragma once

#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/EditStep.h"

#include <cstdint>
#include <memory>

namespace quelm {

/// An undo step that grows while keys type on, or delete on, at one place. It shares the value that takes the step back
/// with the handler registered for it, and extends that in place.
class TypingStep {
public:
    enum class Kind : std::uint8_t { inserting, deleting };

    /// `opposite` takes back the first change of the step, one replacement, which was made at `time` (milliseconds of
    /// any clock).
    TypingStep(Kind kind, std::shared_ptr<EditStep> opposite, UndoManager::StepID id, qint64 time);

    UndoManager::StepID id() const { return id_; }
    qint64 time() const { return time_; }

    /// Whether a change of `replaced`, a stretch of the present text, goes on where the last one ended: typing after
    /// what was typed, deleting on either side of what was deleted.
    bool isContinuedBy(Kind kind, TextRange replaced) const;

    /// Takes in a change that continues the step, given what takes it back.
    void extend(const EditStep& opposite, qint64 time);

private:
    const Kind kind_;
    const std::shared_ptr<EditStep> opposite_;
    const UndoManager::StepID id_;
    qint64 time_;
};

} // namespace quelm
