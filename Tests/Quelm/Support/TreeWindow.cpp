#include "Tests/Quelm/Support/TreeWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace quelm {

TreeWindow::~TreeWindow() {
    window_.reset();
}

void TreeWindow::open(std::string_view text) {
    window_.reset();
    document_ = documentWithText(text);
    editor_ = std::make_unique<TreeEditor>(document_);
    window_ = std::make_unique<QWidget>();
    view_ = new TreeView(*editor_);
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);
    window_->resize(700, 500);
    window_->show();
    view_->setFocus();
    window_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
}

void TreeWindow::replace(std::string_view text) {
    document_->apply(JSONContent::fromText(TextRope(SharedText(text))));
}

std::int64_t TreeWindow::selectedRow() const {
    const auto selection = editor_->selection();
    return selection ? editor_->outline().index(*selection).value_or(-1) : -1;
}

bool TreeWindow::isWhollyVisible(std::int64_t row) const {
    const auto area = view_->rowArea(row);
    return area && view_->viewport()->rect().contains(*area);
}

void TreeWindow::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(view_, key, modifiers);
}

bool TreeWindow::isAccepted(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    event.ignore();
    // Sent past the window, which has uses of its own for keys.
    return static_cast<QObject*>(view_)->event(&event) && event.isAccepted();
}

void TreeWindow::clickRow(std::int64_t row) {
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, rowCentre(row));
}

void TreeWindow::clickChevron(std::int64_t row, Qt::KeyboardModifiers modifiers) {
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, modifiers, chevron(row));
}

void TreeWindow::turnWheel(QPoint pixels, QPoint angle) {
    const QPointF place(100, 100);
    QWheelEvent event(place, view_->viewport()->mapToGlobal(place), pixels, angle, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view_->viewport(), &event);
}

QPoint TreeWindow::rowCentre(std::int64_t row) const {
    return view_->rowArea(row).value().center();
}

QPoint TreeWindow::rowCentreForHeight(int row) const {
    const TreeRowStyle& style = view_->rowStyle();
    return {view_->viewport()->width() / 2, style.verticalMargin + row * style.rowHeight + style.rowHeight / 2};
}

QPoint TreeWindow::chevron(std::int64_t row) const {
    return view_->partArea(row, TreeRowPart::chevron).center().toPoint();
}

QString TreeWindow::tip(std::int64_t row, TreeRowPart part) const {
    return view_->toolTipAt(view_->partArea(row, part).center().toPoint());
}

QImage TreeWindow::painted() {
    return view_->viewport()->grab().toImage();
}

bool TreeWindow::isBlank(const QRect& area) {
    const QImage image = painted().copy(area);
    QImage blank = image;
    blank.fill(image.pixelColor(0, 0));
    return image == blank;
}

} // namespace quelm
