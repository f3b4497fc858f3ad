#include "Quelm/Foundation/UndoStep.h"

#include <algorithm>
#include <iterator>

namespace quelm {

std::vector<UndoHandler> UndoStep::takeDeadHandlers() {
    const auto dead = std::ranges::stable_partition(handlers_, &UndoHandler::isAlive);
    std::vector<UndoHandler> taken(std::make_move_iterator(dead.begin()), std::make_move_iterator(dead.end()));
    handlers_.erase(dead.begin(), dead.end());
    return taken;
}

bool UndoStep::isAlive() const {
    return std::ranges::any_of(handlers_, &UndoHandler::isAlive);
}

} // namespace quelm
