#include "numeric/matrix.h"

#include <array>
#include <cmath>
#include <memory>
#include <span>

namespace numeric {
namespace {

/// A kernel adds to one tile of the result at a time: as many rows as two vectors hold, by three columns. In vectors that is
/// six sums, which with a factor and a product fill the eight registers of a 32-bit program.
constexpr std::size_t tile_vectors = 2, tile_columns = 3;

struct Tile {
    const double* left;                            ///< for each k the elements of the rows
    std::array<const double*, tile_columns> right; ///< of each column the elements for each k
    std::array<double*, tile_columns> sums;
    std::size_t depth; ///< how many k
    bool begins;       ///< the sums as 0
};

template <std::size_t width>
struct Vector {
    using Doubles [[gnu::vector_size(width * sizeof(double))]] = double;
    using Singles [[gnu::vector_size(width * sizeof(float))]] = float;
    using Memory [[gnu::vector_size(width * sizeof(double)), gnu::aligned(sizeof(double)), gnu::may_alias]] = double;
};

/// Has to be inlined: its vectors take the instructions of the function that they come to stand in.
template <std::size_t width, Arithmetic arithmetic>
[[gnu::always_inline]] inline void add_products(const Tile& tile) noexcept
{
    using Doubles = typename Vector<width>::Doubles;
    using Singles = typename Vector<width>::Singles;
    using Memory = typename Vector<width>::Memory;

    Doubles sums[tile_columns][tile_vectors]{};
    if (!tile.begins)
#pragma GCC unroll 3
        for (std::size_t j = 0; j < tile_columns; ++j)
#pragma GCC unroll 2
            for (std::size_t v = 0; v < tile_vectors; ++v)
                sums[j][v] = *reinterpret_cast<const Memory*>(tile.sums[j] + v * width);

    const double* left = tile.left;
    const auto right = tile.right;
    const std::size_t depth = tile.depth;
    for (std::size_t k = 0; k < depth; ++k, left += tile_vectors * width)
#pragma GCC unroll 3
        for (std::size_t j = 0; j < tile_columns; ++j)
#pragma GCC unroll 2
            for (std::size_t v = 0; v < tile_vectors; ++v) {
                Doubles product = right[j][k] * *reinterpret_cast<const Memory*>(left + v * width);
                if constexpr (arithmetic == Arithmetic::Single)
                    product = __builtin_convertvector(__builtin_convertvector(product, Singles), Doubles);
                sums[j][v] = product + sums[j][v];
            }

#pragma GCC unroll 3
    for (std::size_t j = 0; j < tile_columns; ++j)
#pragma GCC unroll 2
        for (std::size_t v = 0; v < tile_vectors; ++v)
            *reinterpret_cast<Memory*>(tile.sums[j] + v * width) = sums[j][v];
}

template <Arithmetic arithmetic>
void add_by_sse2(const Tile& tile) noexcept
{
    add_products<2, arithmetic>(tile);
}

template <Arithmetic arithmetic>
[[gnu::target("avx")]] void add_by_avx(const Tile& tile) noexcept
{
    add_products<4, arithmetic>(tile);
}

template <Arithmetic arithmetic>
[[gnu::target("avx512f")]] void add_by_avx512(const Tile& tile) noexcept
{
    add_products<8, arithmetic>(tile);
}

struct Kernel {
    void (*add)(const Tile&) noexcept;
    std::size_t rows; ///< of a tile
};

constexpr std::size_t most_rows = 8 * tile_vectors;

template <Arithmetic arithmetic>
Kernel kernel(InstructionSet instructions) noexcept
{
    switch (instructions) {
    case InstructionSet::Avx512:
        return {add_by_avx512<arithmetic>, 8 * tile_vectors};
    case InstructionSet::Avx:
        return {add_by_avx<arithmetic>, 4 * tile_vectors};
    default:
        return {add_by_sse2<arithmetic>, 2 * tile_vectors};
    }
}

/// The matrix product without a look at the numbers. A block of the left table, rows by k, goes with all columns of the right
/// one before the next block's turn. It is copied in strips, of as many rows as a tile has, so that the kernel reads it from
/// first to last. The block stays in the second cache; one strip and the columns that it meets next stay in the first.
class Product {
public:
    Product(Kernel kernel, Table<const double> left, Table<const double> right, Table<double> result)
        : kernel_{kernel}, left_{left}, right_{right}, result_{result},
          strips_{std::make_unique_for_overwrite<CacheLine[]>(lines_needed())}
    {
    }

    void compute() noexcept
    {
        for (std::size_t first = 0; first < left_.columns; first += most_depth)
            for (std::size_t top = 0; top < left_.rows; top += block_rows)
                add(Block{top, std::min(block_rows, left_.rows - top), first, std::min(most_depth, left_.columns - first)});
    }

private:
    static constexpr std::size_t most_depth = 192, block_rows = 144, group_columns = 4 * tile_columns;
    static_assert(block_rows % most_rows == 0);

    struct alignas(64) CacheLine {
        double elements[8];
    };

    struct Block {
        std::size_t top, rows;    ///< of the left table
        std::size_t first, depth; ///< the first k, and how many
    };

    std::size_t lines_needed() const noexcept
    {
        const std::size_t strips = (std::min(block_rows, left_.rows) + kernel_.rows - 1) / kernel_.rows;
        return strips * kernel_.rows * std::min(most_depth, left_.columns) / std::size(CacheLine{}.elements) + 1;
    }

    double* strip(std::size_t row, const Block& block) const noexcept { return strips_[0].elements + row * block.depth; }

