#include "Quelm/Foundation/UndoLine.h"

#include "TextCore/Check.h"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace quelm {

/// One step while it is taken.
struct UndoLine::Run {
    std::vector<UndoHandler> handlers;
    std::optional<StateToken::Value> tokenAtStart;
    bool isComplete = true;
};

UndoStep* UndoLine::stepAt(int index) const {
    // The stack hands out constant commands, but only this line has made them.
    return const_cast<UndoStep*>(static_cast<const UndoStep*>(stack_.command(index))); // NOLINT
}

UndoStep* UndoLine::next(Direction direction) const {
    const int distance = direction == Direction::undo ? -1 : 1;
    int index = direction == Direction::undo ? stack_.index() - 1 : stack_.index();
    for (; 0 <= index && index < stack_.count(); index += distance)
        if (UndoStep* step = stepAt(index); step->isAlive())
            return step;
    return nullptr;
}

UndoStep* UndoLine::lastRegistered() const {
    // Registering drops all that could be redone, so the youngest step is at the end wherever the line stands.
    UndoStep* last = isEmpty() ? nullptr : stepAt(stack_.count() - 1);
    return last && last->stepID() == lastID_ ? last : nullptr;
}

std::uint64_t UndoLine::add(UndoHandler handler) {
    if (isRunning_) {
        if (!running_)
            return 0;
        opposite_.push_back(std::move(handler));
        return running_->stepID();
    }
    claimChange();
    auto* step = new UndoStep(++lastID_, std::move(handler));
    if (token_)
        step->states = {token_->previous(), token_->current()};
    const std::vector<UndoHandler> dropped = takeHandlers(stack_.index());
    stack_.push(step);
    return step->stepID();
}

void UndoLine::grow() {
    require(next(Direction::undo) && !isRunning_, "the step that grows can be undone");
    claimChange();
    UndoStep* step = next(Direction::undo);
    if (!step || !token_)
        return;
    // With another change in between, undoing the step leads to a state that never was.
    if (step->states.after != token_->previous())
        step->states.before.reset();
    step->states.after = token_->current();
}

std::exception_ptr UndoLine::take(Direction direction) {
    dropAbsentSteps(direction);
    UndoStep* step = next(direction);
    require(step && !isRunning_, "a step to take is there");
    Run run{step->takeHandlers(), currentToken()};
    running_ = step;
    isRunning_ = true;
    std::exception_ptr error = callHandlers(run);
    if (running_)
        settle(direction, run);
    running_ = nullptr;
    isRunning_ = false;
    return error;
}

std::exception_ptr UndoLine::callHandlers(Run& run) {
    for (const UndoHandler& handler : run.handlers | std::views::reverse) {
        if (!running_)
            return nullptr;
        if (!handler.isAlive()) {
            run.isComplete = false;
            continue;
        }
        try {
            handler.call();
        } catch (...) {
            run.isComplete = false;
            return std::current_exception();
        }
    }
    return nullptr;
}

void UndoLine::settle(Direction direction, const Run& run) {
    const bool isDropped = std::ranges::none_of(opposite_, &UndoHandler::isAlive);
    const bool undoes = direction == Direction::undo;
    const auto left = undoes ? running_->states.after : running_->states.before;
    const auto reached = undoes ? running_->states.before : running_->states.after;
    const bool isKnown = !isDropped && run.isComplete && left && left == run.tokenAtStart && reached;
    // A handler that registers nothing is no step back: only what it changed counts.
    if (token_ && !isDropped && !isKnown && token_->current() == run.tokenAtStart)
        token_->advance();
    // Whoever heard of that may have dropped everything.
    if (!running_)
        return;

    const std::optional<StateToken::Value> token = isKnown ? reached : currentToken();
    running_->states = undoes ? UndoStep::States{token, run.tokenAtStart} : UndoStep::States{run.tokenAtStart, token};
    std::vector<UndoHandler> opposite = std::exchange(opposite_, {});
    if (isDropped)
        running_->setObsolete(true);
    else
        running_->setHandlers(std::move(opposite));
    pass(direction);
    running_ = nullptr;
    isRunning_ = false;

    seen_ = token.value_or(0);
    if (token_ && token)
        token_->moveTo(*token);
}

void UndoLine::pass(Direction direction) {
    if (direction == Direction::undo)
        stack_.undo();
    else
        stack_.redo();
}

std::vector<UndoHandler> UndoLine::takeHandlers(int firstIndex) {
    std::vector<UndoHandler> taken;
    for (int index = firstIndex; index < stack_.count(); ++index)
        std::ranges::move(stepAt(index)->takeHandlers(), std::back_inserter(taken));
    return taken;
}

void UndoLine::clear() {
    const std::vector<UndoHandler> opposite = std::exchange(opposite_, {});
    const std::vector<UndoHandler> dropped = takeHandlers(0);
    running_ = nullptr;
    stack_.clear();
}

void UndoLine::dropDeadHandlers() {
    std::vector<UndoHandler> dropped;
    bool isAnyAlive = isRunning_;
    for (int index = 0; index < stack_.count(); ++index) {
        std::ranges::move(stepAt(index)->takeDeadHandlers(), std::back_inserter(dropped));
        isAnyAlive = isAnyAlive || stepAt(index)->isAlive();
    }
    if (!isAnyAlive)
        stack_.clear();
}

void UndoLine::dropAbsentSteps(Direction direction) {
    const bool undoes = direction == Direction::undo;
    while (undoes ? stack_.index() > 0 : stack_.index() < stack_.count()) {
        UndoStep* step = stepAt(undoes ? stack_.index() - 1 : stack_.index());
        if (step->isAlive())
            return;
        step->setObsolete(true);
        pass(direction);
    }
}

void UndoLine::setStateToken(StateToken* token) {
    token_ = token;
    seen_ = currentToken().value_or(0);
    for (int index = 0; index < stack_.count(); ++index)
        stepAt(index)->states = {};
}

void UndoLine::claimChange() {
    if (!token_)
        return;
    // Who registered the change did not move the token for it.
    if (token_->current() == seen_)
        token_->advance();
    seen_ = token_->current();
}

std::optional<StateToken::Value> UndoLine::currentToken() const {
    return token_ ? std::optional(token_->current()) : std::nullopt;
}

} // namespace quelm
