#include "Quelm/TextEditor/JSONTextView.h"

#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/Disposal.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/LineNumberGutter.h"
#include "Quelm/TextEngine/TextView.h"

#include <QGridLayout>
#include <QTimer>

namespace quelm {

JSONTextView::JSONTextView(std::shared_ptr<JSONDocument> document, UndoManager* undoManager,
                           std::function<void()> onTextChange, QWidget* parent)
    : QWidget(parent), document_(std::move(document)), textView_(makeTextView(undoManager)),
      gutter_(new LineNumberGutter(*textView_)), findBar_(new FindBar(*textView_)),
      coordinator_(new Coordinator(std::move(onTextChange), this)) {
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(findBar_, 0, 0, 1, 2);
    layout->addWidget(gutter_, 1, 0);
    layout->addWidget(textView_, 1, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
    findBar_->hide();
    setFocusProxy(textView_);

    coordinator_->attach(*textView_, *gutter_);
    if (const std::optional<TextRope>& text = document_->content().text)
        textView_->textStorage().replaceCharacters({0, 0}, *text);
    textView_->setSelectedRange({0, 0});
    document_->attachTextBuffer(textView_->sharedTextStorage());

    // The caret is in the text as soon as the window is there, unless the focus has a place by then.
    QTimer::singleShot(0, textView_, [view = textView_] {
        if (!view->window()->focusWidget())
            view->setFocus();
    });
}

JSONTextView::~JSONTextView() {
    // Nobody else may hold the text by now, and to free a long one takes a while.
    TextRope text = textView_->textStorage().text();
    delete coordinator_;
    delete findBar_;
    delete gutter_;
    delete textView_;
    disposeInBackground(std::move(text));
}

void JSONTextView::setGoTo(const std::optional<TextLocation>& goTo) {
    coordinator_->goTo(goTo);
}

TextView* JSONTextView::makeTextView(UndoManager* undoManager) {
    auto* view = new TextView(std::make_shared<TextStorage>());
    view->setTextFont(SyntaxHighlighter::textFont());
    view->setTextContainerInset({6, 8});
    view->setWrapping(TextView::Wrapping::none);
    view->setUndoManager(undoManager);
    view->setAccessibleName(tr("Texto JSON"));
    return view;
}

} // namespace quelm
