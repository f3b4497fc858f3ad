#include "Benchmarks/Harness/Contest.h"
#include "Benchmarks/JSON/SameOutput.h"
#include "Benchmarks/Options.h"
#include "Benchmarks/Peers/Peers.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace quelm::bench {

namespace {

using testing::ElementsAre;

constexpr std::array<std::string_view, 2> groups{"json", "outline"};

auto parsed(const std::vector<std::string_view>& arguments) {
    return Options::parse(arguments, groups);
}

TEST(Samples, TellPercentilesByRank) {
    Samples samples;
    for (const double seconds : {5.0, 1.0, 4.0, 2.0, 3.0})
        samples.add(seconds);
    EXPECT_EQ(samples.median(), 3.0);
    EXPECT_EQ(samples.percentile(99), 5.0);
    EXPECT_EQ(samples.percentile(0), 1.0);
}

TEST(Contest, LetsContestantsTakeTurnsAndReversesTheOrderEachRound) {
    std::string order;
    const auto contestant = [&](char name) {
        return Contestant{std::string(1, name), [&order, name] {
                              order += name;
                              return std::optional(1.0);
                          }};
    };
    hold({contestant('a'), contestant('b'), contestant('c')}, {.fewestRounds = 3, .mostRounds = 3, .seconds = 0});
    EXPECT_EQ(order, "abccbaabc");
}

TEST(Contest, GivesNoFiguresForAContestantThatFailed) {
    int rounds = 0;
    const Contestant failing{"failing", [&] { return ++rounds < 2 ? std::optional(1.0) : std::nullopt; }};
    const auto results = hold({failing}, {.fewestRounds = 5, .mostRounds = 5, .seconds = 0});
    EXPECT_TRUE(results.front().seconds.empty());
    EXPECT_EQ(rounds, 2);
}

TEST(Contest, LeavesTheSlowOnesOutOfLaterRounds) {
    int rounds = 0;
    const Contestant slow{"slow", [&] { return ++rounds, std::optional(1.0); }, 2};
    const auto results = hold({slow}, {.fewestRounds = 9, .mostRounds = 9, .seconds = 0});
    EXPECT_EQ(results.front().seconds.size(), 2u);
}

TEST(Options, TakeGroupsAndFilesInAnyOrder) {
    const auto options = parsed({"--corpus", "a.json", "b.json", "outline", "--all-peers", "json", "--size", "1000"});
    ASSERT_TRUE(options);
    EXPECT_THAT(options->groups, ElementsAre("outline", "json"));
    EXPECT_THAT(options->corpora, ElementsAre("a.json", "b.json"));
    EXPECT_THAT(options->recordSizes, ElementsAre(1000u));
    EXPECT_TRUE(options->allPeers);
}

TEST(Options, RefuseAnUnknownGroupAndNameTheGroupsThatThereAre) {
    EXPECT_EQ(parsed({"jsonn"}).error(), "unknown group 'jsonn' (there are: json, outline)");
}

TEST(Options, RefuseWhatTheyDoNotKnowOrWhatLacksItsValue) {
    EXPECT_EQ(parsed({"--fast"}).error(), "unknown option '--fast'");
    EXPECT_EQ(parsed({"--corpus"}).error(), "--corpus needs the name of a file");
    EXPECT_EQ(parsed({"--size", "big"}).error(), "--size needs a number of megabytes");
}

TEST(SameOutput, FindsTheFirstByteThatDiffers) {
    EXPECT_EQ(firstDifference("[1,2]", "[1,3]"), 3u);
    EXPECT_EQ(firstDifference("[1", "[1]"), 2u);
    EXPECT_EQ(firstDifference("[1,2]", "[1,2]"), std::nullopt);
}

TEST(SameOutput, OverlooksALastLineFeedAndTheCaseOfEscapeDigits) {
    EXPECT_EQ(firstDifference("[]\n", "[]"), std::nullopt);
    EXPECT_EQ(firstDifference(R"("\u001f")", R"("\u001F")"), std::nullopt);
    EXPECT_EQ(firstDifference(R"("a")", R"("A")"), 1u);
    EXPECT_EQ(firstDifference(R"("\u001fa")", R"("\u001FA")"), 7u);
}

TEST(Peers, ThatKeepNumbersWriteThemAsTheyStandInTheText) {
    const std::string text = R"({"b":[1.50,-0,1e3],"a":"1.50"})" + std::string(JSONLibrary::padding, '\0');
    int writers = 0;
    for (const auto& peer : peers::all()) {
        if (!peer->writesNumbersAsGiven())
            continue;
        ASSERT_TRUE(peer->parseForWriting(std::string_view(text).substr(0, text.size() - JSONLibrary::padding)));
        ASSERT_TRUE(peer->write(WriteLayout::sorted));
        EXPECT_EQ(peer->output(), "{\n  \"a\": \"1.50\",\n  \"b\": [\n    1.50,\n    -0,\n    1e3\n  ]\n}");
        peer->discardOutput();
        ASSERT_TRUE(peer->write(WriteLayout::compact));
        EXPECT_EQ(peer->output(), R"({"b":[1.50,-0,1e3],"a":"1.50"})");
        ++writers;
    }
    EXPECT_GE(writers, 1);
}

} // namespace

} // namespace quelm::bench
