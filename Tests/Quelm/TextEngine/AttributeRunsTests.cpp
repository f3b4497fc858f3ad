#include "Quelm/TextEngine/AttributeRuns.h"
#include "Tests/Quelm/TextEngine/StripedRuns.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace quelm {
namespace {

using test::base;
using test::blue;
using test::described;
using test::green;
using test::Stripes;

AttributeRuns withRuns(std::vector<AttributeRun> runs) {
    qint64 length = 0;
    for (const AttributeRun& run : runs)
        length += run.length;
    AttributeRuns made(length);
    made.set(0, runs);
    made.checkInvariants();
    return made;
}

TEST(AttributeRuns, ATextBeginsWithOneUnsettledBaseRun) {
    EXPECT_EQ(described(AttributeRuns(7)), "7 base");
    EXPECT_EQ(AttributeRuns(7).count(), 1);
    EXPECT_EQ(AttributeRuns().count(), 0);
    EXPECT_EQ(AttributeRuns().length(), 0);
}

TEST(AttributeRuns, EqualNeighboursAreOneRun) {
    AttributeRuns runs = withRuns({{2, green, true}, {3, green, true}, {1, blue, true}});
    EXPECT_EQ(described(runs), "5 green!, 1 blue!");
    runs.set(5, std::vector<AttributeRun>{{1, green, true}});
    EXPECT_EQ(described(runs), "6 green!");
    EXPECT_EQ(runs.count(), 1);
}

TEST(AttributeRuns, RunsThatDifferInBeingSettledStayApart) {
    EXPECT_EQ(described(withRuns({{2, green, true}, {3, green, false}})), "2 green!, 3 green");
}

TEST(AttributeRuns, AnEditWithinARunUnsettlesBothParts) {
    AttributeRuns runs = withRuns({{4, blue, true}, {10, green, true}, {4, blue, true}});
    runs.replace({8, 2}, 3);
    EXPECT_EQ(described(runs), "4 blue!, 4 green, 3 base, 4 green, 4 blue!");
}

TEST(AttributeRuns, AnEditBetweenRunsUnsettlesTheRunsBesideIt) {
    AttributeRuns runs = withRuns({{1, base, true}, {4, blue, true}, {10, green, true}, {2, base, true}});
    runs.replace({5, 0}, 1);
    EXPECT_EQ(described(runs), "1 base!, 4 blue, 1 base, 10 green, 2 base!");
}

TEST(AttributeRuns, ADeletionUnsettlesWhatItBringsTogether) {
    AttributeRuns runs = withRuns({{4, blue, true}, {2, base, true}, {4, green, true}, {1, base, true}});
    runs.replace({4, 2}, 0);
    EXPECT_EQ(described(runs), "4 blue, 4 green, 1 base!");
    runs.replace({0, 9}, 0);
    EXPECT_EQ(runs.length(), 0);
    runs.replace({0, 0}, 2);
    EXPECT_EQ(described(runs), "2 base");
}

TEST(AttributeRuns, AnEditOfNothingUnsettlesItsSurroundingsToo) {
    AttributeRuns runs = withRuns({{4, blue, true}, {4, green, true}});
    runs.replace({2, 0}, 0);
    EXPECT_EQ(described(runs), "4 blue, 4 green!");
}

TEST(AttributeRuns, UnsettledRunsGivenWithinASettledRunUnsettleItsRest) {
    AttributeRuns runs = withRuns({{10, green, true}});
    runs.set(4, std::vector<AttributeRun>{{1, base, false}, {1, base, true}});
    EXPECT_EQ(described(runs), "4 green, 1 base, 1 base!, 4 green!");
}

TEST(AttributeRuns, UnsettledRunsGivenBesideASettledRunLeaveItSettled) {
    AttributeRuns runs = withRuns({{4, green, true}, {2, blue, true}, {4, green, true}});
    runs.set(4, std::vector<AttributeRun>{{2, base, false}});
    EXPECT_EQ(described(runs), "4 green!, 2 base, 4 green!");
}

TEST(AttributeRuns, FindsTheRunOnEitherSideOfAPlace) {
    const AttributeRuns runs = withRuns({{3, green, true}, {2, blue, false}});
    EXPECT_EQ(runs.runAfter(0).location, 0);
    EXPECT_EQ(runs.runAfter(2).location, 0);
    EXPECT_EQ(runs.runAfter(3).location, 3);
    EXPECT_EQ(runs.runBefore(3).location, 0);
    EXPECT_EQ(runs.runBefore(4).location, 3);
    EXPECT_EQ(runs.runBefore(5).run, (AttributeRun{2, blue, false}));
    EXPECT_EQ(runs.runBefore(5).end(), 5);
}

TEST(AttributeRuns, SaysHowFarRunsAreSettled) {
    const AttributeRuns runs = withRuns({{3, green, true}, {2, blue, true}, {1, base, false}, {4, blue, true}});
    EXPECT_EQ(runs.settledEnd(0), 5);
    EXPECT_EQ(runs.settledEnd(4), 5);
    EXPECT_EQ(runs.settledEnd(5), 5);
    EXPECT_EQ(runs.settledEnd(6), 10);
    EXPECT_EQ(runs.settledEnd(10), 10);
    EXPECT_TRUE(runs.isSettled({0, 5}));
    EXPECT_FALSE(runs.isSettled({0, 6}));
    EXPECT_FALSE(runs.isSettled({5, 1}));
    EXPECT_TRUE(runs.isSettled({5, 0}));
    EXPECT_TRUE(runs.isSettled({6, 4}));
}

TEST(AttributeRuns, VisitsTheRunsOfAStretchClippedToIt) {
    const AttributeRuns runs = withRuns({{3, green, true}, {2, blue, false}, {5, base, false}});
    std::string seen;
    runs.forEach({2, 4}, [&](const AttributeRuns::PlacedRun& placed) {
        seen += std::to_string(placed.location) + "+" + std::to_string(placed.run.length) + " ";
    });
    EXPECT_EQ(seen, "2+1 3+2 5+1 ");
}

TEST(AttributeRuns, ACopyIsNotChangedWithItsOriginal) {
    AttributeRuns runs = withRuns({{3, green, true}});
    const AttributeRuns copy = runs;
    runs.replace({1, 1}, 5);
    EXPECT_EQ(described(copy), "3 green!");
}

TEST(AttributeRuns, ABuilderMakesTheRunsThatWereAppended) {
    AttributeRunsBuilder builder;
    for (qint64 i = 0; i < 30'000; ++i) {
        builder.append({1 + i % 3, i % 2 == 0 ? green : blue, true});
        builder.append({1, i % 2 == 0 ? green : blue, true});
    }
    const AttributeRuns runs = builder.finish();
    runs.checkInvariants();
    EXPECT_EQ(runs.count(), 30'000);
    EXPECT_EQ(runs.length(), 90'000);
    EXPECT_EQ(runs.runAfter(0).run, (AttributeRun{2, green, true}));
    EXPECT_EQ(runs.runBefore(90'000).run, (AttributeRun{4, blue, true}));
    EXPECT_EQ(builder.finish().length(), 0) << "what was made is no longer there";

    AttributeRuns whole(90'010);
    whole.set(5, runs);
    whole.checkInvariants();
    EXPECT_EQ(whole.count(), 30'002);
}

TEST(AttributeRunsDeathTest, StretchesOutsideOfTheTextAreProgrammingErrors) {
    AttributeRuns runs(3);
    EXPECT_DEATH(runs.replace({2, 2}, 0), "an edited stretch is within the text");
    EXPECT_DEATH(runs.set(2, std::vector<AttributeRun>{{2, green, false}}), "within the text");
    EXPECT_DEATH(runs.set(0, std::vector<AttributeRun>{{0, green, false}}), "a run has characters");
    EXPECT_DEATH(std::ignore = runs.runAfter(3), "at a character");
}

/// The attributes of every unit for itself.
class UnitAttributes {
public:
    struct Unit {
        TextAttributes attributes;
        bool isSettled = false;
        friend bool operator==(const Unit&, const Unit&) = default;
    };

    void replace(std::size_t location, std::size_t length, std::size_t newLength) {
        const std::size_t end = location + length;
        std::vector<std::size_t> unsettled;
        if (location > 0)
            collectRun(location - 1, unsettled);
        if (end < units.size())
            collectRun(end, unsettled);
        for (const std::size_t index : unsettled)
            units[index].isSettled = false;
        const auto start = units.begin() + static_cast<std::ptrdiff_t>(location);
        units.erase(start, start + static_cast<std::ptrdiff_t>(length));
        units.insert(units.begin() + static_cast<std::ptrdiff_t>(location), newLength, Unit{});
    }

    void set(std::size_t location, const std::vector<AttributeRun>& runs) {
        std::vector<Unit> given;
        for (const AttributeRun& run : runs)
            given.insert(given.end(), static_cast<std::size_t>(run.length), Unit{run.attributes, run.isSettled});
        const std::size_t end = location + given.size();
        std::vector<std::size_t> before;
        std::vector<std::size_t> after;
        if (!given.front().isSettled && location > 0 && units[location - 1] == units[location])
            collectRun(location, before);
        if (!given.back().isSettled && end < units.size() && units[end - 1] == units[end])
            collectRun(end, after);
        for (const std::size_t index : before)
            units[index].isSettled = units[index].isSettled && index >= location;
        for (const std::size_t index : after)
            units[index].isSettled = units[index].isSettled && index < end;
        std::copy(given.begin(), given.end(), units.begin() + static_cast<std::ptrdiff_t>(location));
    }

    std::vector<Unit> units;

private:
    /// The units of the run that one of them belongs to.
    void collectRun(std::size_t index, std::vector<std::size_t>& indices) const {
        for (std::size_t i = index; units[i] == units[index]; --i) {
            indices.push_back(i);
            if (i == 0)
                break;
        }
        for (std::size_t i = index + 1; i < units.size() && units[i] == units[index]; ++i)
            indices.push_back(i);
    }
};

void expectEqual(const AttributeRuns& runs, const UnitAttributes& model) {
    ASSERT_EQ(runs.length(), static_cast<qint64>(model.units.size()));
    std::vector<UnitAttributes::Unit> units;
    runs.forEach({0, runs.length()}, [&](const AttributeRuns::PlacedRun& placed) {
        units.insert(units.end(), static_cast<std::size_t>(placed.run.length),
                     UnitAttributes::Unit{placed.run.attributes, placed.run.isSettled});
    });
    ASSERT_EQ(units.size(), model.units.size());
    for (std::size_t i = 0; i < units.size(); ++i)
        ASSERT_EQ(units[i], model.units[i]) << "at " << i;

    qint64 settledEnd = runs.length();
    for (qint64 offset = runs.length(); offset-- > 0;) {
        if (!model.units[static_cast<std::size_t>(offset)].isSettled)
            settledEnd = offset;
        ASSERT_EQ(runs.settledEnd(offset), settledEnd) << "at " << offset;
    }
}

/// Some chunks of stripes at random, and the same as runs.
struct RandomChunks {
    RandomChunks(std::size_t units, std::mt19937& random) {
        const auto stripes = std::make_shared<const Stripes>();
        AttributeRunsBuilder builder;
        for (auto left = static_cast<qint64>(units) / Stripes::period; left > 0 && chunks < 6; ++chunks) {
            const qint64 periods = 1 + random() % std::min<std::uint32_t>(3, static_cast<std::uint32_t>(left));
            builder.append(DerivedChunk{stripes, {60, periods * Stripes::period}});
            for (qint64 period = 0; period < periods; ++period)
                runs.insert(runs.end(), {{1, green, true}, {2, blue, true}, {3, base, true}});
            left -= periods;
        }
        derived = builder.finish();
    }

    int chunks = 0;
    AttributeRuns derived;
    std::vector<AttributeRun> runs;
};

TEST(AttributeRuns, RandomEditsGiveWhatUnitByUnitAttributesGive) {
    constexpr std::array colors{base, green, blue};
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto below = [&](std::size_t bound) { return bound == 0 ? 0 : random() % bound; };
        AttributeRuns runs;
        UnitAttributes model;
        for (int edit = 0; edit < 400; ++edit) {
            const std::size_t length = model.units.size();
            const std::size_t location = below(length + 1);
            if (below(5) == 0) {
                const RandomChunks given(length - location, random);
                if (given.chunks == 0)
                    continue;
                runs.set(static_cast<qint64>(location), given.derived);
                model.set(location, given.runs);
            } else if (below(2) == 0) {
                const std::size_t count = below(std::min<std::size_t>(length - location, 20) + 1);
                const std::size_t newLength = below(edit < 100 ? 60 : 15);
                runs.replace({static_cast<qint64>(location), static_cast<qint64>(count)},
                             static_cast<qint64>(newLength));
                model.replace(location, count, newLength);
            } else {
                std::vector<AttributeRun> given;
                for (std::size_t end = location; given.size() < 200 && end < length && below(30) != 0;) {
                    const std::size_t count = 1 + below(std::min<std::size_t>(length - end, 4));
                    given.push_back({static_cast<qint64>(count), colors[below(3)], below(4) != 0});
                    end += count;
                }
                if (given.empty())
                    continue;
                runs.set(static_cast<qint64>(location), given);
                model.set(location, given);
            }
            runs.checkInvariants();
            expectEqual(runs, model);
            if (HasFatalFailure())
                return;
        }
    }
}

} // namespace
} // namespace quelm
