#include "Quelm/TextEngine/TextEditing.h"
#include "TextCore/Check.h"

#include <utility>

namespace quelm {

EditStep TextEditing::replacementOf(TextRange range, const TextRope& text) const {
    return {.replacements = {{range, text}},
            .selection = TextSelection::at(range.location + text.utf16Count()),
            .selectionBefore = range == selection_.range() ? selection_ : TextSelection{range.location, range.end()}};
}

EditStep TextEditing::make(const EditStep& step) {
    require(phase_ == Phase::idle, "an edit announces itself before the next one is made");
    phase_ = Phase::changing;
    EditStep opposite = step.applyTo(*storage_);
    selection_ = step.selection;
    phase_ = Phase::announcing;
    Q_EMIT textDidChange();
    phase_ = Phase::idle;
    return opposite;
}

void TextEditing::performTyping(TypingStep::Kind kind, const EditStep& step) {
    const TextSelection selectionBefore = selection_;
    const qint64 time = clock_();
    const auto joined = typingStep_;
    const bool joins = joined && undoManager_ && undoManager_->openStep() == joined->id() &&
                       time - joined->time() <= longestTypingPause &&
                       joined->isContinuedBy(kind, step.replacements.front().range);
    heldHalf_.clear();

    auto opposite = std::make_shared<EditStep>(make(step));
    if (joins) {
        joined->extend(*opposite, time);
        undoManager_->noteOpenStepGrew();
    } else {
        const QString name = kind == TypingStep::Kind::inserting ? tr("Escribir") : tr("Borrar");
        const UndoManager::StepID id = registerStep(opposite, name);
        typingStep_ = std::make_shared<TypingStep>(kind, std::move(opposite), id, time);
    }
    announceSelectionUnless(selectionBefore);
}

void TextEditing::performAlone(const EditStep& step, const QString& name) {
    const TextSelection selectionBefore = selection_;
    endTypingStep();
    registerStep(std::make_shared<EditStep>(make(step)), name);
    announceSelectionUnless(selectionBefore);
}

UndoManager::StepID TextEditing::registerStep(std::shared_ptr<const EditStep> opposite, const QString& name) {
    if (!undoManager_)
        return 0;
    const auto handler = [opposite = std::move(opposite), name](TextEditing& editing) {
        // Doing the opposite of the opposite registers in the same way, as the step's redo.
        editing.performAlone(*opposite, name);
    };
    const UndoManager::StepID id = undoManager_->registerUndo<TextEditing>(this, handler);
    undoManager_->setActionName(name);
    return id;
}

} // namespace quelm
