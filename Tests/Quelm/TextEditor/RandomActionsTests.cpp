#include "Quelm/Documents/JSONDocument.h"
#include "Quelm/Foundation/UndoManager.h"
#include "Quelm/TextEditor/FindBar.h"
#include "Quelm/TextEditor/JSONTextView.h"
#include "Quelm/TextEngine/TextView.h"
#include "Tests/Quelm/Support/Printing.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <vector>

// The text editor beside a plain string, in random actions of a user: keys, the mouse, the clipboard, an input method,
// undo and redo, searching and replacing.

namespace quelm {
namespace {

/// The number of actions of a test: a few, or as the environment says for a longer run.
int actionCount() {
    const char* asked = std::getenv("QUELM_TEXT_ACTIONS");
    return asked ? std::atoi(asked) : 3000;
}

class RandomActions : public testing::Test {
protected:
    RandomActions() {
        JSONContent content;
        content.text = TextRope::repairing(std::string_view(firstText));
        document_->apply(std::move(content));
        undoManager_.setStateToken(&document_->stateToken());
        editor_ =
            std::make_unique<JSONTextView>(document_, &undoManager_, [this] { document_->noteTextBufferEdited(); });
        editor_->resize(500, 300);
        editor_->show();
        editor_->activateWindow();
        QCoreApplication::processEvents();
        text_ = QString::fromUtf8(firstText);
        saved_ = text_;
    }

    static constexpr const char* firstText = "{\n  \"clave\": [1, 2.5e3, true],\n\t\"señal\": \"😀 texto\"\n}\n";

    TextView& view() { return editor_->textView(); }
    QString shown() { return view().textStorage().string({0, view().textStorage().length()}); }
    static TextRope rope(const QString& text) {
        return TextRope::repairing(
            std::u16string_view(QStringView(text).utf16(), static_cast<std::size_t>(text.size())));
    }
    std::size_t below(std::size_t limit) { return random_() % limit; }
    bool oneIn(std::size_t times) { return below(times) == 0; }

    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& typed = {}) {
        QTest::sendKeyEvent(QTest::Press, &view(), static_cast<Qt::Key>(key), typed, modifiers);
        QTest::sendKeyEvent(QTest::Release, &view(), static_cast<Qt::Key>(key), typed, modifiers);
    }

    /// What the action made of the text, and perhaps a step, or a longer one.
    void edit(const QString& expected) {
        const UndoManager::StepID step = undoManager_.openStep();
        // Without an edit there is no step to go on with either, after an undo.
        if (step != 0 && (done_.empty() || done_.back().step != step))
            done_.push_back({step, text_});
        if (step != 0)
            undone_.clear();
        text_ = expected;
    }

    QString withSelectionReplaced(const QString& replacement) const {
        QString result = text_;
        return result.replace(selected_.location, selected_.length, replacement);
    }

    void type() {
        static const std::array<const char16_t*, 16> texts{
            u"a", u"\"", u"1",      u",",      u"{",          u"}",      u"[",      u"]",
            u":", u" ",  u"\u00F1", u"\u4E2D", u"\U0001F600", u"\u0301", u"\u0634", u"-"};
        const QString typed = QString::fromUtf16(texts[below(texts.size())]);
        press(Qt::Key_unknown, {}, typed);
        edit(withSelectionReplaced(typed));
    }

    void typeLineFeed() {
        const qsizetype lineStart = text_.lastIndexOf(u'\n', selected_.location - 1) + 1;
        qsizetype end = selected_.location == 0 ? 0 : lineStart;
        if (selected_.location == 0)
            end = 0;
        while (end < selected_.location && (text_[end] == u' ' || text_[end] == u'\t'))
            ++end;
        const qsizetype start = selected_.location == 0 ? 0 : lineStart;
        press(Qt::Key_Return, {}, QStringLiteral("\r"));
        edit(withSelectionReplaced(u'\n' + text_.mid(start, end - start)));
    }

    void erase() {
        const bool isForward = oneIn(2);
        const Qt::KeyboardModifiers modifiers = oneIn(3) ? Qt::ControlModifier : Qt::NoModifier;
        press(isForward ? Qt::Key_Delete : Qt::Key_Backspace, modifiers);
        if (!selected_.isEmpty())
            return edit(withSelectionReplaced({}));
        // How far it goes is a rule of its own; what it takes is all between.
        const qint64 length = text_.size() - view().textStorage().length();
        QString expected = text_;
        expected.remove(isForward ? selected_.location : selected_.location - length, length);
        edit(expected);
    }

