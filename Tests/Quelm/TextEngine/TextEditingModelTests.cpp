#include "Quelm/TextEngine/TextBoundaries.h"
#include "Tests/Quelm/TextEngine/EditedText.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace quelm {
namespace {

/// A text under edit as plain strings: all texts between steps, one after another.
class PlainHistory {
public:
    enum class Run { none, typing, deleting };

    const QString& text() const { return texts_[present_]; }
    bool canUndo() const { return present_ > 0; }
    bool canRedo() const { return present_ + 1 < texts_.size(); }
    void undo() { move(present_ - 1); }
    void redo() { move(present_ + 1); }
    void endRun() { run_ = Run::none; }

    void replaceAlone(TextRange range, const QString& replacement) {
        endRun();
        push(replaced(range, replacement));
    }

    /// Joins the run when that is going on and `at` is where its last edit ended.
    void replaceInRun(Run run, qint64 at, TextRange range, const QString& replacement) {
        const QString result = replaced(range, replacement);
        if (run_ == run && runEnd_ == at)
            texts_[present_] = result;
        else
            push(result);
        run_ = replacement.contains(u'\n') ? Run::none : run;
        runEnd_ = range.location + replacement.size();
    }

    QString replaced(TextRange range, const QString& replacement) const {
        return QString(text()).replace(range.location, range.length, replacement);
    }

    std::size_t stepCount() const { return texts_.size() - 1; }
    const QString& first() const { return texts_.front(); }
    const QString& last() const { return texts_.back(); }

private:
    void push(const QString& text) {
        texts_.resize(present_ + 1);
        texts_.push_back(text);
        ++present_;
    }
    void move(std::size_t place) {
        endRun();
        present_ = place;
    }

    std::vector<QString> texts_{QString()};
    std::size_t present_ = 0;
    Run run_ = Run::none;
    qint64 runEnd_ = 0;
};

/// Does the same at random to a text under edit and to its model.
class TextEditingModelTests : public testing::TestWithParam<unsigned> {
public:
    using Action = void (TextEditingModelTests::*)();

    void type() {
        const QString typed = randomPiece();
        TextRange range = selected();
        if (isOverwriting_ && range.isEmpty() && !typed.contains(u'\n')) {
            const qint64 next = boundaries::nextCluster(rope(), range.location);
            if (!string(TextRange::between(range.location, next)).contains(u'\n'))
                range.length = next - range.location;
        }
        model_.replaceInRun(PlainHistory::Run::typing, range.location, range, typed);
        actual_.editing.type(typed);
    }

    void typeLineFeed() {
        const TextRange range = selected();
        const qint64 lineStart = range.location == 0 ? 0 : model_.text().lastIndexOf(u'\n', range.location - 1) + 1;
        // The line's own end is repeated, in the last line that of the one before.
        const QString text = model_.text();
        qsizetype lineFeed = text.indexOf(u'\n', range.location);
        if (lineFeed < 0)
            lineFeed = lineStart - 1;
        QString typed = lineFeed > 0 && text[lineFeed - 1] == u'\r' ? u"\r\n"_s : u"\n"_s;
        for (qint64 place = lineStart; place < range.location; ++place) {
            const QChar unit = model_.text()[place];
            if (unit != u' ' && unit != u'\t')
                break;
            typed += unit;
        }
        model_.replaceInRun(PlainHistory::Run::typing, range.location, range, typed);
        actual_.editing.typeLineFeed();
    }

    void backspace() { deleteTo(boundaries::backspaceStart(rope(), caret())); }
    void deleteForward() { deleteTo(boundaries::nextCluster(rope(), caret())); }

    void deleteTo(qint64 otherEnd) {
        const TextRange range = TextSelection{caret(), otherEnd}.range();
        if (!selected().isEmpty())
            model_.replaceAlone(selected(), {});
        else if (!range.isEmpty())
            model_.replaceInRun(PlainHistory::Run::deleting, caret(), range, {});
        actual_.editing.deleteSelectionOr(otherEnd);
    }

    void deleteWord() {
        const qint64 otherEnd = boundaries::previousWord(rope(), caret());
        // One of a single character counts as that.
        if (selected().isEmpty() && otherEnd < boundaries::previousCluster(rope(), caret())) {
            model_.replaceAlone(TextRange::between(otherEnd, caret()), {});
            actual_.editing.deleteSelectionOr(otherEnd);
        }
    }

    void paste() {
        const QString pasted = randomPiece() + randomPiece();
        model_.replaceAlone(selected(), pasted);
        actual_.editing.paste(pasted);
    }

    void cut() {
        if (!selected().isEmpty())
            model_.replaceAlone(selected(), {});
        actual_.editing.cut();
    }

    void compose() {
        const QString composed = randomPiece();
        model_.replaceAlone(selected(), composed);
        actual_.editing.commitComposition(composed, {caret(), 0});
    }

