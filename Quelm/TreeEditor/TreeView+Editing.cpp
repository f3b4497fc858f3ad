#include "Quelm/Foundation/VisibleText.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineField.h"
#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeView.h"

#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quelm {

namespace {

/// A key as part of the name of its value.
constexpr std::int64_t mostNameCharacters = 60;

/// A place far outside any window that a widget can still have.
constexpr std::int64_t farOutside = 1 << 20;

} // namespace

void TreeView::editingChanged() {
    if (field_ && editor_.editing() != edited_)
        closeField();
    if (!editor_.editing() || field_)
        return;
    if (canShowField())
        openField();
    else
        editor_.setEditing(std::nullopt);
}

bool TreeView::canShowField() const {
    const TreeEditor::Editing editing = *editor_.editing();
    if (!rowOf(editing.id))
        return false;
    const JSONTree& tree = *editor_.tree();
    return editing.field == TreeEditor::Field::key ? tree.isObjectMember(editing.id)
                                                   : !isContainer(tree.kind(editing.id));
}

void TreeView::openField() {
    const TreeEditor::Editing editing = *editor_.editing();
    const JSONTree& tree = *editor_.tree();
    const bool isKey = editing.field == TreeEditor::Field::key;
    edited_ = editing;
    field_ = isKey ? new InlineField(std::nullopt, tree.sharedKey(editing.id), viewport())
                   : new InlineField(tree.kind(editing.id), tree.sharedScalar(editing.id), viewport());
    field_->onCommit = [this, editing](const SharedText& text) {
        // A click elsewhere must find the rows where they were when it was made.
        const QPointer<TreeView> self(this);
        keepsPlace_ = !field_->textView().hasFocus();
        editor_.commit(text, editing);
        if (self)
            keepsPlace_ = false;
    };
    field_->onCancel = [this] { editor_.setEditing(std::nullopt); };
    if (isKey)
        field_->onTab = [this] { editor_.activate(TreeEditor::Field::value); };
    else if (tree.isObjectMember(editing.id))
        field_->onBacktab = [this] { editor_.activate(TreeEditor::Field::key); };
    field_->textView().setAccessibleName(fieldName());
    connect(&field_->textView(), &TextView::textDidChange, this, [this] {
        if (const auto row = field_ ? rowOf(edited_->id) : std::nullopt)
            scrollToRow(*row);
    });
    connect(field_, &InlineField::sizeHintChanged, this, [this] {
        placeField();
        viewport()->update();
    });

    const std::int64_t row = *rowOf(editing.id);
    scrollToRow(row);
    revealHorizontally(row);
    placeField();
    field_->show();
    viewport()->update();
}

void TreeView::closeField() {
    // It may be in the middle of one of its own events.
    InlineField* field = std::exchange(field_, nullptr);
    field->abandon();
    const QWidget* focused = window()->focusWidget();
    if (!focused || focused == field || field->isAncestorOf(focused))
        setFocus(Qt::OtherFocusReason);
    field->hide();
    field->deleteLater();
    viewport()->update();
}

void TreeView::finishEditing() {
    if (field_)
        field_->finish();
}

std::optional<TreeRowField> TreeView::fieldIn(NodeID id) const {
    if (!field_ || edited_->id != id)
        return std::nullopt;
    const bool isKey = edited_->field == TreeEditor::Field::key;
    return TreeRowField{.part = isKey ? TreeRowPart::label : TreeRowPart::value,
                        .width = static_cast<double>(field_->sizeHint().width()),
                        .inset = static_cast<double>(field_->textOrigin().x())};
}

void TreeView::placeField() {
    const auto row = field_ ? rowOf(edited_->id) : std::nullopt;
    if (!row)
        return;
    const TreeRowView view = rowView(*row);
    const QRectF stretch = view.rect(fieldIn(edited_->id)->part);
    const auto x = static_cast<int>(std::round(stretch.left()));
    const auto width = static_cast<int>(std::floor(stretch.width()));
    const int height = std::min(field_->heightForWidth(width), std::max(style_.rowHeight, viewport()->height()));

    // Its first line is the row's. What would be below the bottom edge moves up, as far as the field still meets its
    // row, with which it leaves the viewport.
    const int ascent = field_->textView().textLayout().font().ascent();
    const std::int64_t rowTop = contentTop(*row) - vertical_.position();
    const std::int64_t aboveText = std::int64_t{field_->textOrigin().y()} + ascent;
    const std::int64_t rowBaseline = std::llround(view.baseline() - static_cast<double>(static_cast<int>(rowTop)));
    const std::int64_t top = rowTop + rowBaseline - aboveText;
    const std::int64_t lowest = viewport()->height() - std::int64_t{height};
    const std::int64_t highest = std::min(top, rowTop + style_.rowHeight - height);
    const std::int64_t y = std::max(std::min(top, lowest), highest);
    field_->setGeometry(x, static_cast<int>(std::clamp(y, -farOutside, farOutside)), width, height);
}

QString TreeView::fieldName() const {
    if (edited_->field == TreeEditor::Field::key)
        return tr("Clave");
    const JSONTree& tree = *editor_.tree();
    if (tree.isObjectMember(edited_->id))
        return tr("Valor de %1").arg(visibleText(tree.key(edited_->id), mostNameCharacters).text);
    if (edited_->id == tree.root())
        return tr("Valor de la raíz");
    return tr("Valor de [%1]").arg(QLocale().toString(static_cast<qlonglong>(*tree.indexInParent(edited_->id))));
}

} // namespace quelm