    void move() {
        static constexpr std::array keys{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                                         Qt::Key_Home, Qt::Key_End,   Qt::Key_PageUp, Qt::Key_PageDown};
        Qt::KeyboardModifiers modifiers;
        modifiers.setFlag(Qt::ShiftModifier, oneIn(3));
        modifiers.setFlag(Qt::ControlModifier, oneIn(3));
        press(keys[below(keys.size())], modifiers);
    }

    void useMouse() {
        QWidget* viewport = view().viewport();
        const auto place = [&] {
            return QPoint(static_cast<int>(below(static_cast<std::size_t>(viewport->width()))),
                          static_cast<int>(below(static_cast<std::size_t>(viewport->height()))));
        };
        if (oneIn(4))
            return QTest::mouseDClick(viewport, Qt::LeftButton, {}, place());
        QTest::mouseClick(viewport, Qt::LeftButton, oneIn(3) ? Qt::ShiftModifier : Qt::NoModifier, place());
    }

    void paste() {
        QString pasted;
        const std::size_t count = oneIn(10) ? 4000 : below(12);
        static constexpr std::u16string_view alphabet = u"ab\n {}\"\t1\u00E9\u4E2D";
        for (std::size_t unit = 0; unit < count; ++unit)
            pasted += QChar(alphabet[below(alphabet.size())]);
        if (pasted.isEmpty())
            return;
        QGuiApplication::clipboard()->setText(pasted);
        press(Qt::Key_V, Qt::ControlModifier);
        edit(withSelectionReplaced(pasted));
    }

    void cutOrCopy() {
        const bool isCut = oneIn(2);
        const QString expected = text_.mid(selected_.location, selected_.length);
        press(isCut ? Qt::Key_X : Qt::Key_C, Qt::ControlModifier);
        if (selected_.isEmpty())
            return;
        ASSERT_EQ(QGuiApplication::clipboard()->text(), expected);
        if (isCut)
            edit(withSelectionReplaced({}));
    }

    void compose() {
        QInputMethodEvent composing(QStringLiteral("nih"), {});
        QCoreApplication::sendEvent(&view(), &composing);
        const QString committed = oneIn(3) ? QString() : QStringLiteral("你好");
        QInputMethodEvent end;
        end.setCommitString(committed);
        QCoreApplication::sendEvent(&view(), &end);
        // A composition that is given up takes nothing with it.
        edit(committed.isEmpty() ? text_ : withSelectionReplaced(committed));
    }

    /// Searches with the keys of the bar, and perhaps replaces what there is.
    void find() {
        static const std::array queries{QStringLiteral("a"), QStringLiteral("\"clave\""), QStringLiteral("b"),
                                        QStringLiteral("{}"), QStringLiteral("nada")};
        const QString query = queries[below(queries.size())];
        FindBar& bar = editor_->findBar();
        press(Qt::Key_H, Qt::ControlModifier);
        const auto fields = bar.findChildren<QLineEdit*>();
        ASSERT_EQ(fields.size(), 2);
        fields[0]->selectAll();
        QTest::keyClicks(fields[0], query);
        QTest::keyClick(fields[0], Qt::Key_Return, oneIn(3) ? Qt::ShiftModifier : Qt::NoModifier);
        ASSERT_TRUE(QTest::qWaitFor([&bar] { return !bar.search().isFinding(); }));
        const TextRange match = view().selectedRange();
        if (text_.contains(query, Qt::CaseInsensitive)) {
            ASSERT_EQ(text_.mid(match.location, match.length).compare(query, Qt::CaseInsensitive), 0);
        }
        if (oneIn(2))
            replaceAll(bar, *fields[1], query);
        QTest::keyClick(fields[0], Qt::Key_Escape);
        ASSERT_FALSE(bar.isVisible());
    }

    void replaceAll(FindBar& bar, QLineEdit& field, const QString& query) {
        field.selectAll();
        QTest::keyClicks(&field, QStringLiteral("-b"));
        const auto buttons = bar.findChildren<QPushButton*>();
        const auto button = std::ranges::find(buttons, QStringLiteral("Reemplazar todo"), &QPushButton::text);
        ASSERT_NE(button, buttons.end());
        QTest::mouseClick(*button, Qt::LeftButton);
        QString expected = text_;
        expected.replace(query, QStringLiteral("-b"), Qt::CaseInsensitive);
        ASSERT_TRUE(QTest::qWaitFor([&] { return shown() == expected; }));
        edit(expected);
    }

