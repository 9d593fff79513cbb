// Writing and reading a QVB file against moving the same bytes in one piece, and loading and saving a NIF file against the
// quickest reader of numbers and the platform's writer. Every ratio is of two times taken in this run, alternately, the best
// of several.
#include "stopwatch.h"

#include "automation/safe_array.h"
#include "datafiles/qvFile_Nif.h"
#include "datafiles/qvFile_qvb.h"
#include "files/file.h"

#include <fast_float/fast_float.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using automation::LockedArray;
using automation::make;
using automation::Text;
using automation::Variant;

constexpr int rounds = 8;

/// Takes both times, in turns the one or the other first.
template <class First, class Second>
void take_both(int round, Best& first, const First& one, Best& second, const Second& other)
{
    if (round % 2 == 0)
        first.take(one);
    second.take(other);
    if (round % 2 != 0)
        first.take(one);
}

void require(HRESULT result)
{
    if (SUCCEEDED(result))
        return;
    std::printf("failed with %lx\n", result);
    std::exit(1);
}

struct Files {
    Text ours{L"datafiles_bench_ours.tmp"};
    Text plain{L"datafiles_bench_plain.tmp"};
    ~Files()
    {
        DeleteFileW(ours.get());
        DeleteFileW(plain.get());
    }
};

