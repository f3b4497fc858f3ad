#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

namespace quelm {

namespace {

Qt::KeyboardModifiers heldWith(const QKeyEvent& event) {
    return event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

/// Menus, other programs and other windows give the focus back.
bool isPassing(Qt::FocusReason reason) {
    return reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason || reason == Qt::ActiveWindowFocusReason;
}

bool isMenu(const QWidget& widget) {
    return qobject_cast<const QMenuBar*>(&widget) || qobject_cast<const QMenu*>(&widget);
}

} // namespace

bool InlineField::eventFilter(QObject* watched, QEvent* event) {
    // Whoever is told that the field is done may delete it: then nobody may get the event, whose receiver is gone too.
    const QPointer<InlineField> self(this);
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (meaningOf(static_cast<const QKeyEvent&>(*event)) == Key::other)
            break;
        event->accept();
        return true;
    case QEvent::KeyPress:
        if (!handleKey(static_cast<const QKeyEvent&>(*event)))
            break;
        event->accept();
        return true;
    case QEvent::InputMethod:
        // A composition takes room too, once it is shown.
        QMetaObject::invokeMethod(this, &InlineField::updateSize, Qt::QueuedConnection);
        break;
    case QEvent::FocusIn:
        update();
        break;
    case QEvent::FocusOut:
        update();
        leave(static_cast<const QFocusEvent&>(*event));
        break;
    default:
        break;
    }
    return !self || QWidget::eventFilter(watched, event);
}

// Keys.

InlineField::Key InlineField::meaningOf(const QKeyEvent& event) const {
    const Qt::KeyboardModifiers held = heldWith(event);
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!held)
            return Key::finish;
        if (held != Qt::ShiftModifier && held != Qt::AltModifier)
            return Key::other;
        return isSingleLine_ ? Key::finish : Key::lineFeed;
    case Qt::Key_Escape:
        return held ? Key::other : Key::cancel;
    case Qt::Key_Tab:
        return held || !onTab ? Key::other : Key::tab;
    case Qt::Key_Backtab:
        return onBacktab ? Key::backtab : Key::other;
    default:
        return Key::other;
    }
}

bool InlineField::handleKey(const QKeyEvent& event) {
    const Key key = meaningOf(event);
    if (key == Key::other)
        return false;
    if (textView_->isComposing() && key != Key::tab && key != Key::backtab)
        return handleComposingKey(key);
    // The key that opened the field may still be held.
    if (event.isAutoRepeat() && key != Key::lineFeed)
        return true;
    switch (key) {
    case Key::finish:
        finish();
        break;
    case Key::cancel:
        cancel();
        break;
    case Key::tab:
        finishAndGo(onTab);
        break;
    case Key::backtab:
        finishAndGo(onBacktab);
        break;
    default:
        textView_->editing().typeLineFeed();
    }
    return true;
}

/// The key is the input method's, which had no use for it: accepting what it composed is all that the key still does.
bool InlineField::handleComposingKey(Key key) {
    if (key != Key::cancel)
        textView_->finishComposing();
    return true;
}

void InlineField::finishAndGo(std::function<void()> next) {
    if (isFinished_)
        return;
    finish();
    next();
}

void InlineField::keyPressEvent(QKeyEvent* event) {
    // What the text has no use for is not meant for what is below it.
    event->accept();
}

// The focus.

void InlineField::leave(const QFocusEvent& event) {
    if (!isPassing(event.reason()))
        finish();
}

/// A menu that had the focus from here may pass it on to somebody else.
void InlineField::noteFocusElsewhere(const QWidget* old, const QWidget* now) {
    const bool isHere = old == textView_ || now == textView_;
    if (!isFinished_ && isVisible() && !isHere && now && now->window() == window() && !isMenu(*now))
        finish();
}

} // namespace quelm
