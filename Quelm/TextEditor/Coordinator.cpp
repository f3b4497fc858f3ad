#include "Quelm/TextEditor/Coordinator.h"

#include "Quelm/TextEditor/LineNumberGutter.h"
#include "Quelm/TextEngine/BracketMatching.h"
#include "Quelm/TextEngine/TextView.h"
#include "TextCore/Check.h"

#include <QThread>

namespace quelm {

namespace {

void requireMainThread(const QObject& object) {
    require(QThread::currentThread() == object.thread(), "a coordinator is used on the main thread only");
}

} // namespace

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
    connect(&textView, &TextView::textDidChange, this, &Coordinator::textDidChange);
}

// Going to a place.

void Coordinator::goTo(const std::optional<TextLocation>& location) {
    requireMainThread(*this);
    if (!location || location == lastGoTo_ || !textView_)
        return;
    lastGoTo_ = location;
    locating_.cancel();
    textView_->finishComposing();
    textView_->setFocus();
    if (const TextRope& text = textView_->textStorage().text(); location->takesLong(text))
        locate(*location);
    else
        show(location->offset(text));
}

void Coordinator::locate(const TextLocation& location) {
    followedSelection_ = textView_->editing().selection();
    const TextRope text = textView_->textStorage().text();
    const auto work = [text, location](const std::stop_token& stop) { return location.offset(text, stop); };
    locating_ = startInBackground(this, work, [this, text, location](qint64 offset) {
        if (!textView_)
            return;
        if (textView_->textStorage().text().isSameValue(text))
            show(offset);
        else
            locate(location);
    });
}

void Coordinator::show(qint64 offset) {
    textView_->setSelectedRange({offset, 0});
    // What an input method was composing is committed by that, which may have changed the text.
    const TextRange place = textView_->selectedRange();
    textView_->scrollRangeToVisible(place);
    const TextStorage& storage = textView_->textStorage();
    textView_->showFindIndicator(storage.lineContents(storage.lineAt(place.location)));
}

// Following the text and the selection.

void Coordinator::didProcessEditing(EditedMask mask, TextRange range, qint64 delta) {
    requireMainThread(*this);
    // Colouring sets attributes, which is announced as well.
    if (mask != EditedMask::characters || !textView_)
        return;
    if (gutter_)
        gutter_->noteEdit(range, delta);
    followedSelection_ = textView_->editing().selection();
    highlighter_.highlight(textView_->textStorage(), range);
    bracketTimer_.start();
}

void Coordinator::textDidChange() {
    requireMainThread(*this);
    locating_.cancel();
    if (onTextChange_)
        onTextChange_();
}

void Coordinator::selectionDidChange() {
    requireMainThread(*this);
    if (textView_ && textView_->editing().selection() != followedSelection_)
        locating_.cancel();
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
