#include "Quelm/EditorWindow/TextPage.h"

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Documents/ParseErrorText.h"
#include "Quelm/EditorWindow/MessageBar.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"

#include <QTimer>
#include <QVBoxLayout>

namespace quelm {

TextPage::TextPage(std::shared_ptr<JSONDocument> document, UndoManager* undoManager, QWidget* parent)
    : QWidget(parent), document_(std::move(document)),
      editor_(new JSONTextView(document_, undoManager, [this] { textChanged(); })) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(editor_, 1);
    if (document_->content().parseError) {
        // Below the text, which so stays where it is when the strip goes.
        errorBar_ = new MessageBar(QStringLiteral("xmark.octagon.fill"), ColorRole::red);
        errorBar_->setText(parseErrorText(*document_->content().parseError));
        layout->addWidget(errorBar_);
        // The place can be shown once the page has its size.
        QTimer::singleShot(0, this, &TextPage::showError);
    }
    setFocusProxy(editor_);
}

void TextPage::retire() {
    isRetired_ = true;
    editor_->textView().setUndoManager(nullptr);
}

void TextPage::textChanged() {
    if (isRetired_ || document_->textBuffer() != editor_->textView().sharedTextStorage())
        return;
    document_->noteTextBufferEdited();
    if (errorBar_)
        errorBar_->hide();
}

void TextPage::showError() {
    if (const std::optional<JSONParseError>& error = document_->content().parseError; error && !errorBar_->isHidden())
        editor_->setGoTo(TextLocation(error->line, error->column));
}

} // namespace quelm
