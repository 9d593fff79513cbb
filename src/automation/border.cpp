#include "automation/border.h"

#include "automation/module.h"

#include <iterator>
#include <new>
#include <stdexcept>

namespace automation {
namespace {

constexpr HRESULT runtime_base = static_cast<HRESULT>(0x800A0000);

HRESULT result_code(std::int32_t number) noexcept
{
    return number >= 0 && number <= 0xFFFF ? runtime_base + number : static_cast<HRESULT>(number);
}

/// The system's text for a result code; empty when it has none.
std::wstring system_text(HRESULT result)
{
    wchar_t buffer[256];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(result), 0, buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
    while (length > 0 && (buffer[length - 1] == L'\n' || buffer[length - 1] == L'\r'))
        --length;
    return {buffer, length};
}

/// Never fails: an error without its texts still has its number.
void set_error_information(std::wstring_view description, std::wstring_view source) noexcept
try {
    Ref<ICreateErrorInfo> creator;
    if (FAILED(CreateErrorInfo(creator.put())))
        return;
    creator->SetDescription(Text{description}.get());
    creator->SetSource(Text{source.empty() ? std::wstring_view{module::name()} : source}.get());
    SetErrorInfo(0, query<IErrorInfo>(creator.get()).get());
} catch (...) {
    SetErrorInfo(0, nullptr);
}

HRESULT answer_error(std::int32_t number, std::wstring_view description, std::wstring_view source = {}) noexcept
{
    set_error_information(description, source);
    return result_code(number);
}

HRESULT answer_runtime(Runtime runtime) noexcept
{
    const auto number = static_cast<std::int32_t>(runtime);
    return answer_error(number, runtime_text(number));
}

} // namespace

HRESULT answer_exception() noexcept
{
    try {
        throw;
    } catch (const Error& error) {
        return answer_error(error.number(), error.description(), error.source());
    } catch (const std::bad_alloc&) {
        return answer_runtime(Runtime::OutOfMemory);
    } catch (const std::length_error&) {
        return answer_runtime(Runtime::OutOfMemory);
    } catch (...) {
        return answer_error(E_UNEXPECTED, L"Unexpected failure");
    }
}

void check(HRESULT result)
{
    if (SUCCEEDED(result))
        return;
    switch (result) {
    case E_OUTOFMEMORY:
        throw Error{Runtime::OutOfMemory};
    case DISP_E_OVERFLOW:
        throw Error{Runtime::Overflow};
    case DISP_E_BADINDEX:
        throw Error{Runtime::SubscriptOutOfRange};
    case DISP_E_ARRAYISLOCKED:
        throw Error{Runtime::ArrayLocked};
    case DISP_E_TYPEMISMATCH:
    case DISP_E_BADVARTYPE:
        throw Error{Runtime::TypeMismatch};
    case E_INVALIDARG:
        throw Error{Runtime::InvalidCall};
    default:
        throw Error{result, system_text(result)};
    }
}

} // namespace automation
