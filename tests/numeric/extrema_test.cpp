#include "numeric/extrema.h"

#include <gtest/gtest.h>

#include <random>

namespace {

/// A table of small numbers in storage order, with many ties.
struct Table {
    explicit Table(std::mt19937& random) : rows{1 + random() % 6}, columns{1 + random() % 6}, cells(rows * columns)
    {
        for (int& cell : cells)
            cell = static_cast<int>(random() % 5);
    }
    int at(std::size_t row, std::size_t column) const { return cells.at(column * rows + row); }

    std::size_t rows, columns;
    std::vector<int> cells;
};

} // namespace

TEST(Extrema, TheFirstInTheLowestRowWinsATie)
{
    std::mt19937 random{1};
    for (int round = 0; round < 2000; ++round) {
        const Table table{random};
        std::size_t expected = 0;
        for (std::size_t row = 0; row < table.rows; ++row)
            for (std::size_t column = 0; column < table.columns; ++column)
                if (table.at(row, column) < table.cells[expected])
                    expected = column * table.rows + row;
        const auto before = [&](std::size_t a, std::size_t b) { return table.cells.at(a) < table.cells.at(b); };
        EXPECT_EQ(numeric::first_of_all(table.rows, table.columns, before), expected);
        EXPECT_EQ(numeric::last_kept(table.rows, table.columns, before), expected);
    }
}

TEST(Extrema, EachRowAndEachColumnHasItsFirstOnes)
{
    std::mt19937 random{2};
    for (int round = 0; round < 2000; ++round) {
        const Table table{random};
        const auto less = [&](std::size_t a, std::size_t b) { return table.cells.at(a) < table.cells.at(b); };
        const auto greater = [&](std::size_t a, std::size_t b) { return table.cells.at(a) > table.cells.at(b); };
        for (const bool of_columns : {false, true}) {
            const auto lines = numeric::extremes_of_lines(table.rows, table.columns, of_columns, less, greater);
            ASSERT_EQ(lines.size(), of_columns ? table.columns : table.rows);
            for (std::size_t line = 0; line < lines.size(); ++line) {
                const auto index = [&](std::size_t i) { return of_columns ? line * table.rows + i : i * table.rows + line; };
                numeric::Extremes expected{index(0), index(0)};
                for (std::size_t i = 0; i < (of_columns ? table.rows : table.columns); ++i) {
                    expected.least = less(index(i), expected.least) ? index(i) : expected.least;
                    expected.greatest = greater(index(i), expected.greatest) ? index(i) : expected.greatest;
                }
                EXPECT_EQ(lines[line].least, expected.least);
                EXPECT_EQ(lines[line].greatest, expected.greatest);
            }
        }
    }
}
