#include "Quelm/TextEngine/AttributeRuns.h"
#include "Tests/Quelm/TextEngine/StripedRuns.h"

#include <gtest/gtest.h>
#include <memory>
#include <tuple>
#include <vector>

namespace quelm {
namespace {

using test::base;
using test::blue;
using test::described;
using test::green;
using test::Stripes;

/// A base run that is not settled, some chunks of six units, another base run.
AttributeRuns withChunks(const std::shared_ptr<const Stripes>& stripes, qint64 chunks) {
    AttributeRunsBuilder builder;
    builder.append({4, base, false});
    for (qint64 chunk = 0; chunk < chunks; ++chunk)
        builder.append(DerivedChunk{stripes, {chunk * Stripes::period, Stripes::period}});
    builder.append({4, base, false});
    return builder.finish();
}

TEST(DerivedRuns, ChunksHaveTheRunsThatAreDerivedForThem) {
    const auto stripes = std::make_shared<const Stripes>();
    const AttributeRuns runs = withChunks(stripes, 2);
    EXPECT_EQ(stripes->derivedCount, 0) << "not before somebody asks";
    EXPECT_EQ(runs.length(), 20);
    EXPECT_EQ(runs.count(), 4);
    EXPECT_EQ(runs.settledEnd(4), 16);
    EXPECT_EQ(runs.settledEnd(11), 16);
    EXPECT_TRUE(runs.isSettled({5, 10}));
    EXPECT_EQ(stripes->derivedCount, 0) << "all runs of chunks are settled";
    EXPECT_EQ(described(runs), "4 base, 1 green!, 2 blue!, 3 base!, 1 green!, 2 blue!, 3 base!, 4 base");
    EXPECT_EQ(runs.runAfter(12).location, 11);
    EXPECT_EQ(runs.runAfter(12).run, (AttributeRun{2, blue, true}));
    EXPECT_EQ(runs.runBefore(16).location, 13);
    EXPECT_EQ(stripes->derivedCount, 2) << "what was asked for last is kept";
    runs.checkInvariants();
}

TEST(DerivedRuns, AnEditPutsTheRunsOfTheChunksItMeetsInTheirPlace) {
    const auto stripes = std::make_shared<const Stripes>();
    AttributeRuns runs = withChunks(stripes, 10);
    runs.replace({20, 1}, 2);
    EXPECT_LE(stripes->derivedCount, 2) << "that and the next, the first run of which is beside what was edited";
    EXPECT_EQ(runs.count(), 11 + 3);
    runs.set(11, std::vector<AttributeRun>{{1, green, true}});
    EXPECT_LE(stripes->derivedCount, 3);
    EXPECT_EQ(runs.count(), 10 + 3 + 3);
    runs.checkInvariants();
}

TEST(DerivedRuns, AnEditAtTheEdgeOfAChunkUnsettlesTheRunThere) {
    const auto stripes = std::make_shared<const Stripes>();
    AttributeRuns runs = withChunks(stripes, 2);
    runs.replace({10, 0}, 1);
    EXPECT_EQ(described(runs), "4 base, 1 green!, 2 blue!, 4 base, 1 green, 2 blue!, 3 base!, 4 base");
    runs.checkInvariants();
}

TEST(DerivedRuns, ARunGivenBesideAChunkIsOneWithTheEqualRunInIt) {
    const auto stripes = std::make_shared<const Stripes>();
    AttributeRuns runs = withChunks(stripes, 1);
    runs.set(10, std::vector<AttributeRun>{{4, base, true}});
    runs.set(2, std::vector<AttributeRun>{{2, green, true}});
    EXPECT_EQ(described(runs), "2 base, 3 green!, 2 blue!, 7 base!");
    EXPECT_EQ(runs.count(), 4);
    runs.checkInvariants();
}

TEST(DerivedRuns, WhatRunsDeriveFromGoesWithTheLastOfItsChunks) {
    auto stripes = std::make_shared<const Stripes>();
    const std::weak_ptr<const Stripes> seen = stripes;
    AttributeRuns runs = withChunks(stripes, 2);
    stripes.reset();
    runs.replace({5, 1}, 0);
    EXPECT_FALSE(seen.expired());
    runs.set(8, std::vector<AttributeRun>{{7, green, true}});
    EXPECT_TRUE(seen.expired());
    runs.checkInvariants();
}

TEST(DerivedRuns, FewChunksAreKeptThatWereAskedForLast) {
    const auto stripes = std::make_shared<const Stripes>();
    const AttributeRuns runs = withChunks(stripes, 100);
    for (int round = 0; round < 10; ++round)
        runs.forEach({300, 10}, [](const AttributeRuns::PlacedRun&) {});
    EXPECT_LE(stripes->derivedCount, 3);
    runs.forEach({0, runs.length()}, [](const AttributeRuns::PlacedRun&) {});
    EXPECT_GE(stripes->derivedCount, 100);
    EXPECT_LE(stripes->derivedCount, 103) << "each once";
}

class Short : public DerivedRuns {
    void derive(TextRange, AttributeRunsBuilder& runs) const override { runs.append({1, green, true}); }
};

TEST(DerivedRunsDeathTest, RunsThatDoNotCoverTheirChunkAreAProgrammingError) {
    AttributeRunsBuilder builder;
    builder.append(DerivedChunk{std::make_shared<const Short>(), {0, 2}});
    const AttributeRuns runs = builder.finish();
    EXPECT_DEATH(std::ignore = runs.runAfter(0), "derived runs cover their chunk");
    EXPECT_DEATH(builder.append(DerivedChunk{std::make_shared<const Short>(), {0, 0}}), "a chunk has characters");
}

} // namespace
} // namespace quelm
