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

/// Never fails: an error without its texts still has its number, and not those of the thread's former error.
void set_error_information(std::wstring_view description, std::wstring_view source) noexcept
try {
    Ref<ICreateErrorInfo> creator;
    check(CreateErrorInfo(creator.put()));
    creator->SetDescription(Text{description}.get());
    const Text where = or_default([&] { return source.empty() ? Text{module::name()} : Text{source}; });
    creator->SetSource(where.get());
    SetErrorInfo(0, query<IErrorInfo>(creator.get()).get());
} catch (...) {
    SetErrorInfo(0, nullptr);
}

HRESULT answer_error(std::int32_t number, std::wstring_view description, std::wstring_view source = {}) noexcept
{
    set_error_information(description, source);
    return result_code(number);
}

/// A text that a client asks for; nothing when its memory can't be had.
template <class Maker>
HRESULT give_text(BSTR* text, Maker&& make) noexcept
{
    if (!text)
        return E_POINTER;
    *text = nullptr;
    if (!ThreadState::find_or_make())
        return E_OUTOFMEMORY;
    try {
        *text = Text{make()}.release();
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

/// The error information that is there when no memory is left for another. It is part of the module.
class OutOfMemoryInformation final : public IErrorInfo {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (!object)
            return E_POINTER;
        *object = iid == IID_IUnknown || iid == IID_IErrorInfo ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
    HRESULT STDMETHODCALLTYPE GetGUID(GUID* guid) noexcept override
    {
        if (!guid)
            return E_POINTER;
        *guid = GUID_NULL;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) noexcept override
    {
        return give_text(source, [] { return module::name(); });
    }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* description) noexcept override
    {
        return give_text(description, [] { return runtime_text(static_cast<std::int32_t>(Runtime::OutOfMemory)); });
    }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* file) noexcept override
    {
        return give_text(file, [] { return std::wstring_view{}; });
    }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* context) noexcept override
    {
        if (!context)
            return E_POINTER;
        *context = 0;
        return S_OK;
    }
};

constinit OutOfMemoryInformation out_of_memory_information;

} // namespace

HRESULT answer_out_of_memory() noexcept
{
    SetErrorInfo(0, &out_of_memory_information);
    return result_code(static_cast<std::int32_t>(Runtime::OutOfMemory));
}

HRESULT answer_rule(void (*rule)(void* work), void* work) noexcept
{
    return answer_code([&] {
        rule(work);
        return S_OK;
    });
}

HRESULT answer_exception() noexcept
{
    try {
        throw;
    } catch (const Error& error) {
        if (error.number() == static_cast<std::int32_t>(Runtime::OutOfMemory) && error.source().empty())
            return answer_out_of_memory();
        return answer_error(error.number(), error.description(), error.source());
    } catch (const std::bad_alloc&) {
        return answer_out_of_memory();
    } catch (const std::length_error&) {
        return answer_out_of_memory();
    } catch (...) {
        return answer_error(E_UNEXPECTED, L"Unexpected failure");
    }
}

HRESULT runtime_failure(std::uint16_t number) noexcept
{
    return runtime_base + number;
}

Error failure(HRESULT result)
{
    switch (result) {
    case E_OUTOFMEMORY:
    case HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY):
        return Error{Runtime::OutOfMemory};
    case DISP_E_OVERFLOW:
        return Error{Runtime::Overflow};
    case DISP_E_BADINDEX:
        return Error{Runtime::SubscriptOutOfRange};
    case DISP_E_ARRAYISLOCKED:
        return Error{Runtime::ArrayLocked};
    case DISP_E_DIVBYZERO:
        return Error{Runtime::DivisionByZero};
    case DISP_E_TYPEMISMATCH:
    case DISP_E_BADVARTYPE:
        return Error{Runtime::TypeMismatch};
    case E_INVALIDARG:
        return Error{Runtime::InvalidCall};
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME:
        return Error{Runtime::MemberNotSupported};
    case DISP_E_NONAMEDARGS:
        return Error{Runtime::NoNamedArguments};
    case DISP_E_UNKNOWNLCID:
        return Error{Runtime::LocaleNotSupported};
    case DISP_E_PARAMNOTFOUND:
        return Error{Runtime::NamedArgumentNotFound};
    case DISP_E_PARAMNOTOPTIONAL:
        return Error{Runtime::ArgumentNotOptional};
    case DISP_E_BADPARAMCOUNT:
        return Error{Runtime::WrongArgumentCount};
    default:
        break;
    }
    if (HRESULT_FACILITY(result) == FACILITY_CONTROL && HRESULT_CODE(result) != 0) {
        const std::int32_t number = HRESULT_CODE(result);
        const std::wstring_view text = runtime_text(number);
        return Error{number, std::wstring{text.empty() ? unknown_runtime_text : text}};
    }
    const std::wstring text = system_text(result);
    return Error{result, text.empty() ? std::wstring{runtime_text(static_cast<std::int32_t>(Runtime::Automation))} : text};
}

void check(HRESULT result)
{
    if (FAILED(result))
        throw failure(result);
}

} // namespace automation
