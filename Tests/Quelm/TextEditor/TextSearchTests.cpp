#include "Quelm/TextEditor/MatchMarks.h"
#include "Quelm/TextEditor/SearchRanges.h"
#include "Quelm/TextEditor/TextSearch.h"
#include "Quelm/TextEngine/TextView.h"

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>

namespace quelm {
namespace {

constexpr int patience = 20'000; // milliseconds

std::string filler(std::size_t bytes) {
    std::string text;
    while (text.size() < bytes)
        text += "{\"relleno\": [1, 2, 3]},\n";
    return text;
}

class TextSearchTests : public testing::Test {
protected:
    void open(std::string_view text) {
        search.reset();
        view = std::make_unique<TextView>(std::make_shared<TextStorage>(TextRope(SharedText(text))));
        view->resize(400, 300);
        view->show();
        search = std::make_unique<TextSearch>(*view);
        search->setFollowing(true);
    }

    void look(const QString& text, CaseSensitivity sensitivity = CaseSensitivity::insensitive) {
        search->setQuery({text, sensitivity});
    }

    void compose(const QString& preedit) {
        QInputMethodEvent event(preedit, {});
        QCoreApplication::sendEvent(view.get(), &event);
    }

    bool waitForCount() {
        return QTest::qWaitFor([this] { return search->count().has_value(); }, patience);
    }

    std::unique_ptr<TextView> view;
    std::unique_ptr<TextSearch> search;
};

TEST_F(TextSearchTests, CountsASmallTextAtOnce) {
    open("uno Dos uno");
    look(QStringLiteral("UNO"));
    EXPECT_EQ(search->count(), 2);
    look(QStringLiteral("dos"), CaseSensitivity::sensitive);
    EXPECT_EQ(search->count(), 0);
    look(QString());
    EXPECT_EQ(search->count(), std::nullopt);
    EXPECT_FALSE(search->pattern());
}

TEST_F(TextSearchTests, LooksForNothingInHalfASurrogatePair) {
    open("uno");
    look(QString(QChar(0xD83D)));
    EXPECT_FALSE(search->pattern());
}

TEST_F(TextSearchTests, GoesFromMatchToMatchAndAroundTheEnds) {
    open("ñu dos ñu");
    look(QStringLiteral("ñu"));
    search->findNext();
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 2}));
    EXPECT_EQ(search->currentNumber(), 1);
    search->findNext();
    EXPECT_EQ(view->selectedRange(), (TextRange{7, 2}));
    EXPECT_EQ(search->currentNumber(), 2);
    search->findNext();
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 2}));
    search->findPrevious();
    EXPECT_EQ(view->selectedRange(), (TextRange{7, 2}));
    EXPECT_TRUE(view->isShowingFindIndicator());
}

TEST_F(TextSearchTests, StopsAtTheEndsWhenAskedTo) {
    open("uno dos uno");
    look(QStringLiteral("uno"));
    search->setWraps(false);
    view->setSelectedRange({8, 3});
    QSignalSpy notFound(search.get(), &TextSearch::notFound);
    search->findNext();
    EXPECT_EQ(view->selectedRange(), (TextRange{8, 3}));
    EXPECT_EQ(notFound.count(), 1);
}

TEST_F(TextSearchTests, ASelectionThatIsNoMatchHasNoNumber) {
    open("uno dos uno");
    look(QStringLiteral("uno"));
    view->setSelectedRange({0, 2});
    EXPECT_FALSE(search->isSelectionMatch());
    EXPECT_EQ(search->currentNumber(), std::nullopt);
    view->setSelectedRange({8, 3});
    EXPECT_TRUE(search->isSelectionMatch());
    EXPECT_EQ(search->currentNumber(), 2);
}

TEST_F(TextSearchTests, CountsAnewAfterAnEdit) {
    open("uno dos uno");
    look(QStringLiteral("uno"));
    view->textStorage().replaceCharacters({3, 0}, QStringLiteral(" uno"));
    EXPECT_EQ(search->count(), std::nullopt);
    ASSERT_TRUE(waitForCount());
    EXPECT_EQ(search->count(), 3);
}

