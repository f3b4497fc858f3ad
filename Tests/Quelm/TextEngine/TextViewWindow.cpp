#include "Tests/Quelm/TextEngine/TextViewWindow.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace quelm {

TextViewWindow::TextViewWindow() {
    openRope({});
}

TextViewWindow::~TextViewWindow() {
    window.reset();
}

void TextViewWindow::show(std::shared_ptr<TextStorage> storage) {
    window.reset();
    undoManager.removeAllActions();
    window = std::make_unique<QWidget>();
    view = new TextView(std::move(storage));
    view->setUndoManager(&undoManager);
    auto* layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view);
    window->resize(700, 500);
    window->show();
    view->setFocus();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

void TextViewWindow::openRope(const TextRope& text) {
    show(std::make_shared<TextStorage>(text));
}

void TextViewWindow::open(const QString& marked) {
    QString text = marked;
    text.remove(u'|').remove(u'^');
    openRope(TextRope::repairing(text.toStdU16String()));
    const qint64 bar = marked.indexOf(u'|');
    const qint64 circumflex = marked.indexOf(u'^');
    const qint64 caret = bar - (circumflex >= 0 && circumflex < bar ? 1 : 0);
    const qint64 anchor = circumflex - (bar < circumflex ? 1 : 0);
    if (bar >= 0)
        view->editing().setSelection({circumflex < 0 ? caret : anchor, caret});
}

QString TextViewWindow::text() const {
    return view->textStorage().string({0, view->textStorage().length()});
}

QString TextViewWindow::marked() const {
    QString result = text();
    const TextSelection selection = view->editing().selection();
    if (!selection.isEmpty() && selection.anchor > selection.caret)
        result.insert(selection.anchor, u'^');
    result.insert(selection.caret, u'|');
    if (selection.anchor < selection.caret)
        result.insert(selection.anchor, u'^');
    return result;
}

void TextViewWindow::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(view, key, modifiers);
}

void TextViewWindow::type(const QString& text) {
    QTest::keyClicks(view, text);
}

bool TextViewWindow::claims(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text) {
    QKeyEvent event(QEvent::ShortcutOverride, key, modifiers, text);
    event.ignore();
    QApplication::sendEvent(view, &event);
    return event.isAccepted();
}

QPoint TextViewWindow::place(qint64 offset) const {
    const QRect area = view->caretRectangleAt(offset);
    return {area.left(), area.center().y()};
}

void TextViewWindow::click(QPoint place, Qt::KeyboardModifiers modifiers) {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, place);
}

void TextViewWindow::moveMouse(QPoint place, Qt::MouseButtons buttons) {
    // QTest moves the mouse without its buttons.
    QMouseEvent event(QEvent::MouseMove, place, view->viewport()->mapToGlobal(place), Qt::NoButton, buttons, {});
    QApplication::sendEvent(view->viewport(), &event);
}

void TextViewWindow::drag(QPoint from, QPoint to) {
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, from);
    moveMouse(to);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, to);
}

void TextViewWindow::turnWheel(QPoint angle, Qt::KeyboardModifiers modifiers, QPoint pixels) {
    const QPointF place(100, 100);
    QWheelEvent event(place, view->viewport()->mapToGlobal(place), pixels, angle, {}, modifiers, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(view->viewport(), &event);
}

void TextViewWindow::compose(const QString& preedit) {
    QInputMethodEvent event(preedit, {});
    QApplication::sendEvent(view, &event);
}

void TextViewWindow::commit(const QString& text, int replacementStart, int replacementLength) {
    QInputMethodEvent event;
    event.setCommitString(text, replacementStart, replacementLength);
    QApplication::sendEvent(view, &event);
}

QImage TextViewWindow::painted() {
    return view->viewport()->grab().toImage();
}

} // namespace quelm
