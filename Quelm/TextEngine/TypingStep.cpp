#include "Quelm/TextEngine/TypingStep.h"

#include "TextCore/Check.h"

#include <algorithm>
#include <utility>

namespace quelm {

TypingStep::TypingStep(Kind kind, std::shared_ptr<EditStep> opposite, UndoManager::StepID id, qint64 time)
    : kind_(kind), opposite_(std::move(opposite)), id_(id), time_(time) {
    require(opposite_->replacements.size() == 1, "a step of typing is one replacement");
}

bool TypingStep::isContinuedBy(Kind kind, TextRange replaced) const {
    if (kind != kind_)
        return false;
    const TextRange covered = opposite_->replacements.front().range;
    if (kind == Kind::inserting)
        return replaced.location == covered.end();
    return replaced.location == covered.location || replaced.end() == covered.location;
}

void TypingStep::extend(const EditStep& opposite, qint64 time) {
    auto& [covered, replaced] = opposite_->replacements.front();
    const auto& [addedRange, addedText] = opposite.replacements.front();
    // Only Backspace changes what is before the step.
    const bool isBefore = addedRange.location < covered.location;
    replaced = isBefore ? addedText + replaced : replaced + addedText;
    covered = TextRange::between(std::min(covered.location, addedRange.location), addedRange.end());
    if (!addedText.isEmpty())
        opposite_->selection = {covered.location, covered.location + replaced.utf16Count()};
    opposite_->selectionBefore = opposite.selectionBefore;
    time_ = time;
}

} // namespace quelm
