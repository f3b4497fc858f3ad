#include "Fuzzing/JournalTarget.h"
#include "Fuzzing/OpeningTarget.h"
#include "Fuzzing/Seeds.h"
#include "Tests/Fuzzing/Mutations.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

namespace quelm::fuzzing {
namespace {

// How many inputs are made for each target: `QUELM_FUZZ_INPUTS`, for a long run, or few.
int inputCount() {
    const char* asked = std::getenv("QUELM_FUZZ_INPUTS");
    return asked ? std::atoi(asked) : 20'000;
}

// A promise that is broken ends the program.
template <typename Feed>
void feedMutations(const std::vector<std::string>& seeds, const Feed& feed) {
    std::mt19937 random(20);
    for (int i = 0; i < inputCount(); ++i)
        feed(test::mutation(seeds, random));
}

TEST(FuzzTargets, AllSeedsOfJournalsKeepThePromises) {
    for (const std::string& seed : journalSeeds())
        feedJournal(seed);
}

// Else the seeds would lead nowhere.
TEST(FuzzTargets, SeedsOfJournalsCanBeRepeated) {
    std::vector<std::size_t> repeated;
    for (const std::string& seed : journalSeeds()) {
        if (seed.front() == static_cast<char>(JournalForm::records))
            repeated.push_back(feedJournal(seed));
    }
    EXPECT_THAT(repeated, testing::ElementsAre(5, 5, 7, 6, 3));
}

TEST(FuzzTargets, AnyBytesOfJournalsKeepThePromises) {
    feedMutations(journalSeeds(), feedJournal);
}

TEST(FuzzTargets, AllSeedsOfFilesKeepThePromises) {
    for (const std::string& seed : openingSeeds(QUELM_EXAMPLES_PATH))
        feedOpening(seed);
}

TEST(FuzzTargets, AnyBytesOfFilesKeepThePromises) {
    feedMutations(openingSeeds(QUELM_EXAMPLES_PATH), feedOpening);
}

TEST(FuzzTargets, InputsWithoutBytesAreInputsToo) {
    feedJournal("");
    feedOpening("");
}

} // namespace
} // namespace quelm::fuzzing
