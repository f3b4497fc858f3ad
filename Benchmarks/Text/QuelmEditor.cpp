#include "Benchmarks/Text/Editor.h"
#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"

namespace quelm::bench {

namespace {

class QuelmEditor : public Editor {
public:
    std::string name() const override { return "quelm"; }

    void setText(const TextRope& text) override {
        JSONContent content;
        content.text = text;
        document_->setContent(std::move(content));
        editor_ = std::make_unique<JSONTextView>(document_, &undoManager_, [] {});
    }

    void placeCaret(qint64 offset) override {
        editor_->textView().setSelectedRange({offset, 0});
        editor_->textView().scrollRangeToVisible({offset, 0});
        settle();
    }

    qint64 length() const override { return editor_->textView().textStorage().length(); }
    QWidget& keyboardTarget() override { return editor_->textView(); }
    QWidget& mouseTarget() override { return *editor_->textView().viewport(); }

protected:
    QWidget& window() override { return *editor_; }

private:
    std::shared_ptr<JSONDocument> document_ = std::make_shared<JSONDocument>();
    UndoManager undoManager_;
    std::unique_ptr<JSONTextView> editor_;
};

} // namespace

std::unique_ptr<Editor> makeQuelmEditor() {
    return std::make_unique<QuelmEditor>();
}

} // namespace quelm::bench
