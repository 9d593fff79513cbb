#include "datafiles/CFileInfoHeader.h"

#include "automation/code_page.h"

#include <array>
#include <string>

using automation::answer;
using automation::view;

namespace {

/// What a platform function writes into a buffer; it gives the length with the terminator, or 0.
template <class Function>
std::wstring written(const Function& function)
{
    std::array<wchar_t, 256> buffer;
    const int length = function(buffer.data(), static_cast<int>(buffer.size()));
    return {buffer.data(), static_cast<std::size_t>(length > 0 ? length - 1 : 0)};
}

/// The local date and time in the user's formats.
std::string now()
{
    SYSTEMTIME time;
    GetLocalTime(&time);
    const std::wstring date_text = written([&](wchar_t* buffer, int size) {
        return GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, buffer, size);
    });
    const std::wstring time_text = written([&](wchar_t* buffer, int size) {
        return GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &time, nullptr, buffer, size);
    });
    std::string bytes;
    automation::append_encoded(bytes, date_text + L"  " + time_text);
    return bytes;
}

} // namespace

CFileInfoHeader::CFileInfoHeader() : header_{qvb::new_information(now())} {}

CFileInfoHeader::CFileInfoHeader(std::int32_t version, std::string_view file_type) : CFileInfoHeader{}
{
    header_.version = version;
    header_.file_type = file_type;
}

void CFileInfoHeader::load(DataFile& file)
{
    qvb::read(file, header_);
}

void CFileInfoHeader::save(DataFile& file) const
{
    file.write(qvb::bytes_of(header_));
}

HRESULT CFileInfoHeader::Load(long lFile) noexcept
{
    return answer([&] { load(DataFile::with_number(lFile)); });
}

HRESULT CFileInfoHeader::Save(long lFile) noexcept
{
    return answer([&] { save(DataFile::with_number(lFile)); });
}

HRESULT CFileInfoHeader::get_ID_NIF(BSTR* result) noexcept
{
    return answer(result, [] { return automation::decode(qvb::ID_NIF); });
}

HRESULT CFileInfoHeader::get_ID_QVD(BSTR* result) noexcept
{
    return answer(result, [] { return automation::decode(qvb::ID_QVD); });
}

HRESULT CFileInfoHeader::get_ID_QVB(BSTR* result) noexcept
{
    return answer(result, [] { return automation::decode(qvb::ID_QVB); });
}

HRESULT CFileInfoHeader::put_Version(long value) noexcept
{
    return answer([&] { header_.version = value; });
}

HRESULT CFileInfoHeader::get_Version(long* result) noexcept
{
    return answer(result, [&] { return header_.version; });
}

HRESULT CFileInfoHeader::put_FileType(BSTR value) noexcept
{
    return answer([&] {
        std::string bytes;
        automation::append_encoded(bytes, view(value));
        header_.file_type = std::move(bytes);
    });
}

HRESULT CFileInfoHeader::get_FileType(BSTR* result) noexcept
{
    return answer(result, [&] { return automation::decode(header_.file_type); });
}
