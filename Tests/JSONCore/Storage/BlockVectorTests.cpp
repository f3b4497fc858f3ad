#include "JSONCore/Storage/BlockVector.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <vector>

namespace quelm {
namespace {

using Vector = BlockVector<std::uint32_t, 4>;

void expectEqual(const Vector& vector, const std::vector<std::uint32_t>& model) {
    ASSERT_EQ(vector.size(), model.size());
    for (std::size_t index = 0; index < model.size(); ++index)
        ASSERT_EQ(vector[index], model[index]) << "at " << index;
}

TEST(BlockVector, CopiesThatAreChangedApartBehaveLikeVectors) {
    std::mt19937 random(7);
    std::vector<Vector> vectors(1);
    std::vector<std::vector<std::uint32_t>> models(1);
    for (int step = 0; step < 20'000; ++step) {
        const std::size_t which = random() % vectors.size();
        const auto value = static_cast<std::uint32_t>(random());
        switch (random() % 8) {
        case 0:
            if (vectors.size() < 6) {
                vectors.push_back(vectors[which]);
                models.push_back(models[which]);
            } else {
                const std::size_t other = random() % vectors.size();
                vectors[other] = vectors[which];
                models[other] = models[which];
            }
            break;
        case 1:
        case 2:
            if (!models[which].empty()) {
                const std::size_t index = random() % models[which].size();
                vectors[which].edit(index) = value;
                models[which][index] = value;
            }
            break;
        default:
            vectors[which].append(value);
            models[which].push_back(value);
        }
    }
    for (std::size_t which = 0; which < vectors.size(); ++which)
        expectEqual(vectors[which], models[which]);
}

TEST(BlockVector, GivesRoomForItemsSideBySideWithinOneBlock) {
    Vector vector;
    for (std::uint32_t item = 0; item < 10; ++item)
        vector.append(item);
    const auto room = vector.room(7); // six are left in the first block
    EXPECT_EQ(vector.size(), 16U);
    ASSERT_GE(room.size(), 7U);
    std::fill_n(room.begin(), 7, 99U);
    vector.commit(7);
    EXPECT_EQ(vector.size(), 23U);
    EXPECT_EQ(vector[16], 99U);
    EXPECT_EQ(vector[22], 99U);
    EXPECT_EQ(vector[9], 9U);
}

TEST(BlockVector, GoesOnBeyondTheNumberOfItemsThatWasExpected) {
    Vector vector;
    vector.expect(100);
    std::vector<std::uint32_t> model;
    for (std::uint32_t item = 0; item < 5000; ++item) {
        vector.append(item);
        model.push_back(item);
    }
    vector.endExpected();
    expectEqual(vector, model);
    Vector copy = vector;
    copy.edit(0) = 7;
    expectEqual(vector, model);
}

TEST(BlockVector, DestroysItemsOfTypesThatNeedIt) {
    const auto watched = std::make_shared<int>(1);
    {
        BlockVector<std::shared_ptr<int>, 2> vector;
        for (int item = 0; item < 11; ++item)
            vector.append(watched);
        BlockVector<std::shared_ptr<int>, 2> copy = vector;
        copy.edit(10) = nullptr;
        copy.append(watched);
        EXPECT_GT(watched.use_count(), 11);
    }
    EXPECT_EQ(watched.use_count(), 1);
}

} // namespace
} // namespace quelm
