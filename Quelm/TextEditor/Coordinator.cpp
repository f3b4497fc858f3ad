#include "Quelm/TextEditor/Coordinator.h"

#include "Quelm/TextEditor/LineNumberGutter.h"
#include "Quelm/TextEngine/BracketMatching.h"
#include "Quelm/TextEngine/TextView.h"

namespace quelm {

Coordinator::Coordinator(std::function<void()> onTextChange, QObject* parent)
    : QObject(parent), onTextChange_(std::move(onTextChange)) {
    bracketTimer_.setSingleShot(true);
    bracketTimer_.setInterval(0);
    connect(&bracketTimer_, &QTimer::timeout, this, &Coordinator::showMatchingBrackets);
}

void Coordinator::attach(TextView& textView, LineNumberGutter& gutter) {
    require(!textView_, "a coordinator serves one text view");
    textView_ = &textView;
    gutter_ = &gutter;
    connect(&textView.textStorage(), &TextStorage::didProcessEditing, this, &Coordinator::didProcessEditing);
    connect(&textView, &TextView::selectionDidChange, this, &Coordinator::selectionDidChange);
    connect(&textView, &TextView::textDidChange, this, [this] {
        if (onTextChange_)
            onTextChange_();
    });
}

void Coordinator::goTo(const std::optional<TextLocation>& location) {
    if (!location || location == lastGoTo_ || !textView_)
        return;
    lastGoTo_ = location;
    const TextStorage& storage = textView_->textStorage();
    const TextRange place{location->offset(storage.text()), 0};
    textView_->setFocus();
    textView_->setSelectedRange(place);
    textView_->scrollRangeToVisible(place);
    textView_->showFindIndicator(storage.lineContents(storage.lineAt(place.location)));
}

void Coordinator::didProcessEditing(EditedMask mask, TextRange range, qint64 delta) {
    // Colouring sets attributes, which is announced as well.
    if (mask != EditedMask::characters || !textView_)
        return;
    if (gutter_)
        gutter_->noteEdit(range, delta);
    highlighter_.highlight(textView_->textStorage(), range);
    bracketTimer_.start();
}

void Coordinator::selectionDidChange() {
    if (gutter_)
        gutter_->update();
    bracketTimer_.start();
}

void Coordinator::showMatchingBrackets() {
    if (!textView_)
        return;
    std::vector<TextRange> brackets;
    if (const TextRange selection = textView_->selectedRange(); selection.isEmpty())
        if (const auto pair = matchingBrackets(textView_->textStorage().text(), selection.location))
            brackets = {TextRange{pair->bracket, 1}, TextRange{pair->partner, 1}};
    textView_->setBracketRanges(std::move(brackets));
}

} // namespace quelm