    /// Replaces the whole content, as formatting does.
    void format() {
        QString formatted = text_;
        formatted =
            oneIn(2) ? formatted.replace(QStringLiteral(","), QStringLiteral(",\n  ")) : formatted.remove(u'\n');
        JSONContent content;
        content.text = rope(formatted);
        document_->replaceContent(std::move(content), &undoManager_);
        edit(formatted);
        ASSERT_EQ(undoManager_.undoActionName(), QStringLiteral("Formato"));
    }

    void save() {
        view().editing().endTypingStep();
        const StateToken::Value token = document_->stateToken().current();
        ASSERT_EQ(*document_->snapshot().text, rope(text_));
        document_->noteSaved(token);
        saved_ = text_;
    }

    void undo() {
        press(Qt::Key_Z, Qt::ControlModifier);
        if (done_.empty())
            return;
        undone_.push_back({done_.back().step, text_});
        text_ = done_.back().text;
        done_.pop_back();
    }

    void redo() {
        press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        if (undone_.empty())
            return;
        done_.push_back({undone_.back().step, text_});
        text_ = undone_.back().text;
        undone_.pop_back();
    }

    void act() {
        selected_ = view().selectedRange();
        const std::size_t choice = choice_ = below(100);
        if (choice < 32)
            type();
        else if (choice < 37)
            typeLineFeed();
        else if (choice < 50)
            erase();
        else if (choice < 68)
            move();
        else if (choice < 75)
            useMouse();
        else if (choice < 79)
            paste();
        else if (choice < 84)
            cutOrCopy();
        else if (choice < 86)
            compose();
        else if (choice < 92)
            undo();
        else if (choice < 97)
            redo();
        else if (choice < 98)
            format();
        else if (choice < 99)
            save();
        else
            find();
        // A text that only grows would be slow to compare.
        if (text_.size() > 20'000) {
            press(Qt::Key_A, Qt::ControlModifier);
            press(Qt::Key_Delete);
            edit({});
        }
    }

    struct Step {
        UndoManager::StepID step;
        QString text;
    };

    std::mt19937 random_{20261};
    std::shared_ptr<JSONDocument> document_ = std::make_shared<JSONDocument>();
    UndoManager undoManager_;
    std::unique_ptr<JSONTextView> editor_;
    QString text_;
    QString saved_;
    TextRange selected_;
    /// Which action was the last.
    std::size_t choice_ = 0;
    /// The text before each step that can be undone, and after each that can be redone.
    std::vector<Step> done_;
    std::vector<Step> undone_;
};

TEST_F(RandomActions, MatchAPlainStringAndCanAllBeUndone) {
    const int actions = actionCount();
    for (int action = 0; action < actions; ++action) {
        ASSERT_NO_FATAL_FAILURE(act());
        ASSERT_EQ(shown(), text_) << "after action " << action << ", " << choice_ << ", from " << selected_.location
                                  << " to " << selected_.end();
        const TextRange selection = view().selectedRange();
        ASSERT_GE(selection.location, 0);
        ASSERT_LE(selection.end(), text_.size());
        for (const qint64 place : {selection.location, selection.end()})
            ASSERT_FALSE(place > 0 && place < text_.size() && text_[place].isLowSurrogate() &&
                         text_[place - 1].isHighSurrogate());
        if (!document_->isModified()) {
            ASSERT_EQ(text_, saved_) << "after action " << action << ", " << choice_;
        }
        ASSERT_EQ(undoManager_.canUndo(), !done_.empty());
        ASSERT_EQ(undoManager_.canRedo(), !undone_.empty());
        if (action % 20 == 0)
            QCoreApplication::processEvents();
        if (action % 500 == 0)
            view().textStorage().text().checkInvariants();
    }
    while (undoManager_.canUndo())
        undo();
    ASSERT_EQ(shown(), text_);
    EXPECT_EQ(shown(), QString::fromUtf8(firstText));
    while (undoManager_.canRedo()) {
        redo();
        ASSERT_EQ(shown(), text_);
    }
}

} // namespace
} // namespace quelm
