#include "Quelm/TextEngine/TextViewNotices.h"
#include "Tests/Quelm/TextEngine/TextViewWindow.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QStringList>

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>

namespace quelm {
namespace {

QString shown(QAccessibleEvent& event) {
    switch (event.type()) {
    case QAccessible::TextInserted: {
        const auto& insertion = static_cast<QAccessibleTextInsertEvent&>(event);
        return QStringLiteral("+%1 %2").arg(insertion.changePosition()).arg(insertion.textInserted());
    }
    case QAccessible::TextRemoved: {
        const auto& removal = static_cast<QAccessibleTextRemoveEvent&>(event);
        return QStringLiteral("-%1 %2").arg(removal.changePosition()).arg(removal.textRemoved());
    }
    case QAccessible::TextUpdated: {
        const auto& update = static_cast<QAccessibleTextUpdateEvent&>(event);
        return QStringLiteral("%1 %2 > %3")
            .arg(update.changePosition())
            .arg(update.textRemoved(), update.textInserted());
    }
    case QAccessible::TextCaretMoved:
        return QStringLiteral("caret %1").arg(static_cast<QAccessibleTextCursorEvent&>(event).cursorPosition());
    case QAccessible::TextSelectionChanged: {
        const auto& selection = static_cast<QAccessibleTextSelectionEvent&>(event);
        return QStringLiteral("selected %1-%2 at %3")
            .arg(selection.selectionStart())
            .arg(selection.selectionEnd())
            .arg(selection.cursorPosition());
    }
    case QAccessible::StateChanged: {
        const QAccessible::State changed = static_cast<QAccessibleStateChangeEvent&>(event).changedStates();
        return changed.readOnly && changed.editable ? QStringLiteral("read-only") : QString();
    }
    default:
        return {};
    }
}

/// Takes what is announced of the view, an event a string.
class TextViewNoticesTests : public TextViewWindow {
protected:
    void start(const QString& marked) {
        open(marked);
        listen();
    }
    void listen() {
        announced.clear();
        new TextViewNotices(*view, {[this] { return isListening; },
                                    [this](QAccessibleEvent& event) {
                                        EXPECT_EQ(event.object(), view);
                                        announced.append(shown(event));
                                    }});
    }
    QStringList take() { return std::exchange(announced, {}); }
    static QStringList list(std::initializer_list<QString> texts) { return texts; }

    bool isListening = true;
    QStringList announced;
};

TEST_F(TextViewNoticesTests, TypingAnnouncesTheTextAndThenTheCaret) {
    start(QStringLiteral("uno|"));
    type(QStringLiteral("s"));
    EXPECT_EQ(take(), list({QStringLiteral("+3 s"), QStringLiteral("caret 4")}));
    press(Qt::Key_Backspace);
    EXPECT_EQ(take(), list({QStringLiteral("-3 s"), QStringLiteral("caret 3")}));
}

TEST_F(TextViewNoticesTests, ReplacingAnnouncesBothTexts) {
    start(QStringLiteral("^uno| dos"));
    commit(QStringLiteral("\U0001F600"));
    EXPECT_EQ(take(), list({QStringLiteral("0 uno > \U0001F600"), QStringLiteral("selected 2-2 at 2"),
                            QStringLiteral("caret 2")}));
    view->undo();
    EXPECT_EQ(take(), list({QStringLiteral("0 \U0001F600 > uno"), QStringLiteral("selected 0-3 at 3"),
                            QStringLiteral("caret 3")}));
}

TEST_F(TextViewNoticesTests, MovingTheCaretAnnouncesItsPlace) {
    start(QStringLiteral("|uno"));
    press(Qt::Key_Right);
    EXPECT_EQ(take(), list({QStringLiteral("caret 1")}));
}

TEST_F(TextViewNoticesTests, SelectingAnnouncesTheSelectionAndItsCaret) {
    start(QStringLiteral("un|o"));
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(take(), list({QStringLiteral("selected 1-2 at 1"), QStringLiteral("caret 1")}));
    press(Qt::Key_End);
    EXPECT_EQ(take(), list({QStringLiteral("selected 3-3 at 3"), QStringLiteral("caret 3")}));
}

TEST_F(TextViewNoticesTests, EditsMadeElsewhereAreAnnouncedToo) {
    start(QStringLiteral("uno|"));
    view->textStorage().replaceCharacters({0, 1}, QStringView(u"ning"));
    QCoreApplication::processEvents();
    EXPECT_EQ(take(), list({QStringLiteral("0 u > ning"), QStringLiteral("caret 6")}));
}

TEST_F(TextViewNoticesTests, ColouringAndEditsOfNothingAreNotAnnounced) {
    start(QStringLiteral("uno|"));
    view->textStorage().setAttributes({0, 3}, {ColorRole::purple});
    view->textStorage().replaceCharacters({1, 0}, TextRope());
    EXPECT_EQ(take(), QStringList());
}

TEST_F(TextViewNoticesTests, LongTextsAreAnnouncedByTheirStart) {
    start(QStringLiteral("^uno|"));
    view->editing().paste(QString(1'000'000, u'x'));
    const QString start(TextViewNotices::longestText, u'x');
    EXPECT_EQ(take().front(), QStringLiteral("0 uno > ") + start);
    view->undo();
    EXPECT_EQ(take().front(), QStringLiteral("0 %1 > uno").arg(start));
}

TEST_F(TextViewNoticesTests, EditsBeyondWhatIntegersCountAreAnnouncedNearTheEnd) {
    TextRope text(SharedText(std::string(1 << 20, 'x')));
    while (text.utf16Count() <= std::numeric_limits<int>::max())
        text = text + text;
    openRope(text);
    view->setSelectedRange({text.utf16Count(), 0});
    listen();
    type(QStringLiteral("y"));
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_EQ(take(), list({QStringLiteral("+%1 y").arg(most - TextViewNotices::longestText),
                            QStringLiteral("caret %1").arg(most)}));
}

TEST_F(TextViewNoticesTests, BecomingReadOnlyAndBackIsAnnouncedOnce) {
    start(QStringLiteral("uno"));
    view->setReadOnly(true);
    EXPECT_EQ(take(), list({QStringLiteral("read-only")}));
    view->setReadOnly(true);
    EXPECT_EQ(take(), QStringList());
    view->setReadOnly(false);
    EXPECT_EQ(take(), list({QStringLiteral("read-only")}));
}

TEST_F(TextViewNoticesTests, WithoutAssistiveTechnologyNothingIsAnnounced) {
    start(QStringLiteral("uno|"));
    isListening = false;
    type(QStringLiteral("s"));
    press(Qt::Key_Left, Qt::ShiftModifier);
    view->setReadOnly(true);
    view->setReadOnly(false);
    EXPECT_EQ(take(), QStringList());

    // It sees nothing stale when it comes.
    isListening = true;
    press(Qt::Key_Backspace);
    EXPECT_EQ(take(), list({QStringLiteral("-3 s"), QStringLiteral("selected 3-3 at 3"), QStringLiteral("caret 3")}));
}

} // namespace
} // namespace quelm