    void replace() {
        const TextRange range = randomRange();
        const QString replacement = below(3) == 0 ? QString() : randomPiece();
        if (!range.isEmpty() || !replacement.isEmpty())
            model_.replaceAlone(range, replacement);
        actual_.editing.replace(range, TextRope::repairing(replacement.toStdU16String()), u"Reemplazar"_s);
    }

    void move() {
        const TextRange range = randomRange();
        const qint64 target = randomPlace();
        if (range.location < target && target < range.end())
            return;
        if (!range.isEmpty() && target != range.location && target != range.end()) {
            QString rest = model_.replaced(range, {});
            rest.insert(target < range.location ? target : target - range.length, string(range));
            model_.replaceAlone({0, model_.text().size()}, rest);
        }
        actual_.editing.move(range, target);
    }

    void select() {
        const TextSelection selection{randomPlace(), below(2) == 0 ? randomPlace() : caret()};
        if (selection != actual_.editing.selection())
            model_.endRun();
        actual_.editing.setSelection(selection);
    }

    void endStep() {
        model_.endRun();
        actual_.editing.endTypingStep();
    }

    void pause() {
        model_.endRun();
        actual_.time += TextEditing::longestTypingPause + 1;
    }

    void toggleOverwriting() {
        isOverwriting_ = !isOverwriting_;
        actual_.editing.setOverwriting(isOverwriting_);
    }

    void undo() {
        if (model_.canUndo())
            model_.undo();
        actual_.undoManager.undo();
    }

    void redo() {
        if (model_.canRedo())
            model_.redo();
        actual_.undoManager.redo();
    }

    void check() const {
        ASSERT_EQ(actual_.text(), model_.text());
        ASSERT_EQ(actual_.undoManager.canUndo(), model_.canUndo());
        ASSERT_EQ(actual_.undoManager.canRedo(), model_.canRedo());
        const TextRange range = selected();
        ASSERT_TRUE(range.location >= 0 && range.end() <= model_.text().size());
        ASSERT_EQ(range, TextRange::between(floored(range.location), floored(range.end())));
    }

    int below(qint64 end) { return static_cast<int>(std::uniform_int_distribution<qint64>(0, end - 1)(random_)); }

    PlainHistory model_;
    EditedText actual_{u"|"_s};

private:
    const TextRope& rope() const { return actual_.storage->text(); }
    QString string(TextRange range) const { return model_.text().mid(range.location, range.length); }
    qint64 caret() const { return actual_.editing.selection().caret; }
    TextRange selected() const { return actual_.editing.selection().range(); }

    qint64 floored(qint64 offset) const {
        const bool isWithinPair = offset > 0 && offset < model_.text().size() && model_.text()[offset].isLowSurrogate();
        return isWithinPair ? offset - 1 : offset;
    }
    qint64 randomPlace() { return floored(below(model_.text().size() + 1)); }
    /// Long enough at times that the text does not grow on and on.
    TextRange randomRange() { return TextSelection{randomPlace(), randomPlace()}.range(); }

    QString randomPiece() {
        static const QString pieces[] = {
            u"a"_s, u"\""_s, u" "_s, u"\t"_s, u"ñ"_s, u"日"_s, u"😀"_s, u"👩‍👩‍👧"_s, u"\n"_s, u"\r\n"_s};
        return pieces[below(std::ssize(pieces))];
    }

    std::mt19937 random_{GetParam()};
    bool isOverwriting_ = false;
};

TEST_P(TextEditingModelTests, RandomEditingIsUndoneAndRedoneToTheLastLetter) {
    using Self = TextEditingModelTests;
    static const std::vector<std::pair<int, Action>> actions{{40, &Self::type},      {4, &Self::typeLineFeed},
                                                             {15, &Self::backspace}, {10, &Self::deleteForward},
                                                             {2, &Self::deleteWord}, {3, &Self::paste},
                                                             {2, &Self::cut},        {2, &Self::compose},
                                                             {2, &Self::replace},    {2, &Self::move},
                                                             {12, &Self::select},    {2, &Self::endStep},
                                                             {2, &Self::pause},      {1, &Self::toggleOverwriting},
                                                             {10, &Self::undo},      {7, &Self::redo}};
    int sum = 0;
    for (const auto& [weight, action] : actions)
        sum += weight;

    for (int count = 0; count < 5000; ++count) {
        int choice = below(sum);
        const auto chosen = std::ranges::find_if(actions, [&](const auto& weighted) {
            choice -= weighted.first;
            return choice < 0;
        });
        (this->*chosen->second)();
        check();
        if (HasFatalFailure())
            FAIL() << "after action " << count << ", number " << chosen - actions.begin();
    }

    actual_.storage->text().checkInvariants();
    EXPECT_GT(model_.stepCount(), 50u);
    while (actual_.undoManager.canUndo())
        actual_.undoManager.undo();
    EXPECT_EQ(actual_.text(), model_.first());
    while (actual_.undoManager.canRedo())
        actual_.undoManager.redo();
    EXPECT_EQ(actual_.text(), model_.last());
}

INSTANTIATE_TEST_SUITE_P(Seeds, TextEditingModelTests, testing::Range(0u, 6u));

} // namespace
} // namespace quelm
