#include "Quelm/TreeEditor/InlineField.h"

#include "JSONCore/JSONScalar.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEngine/TextView.h"
#include "Quelm/TreeEditor/InlineFieldExtent.h"

#include <QApplication>

#include <new>
#include <string_view>
#include <utility>

namespace quelm {

namespace {

/// Whether the text may be a scalar of the kind. Most that may not are told from their length or their start.
bool isScalar(const TextRope& text, NodeKind kind) {
    constexpr std::int64_t longestWord = 5; // "false"
    if (kind != NodeKind::number && text.byteCount() > longestWord)
        return false;
    constexpr std::string_view numberBytes = "+-.0123456789Ee";
    if (text.chunkAfter(0).bytes.find_first_not_of(numberBytes) != std::string_view::npos && kind == NodeKind::number)
        return false;
    return JSONScalar::isValid(text.contiguous().view(), kind);
}

} // namespace

InlineField::InlineField(std::optional<NodeKind> kind, const SharedText& text, QWidget* parent)
    : QWidget(parent), kind_(kind), original_(text), storage_(std::make_shared<TextStorage>(TextRope(text))),
      isSingleLine_(kind != NodeKind::string && storage_->lineCount() == 1),
      undoManager_(std::make_unique<UndoManager>()) {
    setAttribute(Qt::WA_NoMousePropagation);
    makeTextView();
    extent_ = std::make_unique<InlineFieldExtent>(*storage_, textView_->textLayout().font());
    updateValidity();
    announcedSize_ = sizeHint();
    resize(announcedSize_);
    announcedHeight_ = announcedSize_.height();

    connect(storage_.get(), &TextStorage::didProcessEditing, this,
            [this](EditedMask mask, TextRange range, qint64 delta) {
                if (mask != EditedMask::characters)
                    return;
                isEdited_ = true;
                extent_->noteEdit(range, delta);
            });
    connect(textView_, &TextView::textDidChange, this, &InlineField::textChanged);
    connect(qApp, &QApplication::focusChanged, this, &InlineField::noteFocusElsewhere);
}

InlineField::~InlineField() {
    // The text view loses the focus as it goes.
    abandon();
    textView_->removeEventFilter(this);
    disconnect(qApp, nullptr, this, nullptr);
    disconnect(storage_.get(), nullptr, this, nullptr);
    disconnect(textView_, nullptr, this, nullptr);
}

// The text.

SharedText InlineField::text() const {
    return isEdited_ ? storage_->text().contiguous() : original_;
}

void InlineField::textChanged() {
    updateValidity();
    updateSize();
}

void InlineField::updateValidity() {
    const bool isValid = !kind_ || *kind_ == NodeKind::string || isScalar(storage_->text(), *kind_);
    if (std::exchange(isValid_, isValid) != isValid)
        update();
}

// Ending.

void InlineField::finish() {
    if (isFinished_)
        return;
    textView_->finishComposing();
    // Whoever followed that edit may have ended the field.
    if (isFinished_)
        return;
    SharedText committed;
    try {
        committed = text();
    } catch (const std::bad_alloc&) {
        // Better an open field than a text that is lost.
        QApplication::beep();
        return;
    }
    isFinished_ = true;
    // The callback may delete the field, and itself with it.
    const auto commit = std::move(onCommit);
    const auto cancel = std::move(onCancel);
    if (isValid_ && commit)
        commit(committed);
    else if (!isValid_ && cancel)
        cancel();
}

void InlineField::cancel() {
    if (std::exchange(isFinished_, true))
        return;
    if (const auto cancel = std::move(onCancel))
        cancel();
}

void InlineField::abandon() {
    isFinished_ = true;
}

} // namespace quelm