    void add(const Block& block) noexcept
    {
        for (std::size_t row = 0; row < block.rows; row += kernel_.rows)
            copy_strip(block, row);
        for (std::size_t group = 0; group < result_.columns; group += group_columns) {
            const std::size_t end = std::min(group + group_columns, result_.columns);
            for (std::size_t row = 0; row < block.rows; row += kernel_.rows)
                for (std::size_t column = group; column < end; column += tile_columns)
                    add_to_tile(block, row, column);
        }
    }

    /// Rows that the table has no more count as 0.
    void copy_strip(const Block& block, std::size_t row) noexcept
    {
        const std::size_t rows = std::min(kernel_.rows, block.rows - row);
        double* place = strip(row, block);
        for (std::size_t k = block.first; k < block.first + block.depth; ++k) {
            const double* const elements = left_.column(k) + block.top + row;
            for (std::size_t i = 0; i < kernel_.rows; ++i)
                *place++ = i < rows ? elements[i] : 0;
        }
    }

    void add_to_tile(const Block& block, std::size_t row, std::size_t column) noexcept
    {
        const std::size_t rows = std::min(kernel_.rows, block.rows - row);
        const std::size_t columns = std::min(tile_columns, result_.columns - column);
        const bool is_whole = rows == kernel_.rows && columns == tile_columns;
        double edge[tile_columns][most_rows]{}; // stands in for a tile that is not whole

        Tile tile{strip(row, block), {}, {}, block.depth, block.first == 0};
        for (std::size_t j = 0; j < tile_columns; ++j) {
            const std::size_t there = column + std::min(j, columns - 1);
            double* const sums = result_.column(there) + block.top + row;
            tile.right[j] = right_.column(there) + block.first;
            tile.sums[j] = is_whole ? sums : edge[j];
            if (!is_whole)
                std::copy_n(sums, rows, edge[j]);
        }
        kernel_.add(tile);
        if (!is_whole)
            for (std::size_t j = 0; j < columns; ++j)
                std::copy_n(edge[j], rows, result_.column(column + j) + block.top + row);
    }

    Kernel kernel_;
    Table<const double> left_, right_;
    Table<double> result_;
    std::unique_ptr<CacheLine[]> strips_;
};

template <Arithmetic arithmetic>
double product(double a, double b) noexcept
{
    const double exact = a * b;
    if constexpr (arithmetic == Arithmetic::Whole)
        return exact + 0.;
    if constexpr (arithmetic == Arithmetic::Single)
        if (const auto single = static_cast<float>(exact); std::isfinite(single))
            return single;
    return exact;
}

bool is_beyond(double outcome, double a, double b) noexcept
{
    return !std::isfinite(outcome) && std::isfinite(a) && std::isfinite(b);
}

/// One column of the matrix product with a look at each step.
template <Arithmetic arithmetic>
bool multiply_column(Table<const double> left, const double* right, std::span<double> sums) noexcept
{
    std::ranges::fill(sums, 0.);
    bool beyond = false;
    for (std::size_t k = 0; k < left.columns; ++k)
        for (std::size_t i = 0; i < left.rows; ++i) {
            const double step = product<arithmetic>(right[k], left(i, k));
            const double sum = step + sums[i];
            beyond |= is_beyond(step, right[k], left(i, k)) || is_beyond(sum, step, sums[i]);
            sums[i] = sum;
        }
    return !beyond;
}

template <Arithmetic arithmetic>
bool multiply_tables(Table<const double> left, Table<const double> right, Table<double> result, InstructionSet instructions)
{
    if (left.columns == 0)
        std::fill_n(result.cells, result.size(), 0.);
    if (left.columns == 0 || result.size() == 0)
        return true;
    Product{kernel<arithmetic>(instructions), left, right, result}.compute();

    // A sum that was infinite once, or a NaN, is never finite again.
    for (std::size_t j = 0; j < result.columns; ++j) {
        const std::span sums{result.column(j), result.rows};
        const bool all_finite = std::ranges::all_of(sums, [](double sum) { return std::isfinite(sum); });
        if (!all_finite && !multiply_column<arithmetic>(left, right.column(j), sums))
            return false;
    }
    return true;
}

template <Arithmetic arithmetic>
bool multiply_elements(Table<const double> table, double number, Table<double> result) noexcept
{
    bool beyond = false;
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double outcome = product<arithmetic>(number, table.cells[i]);
        beyond |= is_beyond(outcome, number, table.cells[i]);
        result.cells[i] = outcome;
    }
    return !beyond;
}

} // namespace

InstructionSet instruction_set() noexcept
{
    return __builtin_cpu_supports("avx512f") ? InstructionSet::Avx512
         : __builtin_cpu_supports("avx")     ? InstructionSet::Avx
                                             : InstructionSet::Sse2;
}

bool multiply(Table<const double> left, Table<const double> right, Table<double> result, Arithmetic arithmetic,
              InstructionSet instructions)
{
    return arithmetic == Arithmetic::Single ? multiply_tables<Arithmetic::Single>(left, right, result, instructions)
                                            : multiply_tables<Arithmetic::Double>(left, right, result, instructions);
}

bool multiply(Table<const double> table, double number, Table<double> result, Arithmetic arithmetic) noexcept
{
    switch (arithmetic) {
    case Arithmetic::Whole:
        return multiply_elements<Arithmetic::Whole>(table, number, result);
    case Arithmetic::Single:
        return multiply_elements<Arithmetic::Single>(table, number, result);
    default:
        return multiply_elements<Arithmetic::Double>(table, number, result);
    }
}

} // namespace numeric