void write_plainly(const Text& path, const void* bytes, std::size_t size)
{
    DeleteFileW(path.get());
    const files::Handle file{CreateFileW(path.get(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr)};
    DWORD written = 0;
    require(WriteFile(file.get(), bytes, static_cast<DWORD>(size), &written, nullptr) ? S_OK : E_FAIL);
}

void read_plainly(const Text& path, void* bytes, std::size_t size)
{
    const files::Handle file{CreateFileW(path.get(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)};
    DWORD got = 0;
    require(ReadFile(file.get(), bytes, static_cast<DWORD>(size), &got, nullptr) ? S_OK : E_FAIL);
}

Variant table(VARTYPE type, ULONG rows, ULONG columns)
{
    SAFEARRAYBOUND bounds[]{{rows, 1}, {columns, 1}};
    Variant value;
    value.parray = SafeArrayCreate(type, 2, bounds);
    value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    return value;
}

void large_matrix()
{
    constexpr std::size_t size = 64u << 20;
    const Files paths;
    const Variant matrix = table(VT_R8, 1024, size / sizeof(double) / 1024);
    std::mt19937 random{1};
    for (double& element : LockedArray<double>{matrix.parray})
        element = random();
    const auto object = make<qvFile_qvb>();
    _qvFile_qvb* const file = object->face<_qvFile_qvb>();
    file->put_File(paths.ours.get());
    file->put_LBoundAll(1);
    SAFEARRAY* array = matrix.parray;

    Best write, plain_write, read, plain_read, read_again, plain_read_again;
    const auto used = std::make_unique<char[]>(size);
    for (int round = 0; round < rounds; ++round) {
        take_both(
            round, write, [&] { require(file->WriteFile_Dbl(&array)); }, plain_write,
            [&] { write_plainly(paths.plain, array->pvData, size); });
        SAFEARRAY* target = nullptr;
        std::unique_ptr<char[]> fresh;
        take_both(
            round, read, [&] { require(file->ReadFile_Dbl(&target)); }, plain_read,
            [&] {
                fresh = std::make_unique_for_overwrite<char[]>(size);
                read_plainly(paths.plain, fresh.get(), size);
            });
        SafeArrayDestroy(target);
        SAFEARRAY* again = array;
        take_both(
            round, read_again, [&] { require(file->ReadFile_Dbl(&again)); }, plain_read_again,
            [&] { read_plainly(paths.plain, used.get(), size); });
    }
    std::printf("QVB file of 64 MB of Doubles\n");
    std::printf("  WriteFile_Dbl takes %.2f times what writing the bytes in one piece takes\n", write.seconds() / plain_write.seconds());
    std::printf("  ReadFile_Dbl into a new array takes %.2f times what reading the bytes into new memory takes,\n",
                read.seconds() / plain_read.seconds());
    std::printf("  into an array of the same shape %.2f times what reading them into used memory takes\n",
                read_again.seconds() / plain_read_again.seconds());
}

/// A million numbers in variants, as a table that a script has filled.
template <class Element>
void variants(const char* what, long output_type, bool whole_numbers)
{
    const Files paths;
    const Variant matrix = table(VT_VARIANT, 1000, 1000);
    const LockedArray<VARIANT> values{matrix.parray};
    long next = 0;
    for (VARIANT& value : values)
        value = (whole_numbers ? Variant{next++ % 30'000} : Variant{0.25 * static_cast<double>(next++ % 30'000)}).release();
    const auto object = make<qvFile_qvb>();
    _qvFile_qvb* const file = object->face<_qvFile_qvb>();
    file->put_File(paths.ours.get());

    Best write, plain_write;
    for (int round = 0; round < rounds; ++round) {
        take_both(
            round, write, [&] { require(file->WriteFile(matrix, &output_type)); }, plain_write,
            [&] {
                const auto elements = std::make_unique_for_overwrite<Element[]>(values.size());
                for (std::size_t i = 0; i < values.size(); ++i)
                    elements[i] = whole_numbers ? static_cast<Element>(values[i].lVal) : static_cast<Element>(values[i].dblVal);
                write_plainly(paths.plain, elements.get(), values.size() * sizeof(Element));
            });
    }
    std::printf("  %s: %.2f times\n", what, write.seconds() / plain_write.seconds());
}

/// What the quickest reader makes of the lines of values.
double sum_of_lines(const std::string& lines)
{
    double sum = 0;
    const char *next = lines.data(), *const end = next + lines.size();
    while (next != end) {
        const auto* const line_end = static_cast<const char*>(std::memchr(next, '\r', static_cast<std::size_t>(end - next)));
        double value = 0;
        fast_float::from_chars(next, line_end, value);
        sum += value;
        next = line_end + 2;
    }
    return sum;
}

void table_of_text(const char* what, double (*next_value)(std::mt19937_64&))
{
    constexpr long objects = 1000, columns = 1000;
    const Files paths;
    std::mt19937_64 random{1};
    const auto object = make<qvFile_Nif>();
    _qvFile_Nif* const file = object->face<_qvFile_Nif>();
    require(file->SetSize(objects, columns));
    std::vector<double> numbers;
    for (long i = 1; i <= objects; ++i) {
        require(file->put_Name(i, Text{L"object " + std::to_wstring(i)}.get()));
        for (long j = 1; j <= columns; ++j) {
            numbers.push_back(next_value(random));
            require(file->put_Value(i, j, numbers.back()));
        }
    }
    BSTR path = paths.ours.get();
    VARIANT_BOOL done;
    require(file->Save(&path, &done));
    std::string lines = files::read_whole(path);
    for (int header = 0; header < 6; ++header)
        lines.erase(0, lines.find("\r\n") + 2);

    Best load, plain_load, save, plain_texts;
    double sum = 0;
    std::size_t length = 0;
    for (int round = 0; round < rounds; ++round) {
        take_both(
            round, load, [&] { require(file->Load(&path, &done)); }, plain_load, [&] { sum += sum_of_lines(lines); });
        save.take([&] { require(file->Save(&path, &done)); });
        if (round >= 3) // slow enough
            continue;
        plain_texts.take([&] {
            for (const double number : numbers) {
                BSTR text = nullptr;
                require(VarBstrFromR8(number, LOCALE_USER_DEFAULT, 0, &text));
                length += SysStringLen(text);
                SysFreeString(text);
            }
        });
    }
    if (sum == 0 || length == 0)
        std::exit(1);
    std::printf("  %s: loading takes %.2f times what fast_float takes over the lines in memory; saving is %.1f times as fast as VarBstrFromR8\n",
                what, load.seconds() / plain_load.seconds(), plain_texts.seconds() / save.seconds());
}

} // namespace

int main()
{
    large_matrix();
    std::printf("WriteFile of a million variants, against converting them in a typed loop and writing\n");
    variants<double>("Doubles as Doubles", VT_R8, false);
    variants<std::int32_t>("Doubles as Longs", VT_I4, false);
    variants<std::int16_t>("Longs as Integers", VT_I2, true);
    std::printf("NIF file of a million values\n");
    table_of_text("three decimals", [](std::mt19937_64& random) { return static_cast<double>(random() % 2'000'000) / 1000 - 1000; });
    table_of_text("all digits", [](std::mt19937_64& random) { return std::ldexp(static_cast<double>(random() >> 11), -53) * 1000; });
}
