#include "Quelm/Documents/ContentConversion.h"
#include "Tests/Quelm/Recovery/ReplayedJournalTest.h"

#include <cstdint>
#include <limits>

namespace quelm {
namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

class JournalReplayTests : public ReplayedJournalTest {};

// Where it begins.

TEST_F(JournalReplayTests, BeginsWithTheBytesOfTheFile) {
    startText("\xEF\xBB\xBF[1,\r\n 1.50]");
    EXPECT_EQ(replay->mode(), EditorMode::text);
    EXPECT_FALSE(replay->isModified());
    EXPECT_EQ(bytes(), "\xEF\xBB\xBF[1,\r\n 1.50]");
}

TEST_F(JournalReplayTests, BeginsWithTheTreeAndTheTextOfAFileThatIsShownAsATree) {
    startTree("[ 1 ]");
    EXPECT_EQ(replay->mode(), EditorMode::tree);
    const JSONContent first = content();
    EXPECT_TRUE(first.tree);
    EXPECT_EQ(JSONDocument::fileContents(first).view(), "[ 1 ]");
    EXPECT_EQ(first.style, pretty);
}

TEST_F(JournalReplayTests, ANewDocumentBeginsAsAnEmptyObject) {
    startNew();
    EXPECT_EQ(replay->mode(), EditorMode::tree);
    EXPECT_EQ(json(), "{}");
}

TEST_F(JournalReplayTests, ANewDocumentCanBeginAsText) {
    auto begun = JournalReplay::start({.path = {}, .checksum = {}, .mode = EditorMode::text, .style = pretty}, {});
    ASSERT_TRUE(begun);
    const auto first = std::move(*begun).content();
    ASSERT_TRUE(first && first->text);
    EXPECT_EQ(first->text->contiguous().view(), "{}\n");
}

TEST_F(JournalReplayTests, RefusesATreeOfAFileThatIsNoJSON) {
    const auto begun = JournalReplay::start(base(EditorMode::tree, "[1"), text("[1"));
    ASSERT_FALSE(begun);
    EXPECT_EQ(begun.error(), ReplayError::impossible);
}

TEST_F(JournalReplayTests, RefusesAFileThatIsNotUTF8) {
    const auto begun = JournalReplay::start(base(EditorMode::text, "\xFF"), text("\xFF"));
    ASSERT_FALSE(begun);
    EXPECT_EQ(begun.error(), ReplayError::impossible);
}

// Texts.

TEST_F(JournalReplayTests, RepeatsAnEditOfTheText) {
    startText("[1, 2]");
    ASSERT_TRUE(apply(edit(1, 1, "10")));
    EXPECT_TRUE(replay->isModified());
    const JSONContent edited = content();
    EXPECT_EQ(edited.text->contiguous().view(), "[10, 2]");
    EXPECT_FALSE(edited.tree);
    EXPECT_FALSE(edited.parseError);
}

TEST_F(JournalReplayTests, RepeatsCopiesOfWhatIsRemovedAndOfTheFile) {
    startText("abcdef");
    ASSERT_TRUE(apply(edit(1, 4, {removedCopy(2, 2), literal("-"), removedCopy(0, 1), fileCopy(0, 6)})));
    EXPECT_EQ(bytes(), "ade-babcdeff");
}

TEST_F(JournalReplayTests, TheFileStaysWhatItWasHoweverTheTextIsEdited) {
    startText("abc");
    repeat({edit(0, 3, "x"), edit(1, 0, {fileCopy(0, 3)})});
    EXPECT_EQ(bytes(), "xabc");
}

TEST_F(JournalReplayTests, ANewDocumentHasNoFileToCopyFrom) {
    startNew();
    repeat({journal::ChangeMode{EditorMode::text}});
    EXPECT_EQ(apply(edit(0, 0, {fileCopy(0, 1)})), impossible);
    EXPECT_TRUE(apply(edit(0, 0, {fileCopy(0, 0)})));
}

TEST_F(JournalReplayTests, RefusesEditsOutsideTheText) {
    startText("abc");
    for (const auto& [location, removed] : std::vector<std::pair<std::int64_t, std::int64_t>>{
             {4, 0}, {-1, 0}, {0, 4}, {2, 2}, {3, 1}, {0, -1}, {most, most}, {1, most}, {least, least}, {3, least}})
        EXPECT_EQ(apply(edit(location, removed, "x")), impossible) << location << ", " << removed;
    EXPECT_EQ(bytes(), "abc");
}

TEST_F(JournalReplayTests, RefusesEditsAndCopiesWithinACharacter) {
    startText("a\xC3\xB1\xF0\x9F\x98\x80z");
    for (const std::int64_t place : {2, 4, 5, 6}) {
        EXPECT_EQ(apply(edit(place, 0, "x")), impossible) << place;
        EXPECT_EQ(apply(edit(0, place, "x")), impossible) << place;
        EXPECT_EQ(apply(edit(0, 0, {fileCopy(0, place)})), impossible) << place;
        EXPECT_EQ(apply(edit(0, 8, {removedCopy(place, 8 - place)})), impossible) << place;
    }
    EXPECT_TRUE(apply(edit(1, 2, {fileCopy(3, 4), removedCopy(0, 2)})));
    EXPECT_EQ(bytes(), "a\xF0\x9F\x98\x80\xC3\xB1\xF0\x9F\x98\x80z");
}

TEST_F(JournalReplayTests, RefusesCopiesOutsideTheirText) {
    startText("abc");
    EXPECT_EQ(apply(edit(0, 2, {removedCopy(0, 3)})), impossible);
    EXPECT_EQ(apply(edit(0, 0, {removedCopy(0, 1)})), impossible);
    EXPECT_EQ(apply(edit(0, 0, {fileCopy(1, 3)})), impossible);
    EXPECT_EQ(apply(edit(0, 0, {fileCopy(most, most)})), impossible);
    EXPECT_EQ(apply(edit(0, 0, {fileCopy(-1, 1)})), impossible);
}

TEST_F(JournalReplayTests, RefusesLiteralsThatAreNotUTF8) {
    startText("abc");
    EXPECT_EQ(apply(edit(0, 0, "\xC3")), impossible);
}

TEST_F(JournalReplayTests, RefusesEditsOfATextThatIsShownAsATree) {
    startTree("[1]");
    EXPECT_EQ(apply(edit(1, 0, "2")), impossible);
}

TEST_F(JournalReplayTests, ATextThatGrowsByCopiesOfItselfEndsAtTheLimit) {
    startText("0123456789abcdef");
    Repeated repeated;
    std::int64_t size = 16;
    for (int doubling = 0; doubling < 64 && repeated; ++doubling) {
        repeated = apply(edit(0, size, {removedCopy(0, size), removedCopy(0, size)}));
        size *= 2;
    }
    EXPECT_EQ(repeated, std::unexpected(ReplayError::tooLarge));
    EXPECT_GT(size, std::int64_t{1} << 31);
}

TEST_F(JournalReplayTests, ALimitOfItsOwnHolds) {
    startText("abc", {}, {.longestText = 5});
    EXPECT_TRUE(apply(edit(3, 0, "de")));
    EXPECT_EQ(apply(edit(0, 0, "f")), std::unexpected(ReplayError::tooLarge));
    EXPECT_TRUE(apply(edit(0, 1, "f")));
    EXPECT_EQ(bytes(), "fbcde");
}

// Modes.

TEST_F(JournalReplayTests, ChangesTheModeAsTheDocumentDoes) {
    startText("[1,\n2]");
    repeat({edit(1, 1, "7"), journal::ChangeMode{EditorMode::tree}});
    EXPECT_EQ(replay->mode(), EditorMode::tree);
    const JSONContent converted = content();
    EXPECT_TRUE(converted.tree);
    EXPECT_EQ(JSONDocument::fileContents(converted).view(), "[7,\n2]");
}

TEST_F(JournalReplayTests, ATreeThatWasEditedBecomesTextInItsStyle) {
    startTree("[1]");
    repeat({tree({journal::SetValue{{0, 0}, NodeKind::number, text("2.0")}}), journal::ChangeMode{EditorMode::text}});
    EXPECT_EQ(bytes(), "[\n  2.0\n]\n");
}

TEST_F(JournalReplayTests, AChangeOfTheModeIsNothingToRecover) {
    startText("[1]");
    repeat({journal::ChangeMode{EditorMode::tree}, journal::ChangeMode{EditorMode::tree}});
    EXPECT_FALSE(replay->isModified());
}

TEST_F(JournalReplayTests, RefusesATreeOfATextThatIsNoJSON) {
    startText("[1]");
    repeat({edit(0, 1, "")});
    EXPECT_EQ(apply(journal::ChangeMode{EditorMode::tree}), impossible);
    EXPECT_EQ(replay->mode(), EditorMode::text);
    EXPECT_EQ(bytes(), "1]");
}

// Whole contents.

TEST_F(JournalReplayTests, FormatsAsTheDocumentDoes) {
    const std::string file = R"({"b":[1,{"d":1.0,"c":"\u00e9"}],"a":{},"b":2})";
    for (const JSONStyle& style : {pretty, sorted, JSONStyle::compact()})
        for (const bool asText : {false, true}) {
            asText ? startText(file) : startTree(file);
            repeat({journal::Reformat{1, 2, style}});
            const auto expected = ContentConversion::reformat(*JSONContent::fromData(text(file)), style, {});
            ASSERT_TRUE(expected);
            const JSONContent formatted = content();
            EXPECT_EQ(JSONDocument::fileContents(formatted).view(), expected->text->contiguous().view());
            EXPECT_EQ(formatted.style, style);
            EXPECT_EQ(*formatted.tree, *expected->tree);
        }
}

TEST_F(JournalReplayTests, ATreeThatWasFormattedKeepsTheOrderOfItsMembers) {
    startTree(R"({"b":1,"a":2})");
    repeat({journal::Reformat{1, 2, sorted}, tree({journal::SetKey{{0, 0}, text("z")}})});
    EXPECT_EQ(json(), R"({"z":1,"a":2})");
}

TEST_F(JournalReplayTests, EditsGoOnInTheFormattedText) {
    startText("[1]");
    repeat({journal::Reformat{1, 2, pretty}, edit(4, 1, "22")});
    EXPECT_EQ(bytes(), "[\n  22\n]\n");
}

TEST_F(JournalReplayTests, RefusesToFormatWhatIsNoJSON) {
    startText("[1");
    EXPECT_EQ(apply(journal::Reformat{1, 2, pretty}), impossible);
    EXPECT_EQ(bytes(), "[1");
}

TEST_F(JournalReplayTests, IndentationThatMakesATextTooLongIsAnError) {
    const std::string deep = std::string(20'000, '[') + std::string(20'000, ']');
    startText(deep, {}, {.longestText = 1'000'000});
    repeat({journal::Reformat{1, 2, pretty}});
    EXPECT_EQ(std::move(*replay).content().error(), ReplayError::tooLarge);
}

TEST_F(JournalReplayTests, WorkThatEachRecordAsksForAnewEndsAtALimit) {
    startText("[1]", {}, {.work = 1000});
    Repeated repeated;
    for (int round = 0; round < 1000 && repeated; ++round) {
        repeated = apply(journal::Reformat{1, 2, JSONStyle::compact()});
        if (repeated)
            repeated = apply(edit(1, 1, "1"));
    }
    EXPECT_EQ(repeated, std::unexpected(ReplayError::tooLarge));
}

TEST_F(JournalReplayTests, ReturnsToAContentAsItWasLeft) {
    startText("[1]", {{1, 2}, {2, 1}});
    repeat({edit(1, 1, "5"), journal::Reformat{1, 2, pretty}, edit(4, 1, "6"), journal::Return{2, 1}});
    repeat({edit(3, 0, "\n"), journal::Return{1, 2}});
    EXPECT_EQ(bytes(), "[\n  6\n]\n");
}

TEST_F(JournalReplayTests, ReturnsBothWays) {
    startText("[1]", {{1, 2}, {2, 1}});
    repeat({journal::Reformat{1, 2, pretty}, journal::Return{2, 1}, edit(3, 0, " "), journal::Return{1, 2},
            journal::Return{2, 1}});
    EXPECT_EQ(bytes(), "[1] ");
}

TEST_F(JournalReplayTests, NodesThatAContentHadDetachedAreKeptWithIt) {
    startTree("[1,2]", {{1, 1}});
    repeat({tree({journal::Remove{{0, 0}, 7}}), journal::Reformat{1, 2, pretty},
            tree({journal::SetValue{{0, 0}, NodeKind::number, text("3")}}), journal::Return{2, 1},
            tree({journal::InsertDetached{{0}, 1, 7}})});
    EXPECT_EQ(json(), "[2,1]");
}

TEST_F(JournalReplayTests, RefusesNodesThatAnotherContentHadDetached) {
    startTree("[1,2]", {{1, 1}});
    repeat({tree({journal::Remove{{0, 0}, 7}}), journal::Reformat{1, 2, pretty}});
    EXPECT_EQ(apply(tree({journal::InsertDetached{{0}, 0, 7}})), impossible);
}

TEST_F(JournalReplayTests, RefusesToReturnToWhatIsNotThere) {
    startText("[1]", {{1, 9}, {5, 9}});
    EXPECT_EQ(apply(journal::Return{1, 5}), impossible);
    EXPECT_EQ(apply(journal::Return{1, 1}), impossible);
    repeat({journal::Reformat{1, 2, pretty}});
    EXPECT_EQ(apply(journal::Return{1, 1}), impossible);
    repeat({journal::Return{2, 1}});
    // Its own content does not come back twice.
    EXPECT_EQ(apply(journal::Return{2, 1}), impossible);
    EXPECT_EQ(bytes(), "[1]");
}

TEST_F(JournalReplayTests, AContentThatNoRecordReturnsToIsNotKept) {
    startText("[1]", {{2, 1}});
    repeat({journal::Reformat{1, 2, pretty}});
    EXPECT_EQ(apply(journal::Return{2, 1}), impossible);
}

TEST_F(JournalReplayTests, ReplacesTheContentByAText) {
    startText("[1, 2]");
    repeat({journal::Replace{
        .numberBefore = 1, .number = 2, .style = sorted, .hasText = true, .text = {removedCopy(0, 3), literal("x")}}});
    const JSONContent replaced = content();
    EXPECT_EQ(JSONDocument::fileContents(replaced).view(), "[1,x");
    EXPECT_EQ(replaced.style, sorted);
    EXPECT_FALSE(replaced.tree);
}

TEST_F(JournalReplayTests, ReplacesTheContentByATextWithItsTree) {
    startTree("[1]");
    repeat({journal::Replace{
        .numberBefore = 1, .number = 2, .hasText = true, .hasTree = true, .text = {literal("[ 2 ]")}}});
    const JSONContent replaced = content();
    EXPECT_EQ(replaced.text->contiguous().view(), "[ 2 ]");
    EXPECT_TRUE(replaced.tree);
}

TEST_F(JournalReplayTests, ReplacesTheContentByATree) {
    startTree("[1]");
    repeat(
        {journal::Replace{.numberBefore = 1, .number = 1, .style = pretty, .hasTree = true, .text = {literal("[2]")}}});
    const JSONContent replaced = content();
    EXPECT_FALSE(replaced.text);
    EXPECT_EQ(JSONDocument::fileContents(replaced).view(), "[\n  2\n]\n");
}

TEST_F(JournalReplayTests, ReplacesTheContentByATreeWithTheTextThatIsMadeOfIt) {
    startText("[1]");
    repeat({journal::Replace{.numberBefore = 1,
                             .number = 2,
                             .style = sorted,
                             .hasText = true,
                             .hasTree = true,
                             .isTextMadeOfTree = true,
                             .text = {literal(R"({"b":1,"a":2})")}}});
    EXPECT_EQ(bytes(), "{\n    \"a\": 2,\n    \"b\": 1\n}\n");
}

TEST_F(JournalReplayTests, RefusesAContentThatTheModeCannotShow) {
    startTree("[1]");
    EXPECT_EQ(apply(journal::Replace{.hasText = true, .text = {literal("[2]")}}), impossible);
    repeat({journal::ChangeMode{EditorMode::text}});
    EXPECT_EQ(apply(journal::Replace{.hasTree = true, .text = {literal("[2]")}}), impossible);
    EXPECT_EQ(bytes(), "[1]");
}

TEST_F(JournalReplayTests, RefusesAContentWithoutPartsOrWithATreeThatIsNone) {
    startText("[1]");
    EXPECT_EQ(apply(journal::Replace{.text = {literal("[2]")}}), impossible);
    EXPECT_EQ(apply(journal::Replace{.hasText = true, .hasTree = true, .text = {literal("[2")}}), impossible);
    EXPECT_EQ(apply(journal::Replace{.hasText = true, .isTextMadeOfTree = true, .text = {literal("[2]")}}), impossible);
}

// Other records.

TEST_F(JournalReplayTests, KnowsWhetherThereIsAnythingToRecover) {
    startText("[1]");
    repeat({edit(1, 1, "2"), edit(1, 1, "1"), journal::Modified{false}});
    EXPECT_FALSE(replay->isModified());
    repeat({edit(1, 1, "2")});
    EXPECT_TRUE(replay->isModified());
}

TEST_F(JournalReplayTests, BasesAndOutcomesOfSavesChangeNothing) {
    startText("[1]");
    repeat({edit(1, 1, "2"), base(EditorMode::tree, "[9]"), journal::SaveOutcome{false}});
    EXPECT_EQ(replay->mode(), EditorMode::text);
    EXPECT_TRUE(replay->isModified());
    EXPECT_EQ(bytes(), "[2]");
}

TEST_F(JournalReplayTests, EndsWhenItIsStopped) {
    startText("[1]");
    stop.request_stop();
    EXPECT_EQ(apply(edit(0, 0, "x")), std::unexpected(ReplayError::cancelled));
}

} // namespace
} // namespace quelm
