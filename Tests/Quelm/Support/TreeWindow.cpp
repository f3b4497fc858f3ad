#include "Tests/Quelm/Support/TreeWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace quelm {

TreeWindow::~TreeWindow() {
    window.reset();
}

void TreeWindow::open(std::string_view text) {
    window.reset();
    document = documentWithText(text);
    editor = std::make_unique<TreeEditor>(document);
    window = std::make_unique<QWidget>();
    view = new TreeView(*editor);
    auto* layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view);
    window->resize(700, 500);
    window->show();
    view->setFocus();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

void TreeWindow::replace(std::string_view text) {
    document->apply(JSONContent::fromText(TextRope(SharedText(text))));
}

std::int64_t TreeWindow::selectedRow() const {
    const auto selection = editor->selection();
    return selection ? editor->outline().index(*selection).value_or(-1) : -1;
}

bool TreeWindow::isWhollyVisible(std::int64_t row) const {
    const auto area = view->rowArea(row);
    return area && view->viewport()->rect().contains(*area);
}

void TreeWindow::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(view, key, modifiers);
}

bool TreeWindow::isAccepted(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    event.ignore();
    // Sent past the window, which has uses of its own for keys.
    return static_cast<QObject*>(view)->event(&event) && event.isAccepted();
}

void TreeWindow::clickRow(std::int64_t row) {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, rowCentre(row));
}

void TreeWindow::clickChevron(std::int64_t row, Qt::KeyboardModifiers modifiers) {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, chevron(row));
}

void TreeWindow::turnWheel(QPoint pixels, QPoint angle) {
    const QPointF place(100, 100);
    QWheelEvent event(place, view->viewport()->mapToGlobal(place), pixels, angle, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view->viewport(), &event);
}

QPoint TreeWindow::rowCentre(std::int64_t row) const {
    return view->rowArea(row).value().center();
}

QPoint TreeWindow::rowCentreForHeight(int row) const {
    const TreeRowStyle& style = view->rowStyle();
    return {view->viewport()->width() / 2, style.verticalMargin + row * style.rowHeight + style.rowHeight / 2};
}

QPoint TreeWindow::chevron(std::int64_t row) const {
    return view->partArea(row, TreeRowPart::chevron).center().toPoint();
}

QString TreeWindow::tip(std::int64_t row, TreeRowPart part) const {
    return view->toolTipAt(view->partArea(row, part).center().toPoint());
}

QImage TreeWindow::painted() {
    return view->viewport()->grab().toImage();
}

bool TreeWindow::isBlank(const QRect& area) {
    const QImage image = painted().copy(area);
    QImage blank = image;
    blank.fill(image.pixelColor(0, 0));
    return image == blank;
}

} // namespace quelm
