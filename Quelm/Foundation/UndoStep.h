#pragma once

#include "Quelm/Foundation/StateToken.h"

#include <QObject>
#include <QPointer>
#include <QUndoCommand>

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace quelm {

/// A function that is to be called only while its target lives.
struct UndoHandler {
    QPointer<QObject> target;
    std::function<void()> call;

    bool isAlive() const { return !target.isNull(); }
};

/// One step of an undo manager: what takes it back or, once it has been undone, what does it again.
///
/// As a command it does nothing by itself. The manager calls the handlers before it moves its stack over the step, so
/// that they are free to throw, to drop all steps, or to destroy the manager.
class UndoStep : public QUndoCommand {
public:
    UndoStep(std::uint64_t id, UndoHandler handler) : id_(id) { handlers_.push_back(std::move(handler)); }

    std::uint64_t stepID() const { return id_; }

    /// In the order in which they were registered; they are called in the opposite one.
    void setHandlers(std::vector<UndoHandler> handlers) { handlers_ = std::move(handlers); }
    std::vector<UndoHandler> takeHandlers() { return std::exchange(handlers_, {}); }
    std::vector<UndoHandler> takeDeadHandlers();

    /// Whether there is anything to call.
    bool isAlive() const;

    /// The states on either side of the step; absent where they are not known.
    struct States {
        std::optional<StateToken::Value> before;
        std::optional<StateToken::Value> after;
    };
    States states;

private:
    const std::uint64_t id_;
    std::vector<UndoHandler> handlers_;
};

} // namespace quelm
