#include "Quelm/EditorWindow/StateNotices.h"

#include <QAccessible>
#include <QWidget>

#include <utility>

namespace quelm {

void StateNotices::announce(StatusContents::State state, QWidget& widget) {
    using State = StatusContents::State;
    if (state == State::unknown || state == announced_)
        return;
    const State before = std::exchange(announced_, state);
    if ((before != State::invalid && state != State::invalid) || !receiver_.isListening())
        return;
    for (const QAccessible::Event kind : {QAccessible::NameChanged, QAccessible::Alert}) {
        QAccessibleEvent event(&widget, kind);
        receiver_.take(event);
    }
}

} // namespace quelm