TEST_F(TextSearchTests, FindsFarMatchesWhileALongTextIsCounted) {
    const std::string text = filler(30 << 20) + "aguja" + filler(20 << 20);
    open(text);
    look(QStringLiteral("aguja"));
    EXPECT_EQ(search->count(), std::nullopt);
    search->findNext();
    EXPECT_TRUE(search->isFinding());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !search->isFinding(); }, patience));
    const TextRange found = view->selectedRange();
    EXPECT_EQ(view->textStorage().string(found), QStringLiteral("aguja"));
    ASSERT_TRUE(waitForCount());
    EXPECT_EQ(search->count(), 1);
    // From here on the way around leads back.
    search->findPrevious();
    EXPECT_EQ(view->selectedRange(), found);
    EXPECT_EQ(search->currentNumber(), 1);
}

TEST_F(TextSearchTests, FindsFarMatchesBackwardsWithoutACount) {
    open(filler(5 << 20) + "aguja" + filler(5 << 20) + "Aguja" + filler(5 << 20));
    search->setFollowing(false);
    look(QStringLiteral("aguja"));
    view->setSelectedRange({view->textStorage().length(), 0});
    search->findPrevious();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !search->isFinding(); }, patience));
    EXPECT_EQ(view->textStorage().string(view->selectedRange()), QStringLiteral("Aguja"));
    search->findPrevious();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !search->isFinding(); }, patience));
    EXPECT_EQ(view->textStorage().string(view->selectedRange()), QStringLiteral("aguja"));
    EXPECT_EQ(search->count(), std::nullopt);
}

TEST_F(TextSearchTests, TheEventLoopTurnsWhileALongTextIsCounted) {
    open(std::string(50 << 20, 'a'));
    int turns = 0;
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, search.get(), [&turns] { ++turns; });
    ticks.start(0);
    look(QStringLiteral("aa"));
    ASSERT_TRUE(waitForCount());
    EXPECT_EQ(search->count(), 25 << 20);
    EXPECT_GT(turns, 0);
}

TEST_F(TextSearchTests, AnEditGivesUpTheMatchThatIsBeingLookedFor) {
    open(filler(30 << 20) + "aguja");
    look(QStringLiteral("aguja"));
    search->findNext();
    ASSERT_TRUE(search->isFinding());
    view->textStorage().replaceCharacters({0, 0}, QStringLiteral("x"));
    EXPECT_FALSE(search->isFinding());
    ASSERT_TRUE(waitForCount());
    EXPECT_EQ(search->count(), 1);
    EXPECT_TRUE(view->selectedRange().isEmpty());
}

TEST_F(TextSearchTests, ACompositionGivesUpTheMatchThatIsBeingLookedFor) {
    open(filler(30 << 20) + "aguja");
    search->setFollowing(false);
    look(QStringLiteral("aguja"));
    search->findNext();
    ASSERT_TRUE(search->isFinding());
    compose(QStringLiteral("に"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return !search->isFinding(); }, patience));
    EXPECT_TRUE(view->isComposing());
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 0}));
}

TEST_F(TextSearchTests, WhatIsBeingComposedIsCommittedBeforeLooking) {
    open("dos uno");
    look(QStringLiteral("uno"));
    compose(QStringLiteral("uno "));
    search->findNext();
    EXPECT_EQ(view->textStorage().string({0, view->textStorage().length()}), QStringLiteral("uno dos uno"));
    EXPECT_EQ(view->selectedRange(), (TextRange{8, 3}));
    view->setSelectedRange({4, 0});
    compose(QStringLiteral("uno"));
    search->findPrevious();
    EXPECT_EQ(view->selectedRange(), (TextRange{4, 3}));
}

TEST_F(TextSearchTests, ANewQueryTakesThePlaceOfTheOneThatIsCounted) {
    open(filler(20 << 20) + "aguja");
    look(QStringLiteral("relleno"));
    look(QStringLiteral("aguja"));
    ASSERT_TRUE(waitForCount());
    EXPECT_EQ(search->count(), 1);
}

