#include "datafiles/CFileQVBHeader.h"

using automation::answer;

HRESULT CFileQVBHeader::Load(long lFile) noexcept
{
    return answer([&] { load(DataFile::with_number(lFile)); });
}

HRESULT CFileQVBHeader::Save(long lFile) noexcept
{
    return answer([&] { save(DataFile::with_number(lFile)); });
}

HRESULT CFileQVBHeader::get_MCount(long* result) noexcept
{
    return answer(result, [&] { return fields_.objects; });
}

HRESULT CFileQVBHeader::put_MCount(long value) noexcept
{
    return answer([&] { fields_.objects = value; });
}

HRESULT CFileQVBHeader::get_x(long* result) noexcept
{
    return answer(result, [&] { return fields_.x; });
}

HRESULT CFileQVBHeader::put_x(long value) noexcept
{
    return answer([&] { fields_.x = value; });
}

HRESULT CFileQVBHeader::get_y(long* result) noexcept
{
    return answer(result, [&] { return fields_.y; });
}

HRESULT CFileQVBHeader::put_y(long value) noexcept
{
    return answer([&] { fields_.y = value; });
}

HRESULT CFileQVBHeader::get_Planes(long* result) noexcept
{
    return answer(result, [&] { return fields_.planes; });
}

HRESULT CFileQVBHeader::put_Planes(long value) noexcept
{
    return answer([&] { fields_.planes = value; });
}

HRESULT CFileQVBHeader::get_DataType(qvDataType* result) noexcept
{
    return answer(result, [&] { return static_cast<qvDataType>(fields_.element); });
}

HRESULT CFileQVBHeader::put_DataType(qvDataType value) noexcept
{
    return answer([&] { fields_.element = value; });
}

HRESULT CFileQVBHeader::get_Transpose(VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return fields_.transpose; });
}

HRESULT CFileQVBHeader::put_Transpose(VARIANT_BOOL value) noexcept
{
    return answer([&] { fields_.transpose = value != VARIANT_FALSE; });
}

HRESULT CFileQVBHeader::get_ObjNames(VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return fields_.object_names; });
}

HRESULT CFileQVBHeader::put_ObjNames(VARIANT_BOOL value) noexcept
{
    return answer([&] { fields_.object_names = value != VARIANT_FALSE; });
}

HRESULT CFileQVBHeader::get_FeatNames(VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return fields_.feature_names; });
}

HRESULT CFileQVBHeader::get_ExtHeader(long* result) noexcept
{
    return answer(result, [&] { return fields_.extended_header; });
}
