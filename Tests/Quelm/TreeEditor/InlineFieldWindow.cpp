#include "Tests/Quelm/TreeEditor/InlineFieldWindow.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

namespace quelm {

InlineFieldWindow::InlineFieldWindow() : window(std::make_unique<QWidget>()) {
    window->resize(800, 400);
    below = new Below(window.get());
    below->setGeometry(0, 40, 800, 360);
    other = new QLineEdit(window.get());
    other->setGeometry(0, 0, 200, 30);
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

InlineFieldWindow::~InlineFieldWindow() {
    window.reset();
}

void InlineFieldWindow::open(std::optional<NodeKind> kind, std::string_view text) {
    delete field;
    calls.clear();
    sizeChanges = 0;
    field = new InlineField(kind, SharedText(text), below);
    field->onCommit = [this](const SharedText& result) {
        committed = result;
        calls.push_back("commit " + std::string(result.view().substr(0, 100)));
    };
    field->onCancel = [this] { calls.emplace_back("cancel"); };
    const auto place = [this] {
        const int width = std::min(field->sizeHint().width(), mostWidth);
        field->setGeometry(20, 20, width, field->heightForWidth(width));
    };
    QObject::connect(field, &InlineField::sizeHintChanged, field, [this, place] {
        ++sizeChanges;
        place();
    });
    place();
    field->show();
}

void InlineFieldWindow::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&view(), key, modifiers);
}

void InlineFieldWindow::type(const QString& text) {
    // QTest knows the keys of ASCII characters only.
    for (const QChar character : text) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, {}, character);
        QApplication::sendEvent(&view(), &event);
    }
}

bool InlineFieldWindow::claims(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
    event.ignore();
    QApplication::sendEvent(&view(), &event);
    return event.isAccepted();
}

void InlineFieldWindow::compose(const QString& preedit) {
    QInputMethodEvent event(preedit, {});
    QApplication::sendEvent(&view(), &event);
}

void InlineFieldWindow::turnWheel(int steps, Qt::KeyboardModifiers modifiers) {
    const QPointF place(10, 10);
    QWheelEvent event(place, view().viewport()->mapToGlobal(place), {}, {0, -120 * steps}, {}, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(view().viewport(), &event);
}

bool InlineFieldWindow::isScrollBarShown() const {
    return view().verticalScrollBar()->isVisible();
}

QImage InlineFieldWindow::painted() {
    return field->grab().toImage();
}

} // namespace quelm
