// How long products and transposition through the class take beside Eigen, the plain ways and copying memory.
#include "stopwatch.h"

#include "automation/safe_array.h"
#include "numeric/client_table.h"
#include "numeric/matrix.h"
#include "numeric/qvMath.h"

#include <Eigen/Core>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

using automation::LockedArray;
using automation::Variant;
using numeric::Arithmetic;
using numeric::InstructionSet;
using numeric::Table;

namespace {

SAFEARRAYBOUND from_1(std::size_t count)
{
    return {static_cast<ULONG>(count), 1};
}

/// A square table of Doubles, or of Variants of the same Doubles.
Variant random_table(std::size_t side, unsigned seed, VARTYPE type = VT_R8)
{
    std::mt19937 random{seed};
    std::uniform_real_distribution distribution{-1., 1.};
    Variant table = numeric::new_table(type, from_1(side), from_1(side));
    if (type == VT_R8)
        std::ranges::generate(LockedArray<double>{table.parray}, [&] { return distribution(random); });
    else
        std::ranges::generate(LockedArray<VARIANT>{table.parray}, [&] { return Variant{distribution(random)}.release(); });
    return table;
}

Table<double> cells(const Variant& table)
{
    const SAFEARRAY& array = *table.parray;
    return {static_cast<double*>(array.pvData), array.rgsabound[1].cElements, array.rgsabound[0].cElements};
}

Variant product(_qvMath& math, Variant& left, Variant& right)
{
    Variant result;
    if (FAILED(math.MMult(&left, &right, &result)))
        std::abort();
    return result;
}

void plain_product(Table<const double> left, Table<const double> right, Table<double> result)
{
    for (std::size_t j = 0; j < result.columns; ++j)
        for (std::size_t k = 0; k < left.columns; ++k)
            for (std::size_t i = 0; i < result.rows; ++i)
                result(i, j) = right(k, j) * left(i, k) + result(i, j);
}

VARIANT number(double value)
{
    VARIANT number;
    number.vt = VT_R8;
    number.dblVal = value;
    return number;
}

void platform_product(Table<const double> left, Table<const double> right, Table<double> result)
{
    for (std::size_t i = 0; i < result.rows; ++i)
        for (std::size_t j = 0; j < result.columns; ++j)
            for (std::size_t k = 0; k < left.columns; ++k) {
                VARIANT factor = number(right(k, j)), other = number(left(i, k)), so_far = number(result(i, j)), step, sum;
                if (FAILED(VarMul(&factor, &other, &step)) || FAILED(VarAdd(&step, &so_far, &sum)))
                    std::abort();
                result(i, j) = sum.dblVal;
            }
}

void expect_same(const Variant& one, const Variant& other)
{
    if (std::memcmp(cells(one).cells, cells(other).cells, cells(one).size() * sizeof(double)) != 0)
        std::abort();
}

double per_step(const Best& time, std::size_t side)
{
    return time.seconds() / (static_cast<double>(side) * static_cast<double>(side) * static_cast<double>(side));
}

int rounds(std::size_t side)
{
    return side > 512 ? 5 : side > 128 ? 20 : 200;
}

/// Through the class, with what the processor has.
Best time_of_class(_qvMath& math, std::size_t side, VARTYPE type = VT_R8)
{
    Variant left = random_table(side, 1, type), right = random_table(side, 2, type);
    Best time;
    for (int round = 0; round < rounds(side); ++round)
        time.take([&] { product(math, left, right); });
    return time;
}

Best time_of_platform(std::size_t side)
{
    const Variant left = random_table(side, 1), right = random_table(side, 2);
    Best time;
    for (int round = 0; round < 3; ++round) {
        const Variant result = numeric::new_table(VT_R8, from_1(side), from_1(side));
        time.take([&] { platform_product(cells(left), cells(right), cells(result)); });
    }
    return time;
}

const char* name(InstructionSet instructions)
{
    constexpr const char* names[]{"SSE2", "AVX", "AVX-512"};
    return names[static_cast<int>(instructions)];
}

void compare_with_eigen(_qvMath& math, std::size_t side)
{
    Variant left = random_table(side, 1), right = random_table(side, 2);
    const Variant plain = numeric::new_table(VT_R8, from_1(side), from_1(side));
    plain_product(cells(left), cells(right), cells(plain));
    expect_same(product(math, left, right), plain);

    const auto n = static_cast<Eigen::Index>(side);
    const Eigen::Map<const Eigen::MatrixXd> a{cells(left).cells, n, n}, b{cells(right).cells, n, n};
    Best ours, eigen, kernels[3];
    const auto best = static_cast<std::size_t>(numeric::instruction_set());
    for (int round = 0; round < rounds(side); ++round) {
        ours.take([&] { product(math, left, right); });
        eigen.take([&] { const Eigen::MatrixXd result = a * b; });
        for (std::size_t i = 0; i <= best; ++i) {
            const auto instructions = static_cast<InstructionSet>(i);
            const Variant result = numeric::new_table(VT_R8, from_1(side), from_1(side));
            kernels[i].take([&] {
                if (!multiply(cells(left), cells(right), cells(result), Arithmetic::Double, instructions))
                    std::abort();
            });
            expect_same(result, plain);
        }
    }
    std::printf("product of %zux%zu Doubles through the class (%s): %.2f times as fast as Eigen (bar 2.5)\n", side, side,
                name(numeric::instruction_set()), eigen.seconds() / ours.seconds());
    for (std::size_t i = 0; i <= best; ++i)
        std::printf("  with no more than %-7s %.2f times as fast as Eigen (bar %s)\n", name(static_cast<InstructionSet>(i)),
                    eigen.seconds() / kernels[i].seconds(), i == 0 ? "1" : "2.5");
}

void compare_with_platform(_qvMath& math)
{
    constexpr std::size_t side = 96; // the loop takes the same time for each step, however large the tables
    std::printf("product of 512x512 Doubles: %.0f times as fast for each step as VarMul and VarAdd at %zux%zu (bar 1000)\n",
                per_step(time_of_platform(side), side) / per_step(time_of_class(math, 512), 512), side, side);
}

void compare_with_variants(_qvMath& math)
{
    for (const std::size_t side : {64, 512})
        std::printf("product of %zux%zu Variants of Double: %.2f of Doubles (bar 2)\n", side, side,
                    time_of_class(math, side, VT_VARIANT).seconds() / time_of_class(math, side).seconds());
}

void compare_sizes(_qvMath& math)
{
    const double one = per_step(time_of_class(math, 512), 512);
    std::printf("time for each step, beside that at 512x512:");
    for (const std::size_t side : {128, 256, 1024})
        std::printf("  %zu: %.2f", side, per_step(time_of_class(math, side), side) / one);
    std::printf("\n");
}

void compare_with_copy(_qvMath& math, std::size_t side)
{
    Variant table = random_table(side, 1);
    Best ours, copy;
    for (int round = 0; round < 10; ++round) {
        ours.take([&] {
            Variant result;
            if (FAILED(math.Transpose(&table, &result)))
                std::abort();
        });
        copy.take([&] {
            const Variant result = numeric::new_table(VT_R8, from_1(side), from_1(side));
            std::memcpy(cells(result).cells, cells(table).cells, cells(table).size() * sizeof(double));
        });
    }
    std::printf("transposing %zux%zu Doubles: %.2f of copying them into new memory (bar 2)\n", side, side,
                ours.seconds() / copy.seconds());
}

/// A moving average over logarithmically widening spans, as one would write it for Doubles.
void plain_averages(Table<const double> table, int width, Table<double> averages)
{
    const auto rows = static_cast<std::ptrdiff_t>(table.rows);
    const double factor = width / std::log(20.);
    std::vector<int> half_widths(table.rows + 1);
    for (std::ptrdiff_t i = 1; i <= rows; ++i)
        half_widths[static_cast<std::size_t>(i)] = static_cast<int>(std::nearbyint(factor * std::log(static_cast<double>(i))));
    for (std::size_t j = 0; j < table.columns; ++j) {
        const double* const r = table.column(j) - 1;
        double* const a = averages.column(j) - 1;
        a[1] = r[1];
        for (std::ptrdiff_t i = 2; i <= rows; ++i) {
            const int h = half_widths[static_cast<std::size_t>(i)];
            const std::ptrdiff_t end = i + h <= rows ? i + h : 2 * rows - i - h;
            if (h == half_widths[static_cast<std::size_t>(i - 1)])
                a[i] = a[i - 1] + (r[end] - r[i - h - 1]) / (2 * h + 1);
            else
                a[i] = ((2 * h - 1) * a[i - 1] + r[end] + r[i + h - 1]) / (2 * h + 1);
        }
    }
}

void compare_with_plain_averages(_qvMath& math)
{
    constexpr SAFEARRAYBOUND rows{100000, 1}, columns{8, 1};
    constexpr unsigned char logarithmic = 1;
    constexpr short width = 5;
    std::mt19937 random{3};
    Variant table = numeric::new_table(VT_R8, rows, columns);
    std::ranges::generate(LockedArray<double>{table.parray}, [&] { return std::uniform_real_distribution{-1., 1.}(random); });
    Best ours, plain;
    for (int round = 0; round < 20; ++round) {
        Variant averages;
        ours.take([&] {
            if (FAILED(math.AvgDyn(&table, logarithmic, width, &averages)))
                std::abort();
        });
        Variant expected;
        plain.take([&] {
            expected = numeric::new_table(VT_R8, rows, columns);
            plain_averages(cells(table), width, cells(expected));
        });
        expect_same(averages, expected);
    }
    std::printf("moving average of 100,000x8 Doubles: %.2f of the plain loop (bar 1.5)\n",
                ours.seconds() / plain.seconds());
}

} // namespace

int main()
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const auto object = automation::make<qvMath>();
    _qvMath& math = *object->face<_qvMath>();
    compare_with_eigen(math, 512);
    compare_with_platform(math);
    compare_with_variants(math);
    compare_sizes(math);
    compare_with_copy(math, 2000);
    compare_with_copy(math, 2048);
    compare_with_plain_averages(math);
}
