#include "Tests/Quelm/Support/TreeWindow.h"

#include "JSONCore/JSONSerializer.h"
#include "Quelm/TextEngine/TextStorage.h"
#include "Quelm/TextEngine/TextView.h"
#include "TextCore/Check.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
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
    undoManager = std::make_unique<UndoManager>();
    editor = std::make_unique<TreeEditor>(document);
    editor->setUndoManager(undoManager.get());
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

std::string TreeWindow::json() const {
    const JSONTree& tree = *editor->tree();
    return std::string(JSONSerializer::serialize(tree, tree.root(), JSONStyle::compact()).view());
}

std::string TreeWindow::selectedKey() const {
    return std::string(editor->tree()->key(editor->selection().value()));
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

void TreeWindow::type(const QString& text) {
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_unknown, QString(letter), {});
}

void TreeWindow::clickRow(std::int64_t row, Qt::MouseButton button) {
    QTest::mouseClick(view->viewport(), button, {}, rowCentre(row));
}

void TreeWindow::doubleClickRow(std::int64_t row) {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, rowCentre(row));
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, rowCentre(row));
}

void TreeWindow::clickBadge(std::int64_t row) {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->partArea(row, TreeRowPart::badge).center().toPoint());
}

InlineField& TreeWindow::field() const {
    require(view->inlineField() != nullptr, "a field is open");
    return *view->inlineField();
}

void TreeWindow::pressInField(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&field().textView(), key, modifiers);
}

void TreeWindow::enter(const QString& text) {
    field().textView().selectAll();
    type(text);
}

QString TreeWindow::fieldText() const {
    return QString::fromUtf8(field().text().view());
}

QAction* TreeWindow::menuItem(const QString& title) const {
    const QMenu* menu = view->openMenu();
    require(menu != nullptr, "a menu is open");
    for (QAction* action : menu->actions()) {
        if (action->text() == title)
            return action;
    }
    return nullptr;
}

void TreeWindow::choose(const QString& title) {
    QMenu* menu = view->openMenu();
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menuItem(title)).center());
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
