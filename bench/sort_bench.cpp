// How long sorting through the class takes beside std::stable_sort on the same elements with the same comparison.
#include "stopwatch.h"

#include "automation/safe_array.h"
#include "server/qvCommon.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

using automation::Ref;
using automation::Text;
using automation::Variant;

namespace {

constexpr int rounds = 5;

void sort_by_class(_qvCommon& common, Variant& array)
{
    Variant result;
    if (FAILED(common.Sort(&array, &result)))
        std::abort();
}

/// The ratio for elements of a number type, each round on the same numbers in the same disorder.
template <class Number>
double ratio(_qvCommon& common, VARTYPE type, const std::vector<Number>& numbers)
{
    Best ours, plain;
    Variant array = automation::new_array(type, numbers.size());
    for (int round = 0; round < rounds; ++round) {
        std::ranges::copy(numbers, automation::LockedArray<Number>{array.parray}.begin());
        ours.take([&] { sort_by_class(common, array); });
        std::vector<Number> sorted = numbers;
        plain.take([&] { std::ranges::stable_sort(sorted); });
        if (!std::ranges::equal(sorted, automation::LockedArray<Number>{array.parray}))
            std::abort();
    }
    return ours.seconds() / plain.seconds();
}

bool text_less(BSTR left, BSTR right)
{
    return VarBstrCmp(left, right, LOCALE_USER_DEFAULT, NORM_IGNORECASE) == VARCMP_LT;
}

double ratio_of_texts(_qvCommon& common, std::vector<Text>& texts)
{
    Best ours, plain;
    std::vector<BSTR> pointers;
    for (const Text& text : texts)
        pointers.push_back(text.get());
    Variant array = automation::new_array(VT_BSTR, pointers.size());
    for (int round = 0; round < rounds; ++round) {
        std::ranges::copy(pointers, automation::LockedArray<BSTR>{array.parray}.begin()); // lent
        ours.take([&] { sort_by_class(common, array); });
        std::vector<BSTR> sorted = pointers;
        plain.take([&] { std::ranges::stable_sort(sorted, text_less); });
        if (!std::ranges::equal(sorted, automation::LockedArray<BSTR>{array.parray}))
            std::abort();
    }
    std::ranges::fill(automation::LockedArray<BSTR>{array.parray}, nullptr);
    return ours.seconds() / plain.seconds();
}

/// A number as a value of this type; one that the type has no room for as 0.
Variant number_of_type(double number, VARTYPE type)
{
    Variant value;
    if (type != VT_EMPTY && FAILED(automation::change_type(value, Variant{number}, type)))
        return number_of_type(0, type);
    return value;
}

/// Variants of any of these types, as scripts have them, beside bare Doubles.
double ratio_of_variants(_qvCommon& common, const std::vector<double>& numbers, const std::vector<VARTYPE>& types)
{
    Best ours, plain;
    std::mt19937 random{2};
    std::vector<Variant> values;
    for (const double number : numbers)
        values.push_back(number_of_type(number, types[random() % types.size()]));
    Variant array = automation::new_array(VT_VARIANT, values.size());
    for (int round = 0; round < rounds; ++round) {
        const automation::LockedArray<VARIANT> elements{array.parray};
        std::ranges::copy(values, elements.begin()); // nothing that owns anything
        ours.take([&] { sort_by_class(common, array); });
        std::vector<double> sorted = numbers;
        plain.take([&] { std::ranges::stable_sort(sorted); });
    }
    return ours.seconds() / plain.seconds();
}

std::vector<double> random_numbers(std::size_t count, double size)
{
    std::mt19937 random{1};
    std::vector<double> numbers(count);
    std::ranges::generate(numbers, [&] { return std::uniform_real_distribution{-size, size}(random); });
    return numbers;
}

void print_mixture(_qvCommon& common, const char* name, const std::vector<double>& numbers, const std::vector<VARTYPE>& types)
{
    std::printf("%-29s %.2f of std::stable_sort of Doubles (bar 5)\n", name, ratio_of_variants(common, numbers, types));
}

} // namespace

int main()
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const auto object = automation::make<qvCommon>();
    _qvCommon& common = *object->face<_qvCommon>();
    const std::vector<double> doubles = random_numbers(1000000, 1e6);
    std::mt19937 random{1};
    std::vector<LONG> longs(1000000);
    std::ranges::generate(longs, [&] { return static_cast<LONG>(random()); });
    std::vector<Text> texts(200000);
    std::ranges::generate(texts, [&] {
        std::wstring text(3 + random() % 10, L' ');
        std::ranges::generate(text, [&] { return L"abcdeABCDE\u00e4\u00c4 -1"[random() % 15]; });
        return Text{text};
    });

    std::printf("1,000,000 Doubles:            %.2f of std::stable_sort (bar 1.5)\n", ratio(common, VT_R8, doubles));
    std::printf("1,000,000 Longs:              %.2f of std::stable_sort (bar 1.5)\n", ratio(common, VT_I4, longs));
    std::printf("200,000 texts:                %.2f of std::stable_sort with the same comparison (bar 1.5)\n",
                ratio_of_texts(common, texts));
    std::printf("1,000,000 variants of Double: %.2f of std::stable_sort of Doubles\n", ratio_of_variants(common, doubles, {VT_R8}));

    const std::vector<double> some = random_numbers(100000, 1e5);
    std::vector<double> tenths(some.size());
    std::ranges::transform(some, tenths.begin(), [](double number) { return std::round(number) / 10; });
    std::vector<VARTYPE> mostly_double(1000, VT_R8);
    mostly_double[0] = VT_EMPTY;
    std::puts("100,000 variants:");
    print_mixture(common, "  Doubles and some Empty:", some, mostly_double);
    print_mixture(common, "  Currency and whole numbers:", some, {VT_CY, VT_I4, VT_I2, VT_UI1, VT_BOOL});
    print_mixture(common, "  Currency and Doubles:", some, {VT_CY, VT_R8});
    print_mixture(common, "  tenths, Single and Double:", tenths, {VT_R4, VT_R8});
    print_mixture(common, "  all number types:", some, {VT_EMPTY, VT_BOOL, VT_UI1, VT_I2, VT_I4, VT_R4, VT_R8, VT_DATE, VT_CY});
}
