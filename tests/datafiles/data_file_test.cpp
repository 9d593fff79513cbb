// The headers and the names by the numbers of open files, which no client can open, and null pointers, which no script passes.
#include "datafiles/data_file.h"

#include "datafiles/CFileInfoHeader.h"
#include "datafiles/CFile_sNames.h"
#include "datafiles/qvFile_Nif.h"
#include "datafiles/qvFile_qvb.h"
#include "support/error_of.h"
#include "support/tables.h"

#include <limits>
#include <thread>

using automation::make;
using namespace std::string_literals;

namespace {

int error_of_number(std::int32_t number)
{
    return error_of([&] { DataFile::with_number(number); });
}

class DataFiles : public testing::Test {
protected:
    client::Folder folder;
    std::wstring path = folder.file(L"a");
};

} // namespace

TEST_F(DataFiles, HaveTheLowestNumberThatIsFreeInTheirThread)
{
    auto first = std::make_unique<DataFile>(path);
    DataFile second{folder.file(L"b")};
    EXPECT_EQ(first->number(), 1);
    EXPECT_EQ(second.number(), 2);
    EXPECT_EQ(&DataFile::with_number(2), &second);
    std::thread{[&] {
        EXPECT_EQ(error_of_number(1), 52);
        EXPECT_EQ(DataFile{folder.file(L"c")}.number(), 1);
    }}.join();
    first = nullptr;
    EXPECT_EQ(error_of_number(1), 52);
    EXPECT_EQ(DataFile{path}.number(), 1);
    for (const std::int32_t number : {0, -1, 3, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()})
        EXPECT_EQ(error_of_number(number), 52);
}

TEST_F(DataFiles, HeadersAreWrittenAndReadWhereTheFileStands)
{
    const auto header = make<CFileInfoHeader>(3, "kind"), other = make<CFileInfoHeader>();
    {
        DataFile file{path};
        file.write("before");
        header->Save(file.number());
        file.write("behind");
    }
    {
        DataFile file{path};
        char start[6];
        file.read(start, sizeof start);
        other->Load(file.number());
        EXPECT_EQ(file.left(), 6u);
        file.write("BEHIND"); // goes where the reading has come to
        EXPECT_EQ(file.left(), 0u);
        EXPECT_EQ(other->get_Version(), 3);
    }
    const std::string bytes = client::Folder::read(path);
    EXPECT_TRUE(bytes.starts_with("before\3\0\0\0\4\0\0\0kind\3\0\0\0\7\0\0\0Authors"s));
    EXPECT_TRUE(bytes.ends_with("BEHIND"));
}

TEST_F(DataFiles, NamesTakeEveryArrayOfOneDimension)
{
    const client::Value names = client::list(5, {L" x ", 12.0, client::Value{}});
    const auto written = make<CFile_sNames>(), read = make<CFile_sNames>();
    {
        DataFile file{path};
        EXPECT_EQ(error_of([&] { written->Save(file.number()); }), 13) << "no names yet";
        written->put_Names(names);
        written->Save(file.number());
    }
    EXPECT_EQ(client::Folder::read(path), "\3\0\0\0\3\0\0\0 x \2\0\0\00012\0\0\0\0"s);

    DataFile file{path};
    read->Load(file.number());
    EXPECT_EQ(error_of([&] { read->Load(file.number()); }), 62) << "the names before stay";
    const automation::Variant result = read->get_Names();
    ASSERT_EQ(result.vt, VT_ARRAY | VT_VARIANT) << "an array that scripts can index";
    EXPECT_EQ(result.parray->rgsabound[0].lLbound, 0);
    ASSERT_EQ(result.parray->rgsabound[0].cElements, 3u);
    const auto* const texts = static_cast<const VARIANT*>(result.parray->pvData);
    EXPECT_STREQ(texts[0].bstrVal, L"x");
    EXPECT_STREQ(texts[1].bstrVal, L"12");
}

TEST_F(DataFiles, NullPointersAreNothingOrErrors)
{
    constexpr HRESULT runtime_error = static_cast<HRESULT>(0x800A0000);
    const auto matrix_file = make<qvFile_qvb>();
    _qvFile_qvb* const matrix = matrix_file->face<_qvFile_qvb>();
    const client::Value one = client::table(VT_VARIANT, 0, 0, {{0.5}});
    matrix_file->put_File(path);
    EXPECT_EQ(matrix->ReadFile_Dbl(nullptr), runtime_error + 62) << "the headers come first";
    ASSERT_EQ(matrix->WriteFile(one, nullptr), S_OK) << "as Doubles";
    EXPECT_TRUE(client::Folder::read(path).ends_with("\0\0\0\0\0\0\xE0\x3F"s));
    EXPECT_EQ(matrix->WriteFile_Dbl(nullptr), runtime_error + 9) << "an array still to be dimensioned";
    ASSERT_EQ(matrix->WriteFile(one, nullptr), S_OK);
    EXPECT_EQ(matrix->ReadFile_Dbl(nullptr), runtime_error + 5);
    EXPECT_EQ(matrix->ReadFile(nullptr), E_POINTER);
    EXPECT_EQ(matrix->put_ObjNames(nullptr), S_OK);

    const auto table_file = make<qvFile_Nif>();
    _qvFile_Nif* const table = table_file->face<_qvFile_Nif>();
    VARIANT_BOOL done = VARIANT_TRUE;
    EXPECT_EQ(table->Save(nullptr, &done), S_OK);
    EXPECT_EQ(done, VARIANT_FALSE) << "no path at all";
    table_file->SetSize(1, 1);
    table_file->put_FileName(folder.file(L"a.nif"));
    EXPECT_EQ(table->Save(nullptr, &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(table->GetValues(nullptr), runtime_error + 5);
    EXPECT_EQ(table->SetValues(nullptr), S_OK);
    double value = 1;
    EXPECT_EQ(table->get_Value(1, 1, &value), runtime_error + 9) << "no values any more";
    EXPECT_EQ(value, 0);
}
