#include "Benchmarks/Text/Editor.h"
#include "Quelm/Foundation/Fonts.h"

#include <QPlainTextEdit>
#include <QTextCursor>

namespace quelm::bench {

namespace {

class PlainTextEdit : public Editor {
public:
    std::string name() const override { return "QPlainTextEdit"; }

    void setText(const TextRope& text) override {
        edit_.setLineWrapMode(QPlainTextEdit::NoWrap);
        edit_.setFont(monospacedFont(TextStyle::body));
        const std::u16string units = text.utf16({0, text.byteCount()});
        edit_.setPlainText(QString::fromStdU16String(units));
    }

    void placeCaret(qint64 offset) override {
        QTextCursor cursor(edit_.document());
        cursor.setPosition(static_cast<int>(offset));
        edit_.setTextCursor(cursor);
        edit_.ensureCursorVisible();
        settle();
    }

    qint64 length() const override { return edit_.document()->characterCount() - 1; }
    QWidget& keyboardTarget() override { return edit_; }
    QWidget& mouseTarget() override { return *edit_.viewport(); }

protected:
    QWidget& window() override { return edit_; }

private:
    QPlainTextEdit edit_;
};

} // namespace

std::unique_ptr<Editor> makeQPlainTextEdit() {
    return std::make_unique<PlainTextEdit>();
}

} // namespace quelm::bench
