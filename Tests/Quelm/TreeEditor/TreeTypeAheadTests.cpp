#include "Quelm/TreeEditor/TreeEditor.h"
#include "Quelm/TreeEditor/TreeTypeAhead.h"
#include "Tests/Quelm/Support/TestDocuments.h"

#include <QCoreApplication>

#include <gtest/gtest.h>
#include <memory>

namespace quelm {
namespace {

using namespace std::chrono_literals;

class TreeTypeAheadTests : public testing::Test {
protected:
    void open(std::string_view text) {
        editor = std::make_unique<TreeEditor>(documentWithText(text));
        editor->reload();
        search = std::make_unique<TreeTypeAhead>(*editor);
        QObject::connect(search.get(), &TreeTypeAhead::found, search.get(), [this](std::int64_t row) {
            selected = row;
            ++finds;
        });
    }

    /// The row selected afterwards, when the search is over.
    std::int64_t type(const char* text, std::chrono::milliseconds pause = 100ms) {
        now += pause;
        search->type(QString::fromUtf8(text), selected, now);
        while (search->isSearching())
            QCoreApplication::processEvents();
        return selected.value_or(-1);
    }

    std::unique_ptr<TreeEditor> editor;
    std::unique_ptr<TreeTypeAhead> search;
    std::optional<std::int64_t> selected = 0;
    std::chrono::milliseconds now{5000};
    int finds = 0;
};

TEST_F(TreeTypeAheadTests, ALetterFindsTheNextKeyThatBeginsWithItWhateverTheCase) {
    open(R"({"uno":1,"Dos":2,"dos":3})");
    EXPECT_EQ(type("d"), 2);
    EXPECT_EQ(type("D", 2s), 3);
}

TEST_F(TreeTypeAheadTests, FurtherLettersNarrowFromTheRowThatWasFound) {
    open(R"({"pera":1,"pino":2,"pinar":3,"uva":4})");
    EXPECT_EQ(type("p"), 1);
    EXPECT_EQ(type("i"), 2);
    EXPECT_EQ(type("n"), 2) << "the row that is found already still fits";
    EXPECT_EQ(type("a"), 3);
}

TEST_F(TreeTypeAheadTests, AfterTheLastRowTheSearchGoesOnAtTheFirst) {
    open(R"({"ala":1,"b":2,"c":3})");
    selected = 3;
    EXPECT_EQ(type("a"), 1);
}

TEST_F(TreeTypeAheadTests, TheSelectedRowItselfIsFoundLast) {
    open(R"({"a":1,"b":2})");
    selected = 1;
    EXPECT_EQ(type("a"), 1);
    EXPECT_EQ(finds, 1);
}

TEST_F(TreeTypeAheadTests, TheSameLetterAgainGoesToTheNextKeyWithIt) {
    open(R"({"a1":1,"b":2,"A2":3,"a3":4})");
    EXPECT_EQ(type("a"), 1);
    EXPECT_EQ(type("a"), 3);
    EXPECT_EQ(type("A"), 4);
    EXPECT_EQ(type("a"), 1);
}

TEST_F(TreeTypeAheadTests, AfterARepeatedLetterAnotherOneStillNarrows) {
    open(R"({"aa":1,"ab":2,"aab":3})");
    EXPECT_EQ(type("a"), 1);
    EXPECT_EQ(type("a"), 2);
    EXPECT_EQ(type("b"), 3);
}

TEST_F(TreeTypeAheadTests, AfterAPauseTheTextIsANewOne) {
    open(R"({"ab":1,"b":2})");
    EXPECT_EQ(type("a"), 1);
    EXPECT_EQ(type("b", 1001ms), 2);
    search->setInterval(2000ms);
    EXPECT_EQ(type("a", 5s), 1);
    EXPECT_EQ(type("b", 1001ms), 1);
}

TEST_F(TreeTypeAheadTests, AKeyThatIsNotThereLeavesTheSelection) {
    open(R"({"a":1,"b":2})");
    EXPECT_EQ(type("z"), 0);
    EXPECT_EQ(type("a"), 0) << "no key begins like this text either";
    EXPECT_EQ(finds, 0);
}

TEST_F(TreeTypeAheadTests, WithoutASelectionTheSearchBeginsAtTheFirstRow) {
    open(R"({"a":1,"a2":2})");
    selected = std::nullopt;
    EXPECT_EQ(type("a"), 1);
}

TEST_F(TreeTypeAheadTests, OnlyKeysOfMembersAreFound) {
    open(R"(["a","0",{"0":1}])");
    editor->toggleExpansion(editor->outline().rowID(3), false);
    EXPECT_EQ(type("0"), 4);
}

TEST_F(TreeTypeAheadTests, WhatIsInCollapsedContainersIsNotFound) {
    open(R"({"a":{"x":1},"xilófono":2})");
    EXPECT_EQ(type("x"), 2);
}

TEST_F(TreeTypeAheadTests, LettersBeyondASCIIAreFoundComposedOrNot) {
    open("{\"e\":0,\"\u00c1rbol\":1,\"E\u0301xito\":2,\"\u4e2d\u6587\":3,\"\U0001f600 cara\":4}");
    EXPECT_EQ(type("\u00e1", 5s), 2);
    EXPECT_EQ(type("\u00e9x", 5s), 3);
    EXPECT_EQ(type("\u4e2d", 5s), 4);
    EXPECT_EQ(type("\U0001f600", 5s), 5);
    EXPECT_EQ(type("e", 5s), 1);
}

TEST_F(TreeTypeAheadTests, SpacesBelongToTheText) {
    open(R"({"a":1,"ab":2,"a b":3})");
    EXPECT_EQ(type("a"), 1);
    EXPECT_EQ(type(" "), 3);
    EXPECT_EQ(type("b"), 3);
}

std::string manyMembers(int count) {
    std::string text = "{";
    for (int member = 0; member < count; ++member)
        text += "\"k" + std::to_string(member) + "\":0,";
    return text + "\"zeta\":1,\"zorro\":2}";
}

TEST_F(TreeTypeAheadTests, ManyRowsAreSearchedWithoutHoldingUpTheEventLoop) {
    constexpr int count = 200'000;
    open(manyMembers(count));
    search->type(QStringLiteral("z"), selected, now);
    EXPECT_TRUE(search->isSearching());
    EXPECT_EQ(finds, 0);
    search->type(QStringLiteral("o"), selected, now);
    while (search->isSearching())
        QCoreApplication::processEvents();
    EXPECT_EQ(selected, count + 2);
    EXPECT_EQ(finds, 1) << "the shorter text was not gone to on the way";
}

TEST_F(TreeTypeAheadTests, ACancelledSearchFindsNothingAndForgetsTheText) {
    open(manyMembers(200'000));
    search->type(QStringLiteral("z"), selected, now);
    search->cancel();
    EXPECT_FALSE(search->isSearching());
    QCoreApplication::processEvents();
    EXPECT_EQ(finds, 0);
    EXPECT_EQ(type("k"), 1);
}

TEST_F(TreeTypeAheadTests, OnlyTheBeginningsOfKeysAreLookedAt) {
    // Were they read whole, 3000 searches through 8 MB of keys would take minutes.
    std::string text = "{";
    for (int member = 0; member < 4; ++member)
        text += (member ? ",\"k" : "\"k") + std::string(2'000'000, static_cast<char>('a' + member)) + "\":1";
    open(text + "}");
    for (int round = 0; round < 3000; ++round)
        ASSERT_EQ(type("kd", 5s), 4);
}

} // namespace
} // namespace quelm
