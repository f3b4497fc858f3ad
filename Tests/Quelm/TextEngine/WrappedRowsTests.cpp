#include "Quelm/TextEngine/WrappedRows.h"

#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <vector>

namespace quelm {
namespace {

std::vector<LineRows> someLines(std::mt19937& random, std::size_t count) {
    std::vector<LineRows> lines;
    for (std::size_t index = 0; index < count; ++index) {
        const auto rows = static_cast<qint64>(1 + random() % 5);
        lines.push_back(random() % 2 ? LineRows::exact(rows) : LineRows::estimate(rows));
    }
    return lines;
}

void expectSame(const WrappedRows& rows, const std::vector<LineRows>& model) {
    ASSERT_EQ(rows.lineCount(), static_cast<qint64>(model.size()));
    qint64 before = 0;
    for (std::size_t line = 0; line < model.size(); ++line) {
        const auto number = static_cast<qint64>(line);
        EXPECT_TRUE(rows.at(number) == model[line]);
        EXPECT_EQ(rows.rowsBefore(number), before);
        for (qint64 row = 0; row < model[line].count; ++row) {
            EXPECT_EQ(rows.placeOf(before + row).line, number);
            EXPECT_EQ(rows.placeOf(before + row).row, row);
        }
        before += model[line].count;
    }
    EXPECT_EQ(rows.rowCount(), before);
}

TEST(WrappedRows, FindsTheLineOfEveryRow) {
    const std::vector<LineRows> lines{LineRows::exact(1), LineRows::estimate(3), LineRows::exact(2)};
    expectSame(WrappedRows(lines), lines);
}

TEST(WrappedRows, ACorrectionMovesTheRowsAfterIt) {
    WrappedRows rows(std::vector<LineRows>(1000, LineRows::estimate(1)));
    rows.set(500, LineRows::exact(10));
    EXPECT_EQ(rows.rowsBefore(500), 500);
    EXPECT_EQ(rows.rowsBefore(501), 510);
    EXPECT_EQ(rows.rowCount(), 1009);
    EXPECT_TRUE(rows.at(500).isExact);
}

TEST(WrappedRows, RandomEditsGiveWhatAPlainListHas) {
    std::mt19937 random(7);
    std::vector<LineRows> model = someLines(random, 300);
    WrappedRows rows(model);
    for (int step = 0; step < 200; ++step) {
        const std::size_t line = random() % model.size();
        const std::size_t removed = random() % std::min<std::size_t>(model.size() - line, 40);
        const std::vector<LineRows> added = someLines(random, 1 + random() % 40);
        rows.replace(static_cast<qint64>(line), static_cast<qint64>(removed), added);
        const auto start = model.begin() + static_cast<std::ptrdiff_t>(line);
        model.insert(model.erase(start, start + static_cast<std::ptrdiff_t>(removed)), added.begin(), added.end());
        const std::size_t set = random() % model.size();
        model[set] = LineRows::exact(static_cast<qint64>(random() % 9 + 1));
        rows.set(static_cast<qint64>(set), model[set]);
        if (step % 20 == 0)
            expectSame(rows, model);
    }
    expectSame(rows, model);
}

} // namespace
} // namespace quelm
