#include "Benchmarks/Window/TreeWindow.h"

#include "Benchmarks/Harness/Timing.h"
#include "TextCore/Check.h"

#include <QApplication>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace quelm::bench {

namespace {

std::shared_ptr<JSONDocument> documentOf(JSONTree tree) {
    auto document = std::make_shared<JSONDocument>();
    JSONContent content;
    content.tree = std::move(tree);
    document->setContent(std::move(content));
    return document;
}

} // namespace

TreeWindow::TreeWindow(JSONTree tree)
    : document_(documentOf(std::move(tree))), editor_(std::make_unique<TreeEditor>(document_)),
      window_(std::make_unique<QWidget>()), view_(new TreeView(*editor_)) {
    undoManager_.setStateToken(&document_->stateToken());
    editor_->setUndoManager(&undoManager_);
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);
    window_->resize(1500, 1000);
    window_->show();
    window_->activateWindow();
    view_->setFocus();
    settle();
}

TreeWindow::~TreeWindow() {
    window_.reset();
}

double TreeWindow::secondsToFrame(const std::function<void()>& work, QWidget& painted) {
    painted.installEventFilter(this);
    const std::int64_t framesBefore = frames_;
    const double seconds = secondsOf([&] {
        work();
        settle();
    });
    painted.removeEventFilter(this);
    require(frames_ > framesBefore, "what is measured up to a painted frame paints one");
    return seconds;
}

void TreeWindow::press(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    QWidget* const target = QApplication::focusWidget();
    require(target != nullptr, "something takes the keys");
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(target, &press);
}

void TreeWindow::turnWheel(int notches) {
    const QPointF place(300, 300);
    QWheelEvent event(place, view_->viewport()->mapToGlobal(place), {},
                      {0, -notches * QWheelEvent::DefaultDeltasPerStep}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view_->viewport(), &event);
}

void TreeWindow::goTo(NodeID id) {
    editor_->select(id);
    if (const auto row = outline().index(id))
        view_->scrollToRow(*row);
    settle();
}

void TreeWindow::settle() {
    // Painting is asked for by a posted event, and what runs at once afterwards may ask for more.
    for (int turn = 0; turn < 3; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

bool TreeWindow::eventFilter(QObject*, QEvent* event) {
    frames_ += event->type() == QEvent::Paint;
    return false;
}

} // namespace quelm::bench
