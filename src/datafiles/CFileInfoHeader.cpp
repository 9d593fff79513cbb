#include "datafiles/CFileInfoHeader.h"

#include <array>
#include <string>

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

void CFileInfoHeader::put_FileType(std::wstring_view value)
{
    std::string bytes;
    automation::append_encoded(bytes, value);
    header_.file_type = std::move(bytes);
}