TEST_F(TextSearchTests, MayGoAwayTogetherWithItsViewInTheMiddleOfASearch) {
    open(filler(30 << 20) + "aguja");
    look(QStringLiteral("aguja"));
    search->findNext();
    ASSERT_TRUE(search->isFinding());
    view.reset();
    EXPECT_EQ(search->count(), std::nullopt);
    EXPECT_EQ(search->currentNumber(), std::nullopt);
    search->findNext();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !search->isFinding(); }, patience));
    search.reset();
}

TEST_F(TextSearchTests, TypingGoesOnFromWhereTheSelectionWas) {
    open("dado uno dos dado dos");
    view->setSelectedRange({5, 0});
    look(QStringLiteral("d"));
    search->findWhileTyping();
    EXPECT_EQ(view->selectedRange(), (TextRange{9, 1}));
    look(QStringLiteral("da"));
    search->findWhileTyping();
    EXPECT_EQ(view->selectedRange(), (TextRange{13, 2}));
    look(QStringLiteral("do"));
    search->findWhileTyping();
    EXPECT_EQ(view->selectedRange(), (TextRange{9, 2}));
    look(QStringLiteral("dox"));
    search->findWhileTyping();
    EXPECT_EQ(view->selectedRange(), (TextRange{5, 0}));
    look(QStringLiteral("da"));
    search->findWhileTyping();
    EXPECT_EQ(view->selectedRange(), (TextRange{13, 2}));
    // After another step typing begins there.
    search->findNext();
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 2}));
    look(QStringLiteral("d"));
    search->findWhileTyping();
    EXPECT_EQ(view->selectedRange(), (TextRange{0, 1}));
}

TEST_F(TextSearchTests, MatchesInAndAroundTheViewportAreFoundAnewAfterEveryEdit) {
    open("uno\ndos\nuno\n");
    const SearchPattern pattern("uno", CaseSensitivity::sensitive);
    EXPECT_EQ(matchesNearViewport(*view, pattern, nullptr), (std::vector<TextRange>{{0, 3}, {8, 3}}));
    view->textStorage().replaceCharacters({0, 4}, QStringLiteral("😀 "));
    EXPECT_EQ(matchesNearViewport(*view, pattern, nullptr), (std::vector<TextRange>{{7, 3}}));
}

TEST_F(TextSearchTests, OnlyTheNeighbourhoodOfTheViewportIsSearchedInOneLongLine) {
    open(std::string(20 << 20, 'a'));
    const SearchPattern pattern("a", CaseSensitivity::sensitive);
    const std::vector<TextRange> found = matchesNearViewport(*view, pattern, nullptr);
    EXPECT_GT(found.size(), 10U);
    EXPECT_LT(found.size(), 20'000U);
    EXPECT_EQ(found.front(), (TextRange{0, 1}));
    EXPECT_EQ(found.back(), (TextRange{qint64(found.size()) - 1, 1}));
}

TEST_F(TextSearchTests, MarksAreThoseOfTheCountWhereOccurrencesOverlap) {
    open("b\n" + std::string(100'001, 'a') + "\n");
    look(QStringLiteral("aa"), CaseSensitivity::sensitive);
    ASSERT_EQ(search->count(), 50'000);
    view->setSelectedRange({90'003, 0});
    view->scrollRangeToVisible({90'003, 0});
    const auto index = MatchIndex::build(view->textStorage().text(), *search->pattern());
    ASSERT_TRUE(index);
    const std::vector<TextRange> found = matchesNearViewport(*view, *search->pattern(), &*index);
    ASSERT_FALSE(found.empty());
    for (const TextRange& range : found)
        ASSERT_EQ(range.location % 2, 0);
}

TEST(SearchRanges, AreTheSameTogetherAsOneByOne) {
    const TextRope text(SharedText(std::string_view("a😀ñ€b😀")));
    const std::vector<ByteRange> bytes{{1, 4}, {5, 2}, {10, 5}};
    std::vector<TextRange> expected;
    for (const ByteRange& range : bytes) {
        expected.push_back(textRange(text, range));
        EXPECT_EQ(byteRange(text, expected.back()), range);
    }
    EXPECT_EQ(expected, (std::vector<TextRange>{{1, 2}, {3, 1}, {5, 3}}));
    EXPECT_EQ(textRanges(text, bytes), expected);
    EXPECT_TRUE(textRanges(text, {}).empty());
}

} // namespace
} // namespace quelm
