#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <ocidl.h>
#include <winioctl.h>
#include <oleauto.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

/// What a client of the registered library does: create objects and call members by name. It shares no code with the
/// library, so that neither hides the other's faults.
namespace client {

/// A variant that cleans up after itself.
class Value : public VARIANT {
public:
    Value() { VariantInit(this); }
    Value(const wchar_t* text) : Value{} { vt = VT_BSTR; bstrVal = SysAllocString(text); }
    Value(std::wstring_view text) : Value{} { vt = VT_BSTR; bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size())); }
    Value(const std::wstring& text) : Value{std::wstring_view{text}} {}
    Value(int number) : Value{} { vt = VT_I4; lVal = number; }
    Value(long number) : Value{} { vt = VT_I4; lVal = number; }
    Value(short number) : Value{} { vt = VT_I2; iVal = number; }
    Value(double number) : Value{} { vt = VT_R8; dblVal = number; }
    Value(bool flag) : Value{} { vt = VT_BOOL; boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE; }
    Value(IDispatch* object) : Value{}
    {
        vt = VT_DISPATCH;
        pdispVal = object;
        if (object)
            object->AddRef();
    }
    Value(const Value& other) : Value{} { VariantCopy(this, const_cast<Value*>(&other)); }
    Value(Value&& other) noexcept : VARIANT{other} { static_cast<VARIANT&>(other).vt = VT_EMPTY; }
    Value& operator=(Value other)
    {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
        return *this;
    }
    ~Value() { VariantClear(this); }

    static Value null() { return of_type(VT_NULL); }
    /// The marker for an argument that is left out.
    static Value missing()
    {
        Value value = of_type(VT_ERROR);
        value.scode = DISP_E_PARAMNOTFOUND;
        return value;
    }
    /// A script's variable, as scripts pass it.
    static Value variable(VARIANT& variable)
    {
        Value value = of_type(VT_BYREF | VT_VARIANT);
        value.pvarVal = &variable;
        return value;
    }
    /// A typed variable, as compiled clients pass it.
    static Value reference(VARTYPE type, void* variable)
    {
        Value value = of_type(static_cast<VARTYPE>(VT_BYREF | type));
        value.byref = variable;
        return value;
    }
    static Value of_type(VARTYPE type)
    {
        Value value;
        value.vt = type;
        return value;
    }

    std::wstring text() const
    {
        EXPECT_EQ(vt, VT_BSTR);
        return vt == VT_BSTR ? std::wstring{bstrVal, SysStringLen(bstrVal)} : L"(no text)";
    }
    long number() const
    {
        Value converted;
        EXPECT_EQ(VariantChangeType(&converted, const_cast<Value*>(this), 0, VT_I4), S_OK) << "type " << vt;
        return converted.lVal;
    }
    bool flag() const
    {
        EXPECT_EQ(vt, VT_BOOL);
        return vt == VT_BOOL && boolVal != VARIANT_FALSE;
    }
};

/// What a call came to.
struct Outcome {
    HRESULT result = S_OK;
    Value value;
    HRESULT code = 0; ///< of an error that the member raised
    std::wstring source, description;
    UINT bad_argument = ~0u;

    /// Err.Number as a script sees it.
    long number() const { return HRESULT_FACILITY(code) == FACILITY_CONTROL ? HRESULT_CODE(code) : code; }
};

/// A reference to an object.
class Object {
public:
    Object() = default;
    explicit Object(IDispatch* object) : object_{object}
    {
        if (object_)
            object_->AddRef();
    }
    Object(const Object& other) : Object{other.object_} {}
    Object(Object&& other) noexcept : object_{std::exchange(other.object_, nullptr)} {}
    Object& operator=(Object other)
    {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Object()
    {
        if (object_)
            object_->Release();
    }

    /// A new object of the class with this programmatic identifier.
    static Object create(const wchar_t* program)
    {
        CLSID id{};
        Object made;
        EXPECT_EQ(CLSIDFromProgID(program, &id), S_OK) << "not registered";
        EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&made.object_)), S_OK);
        return made;
    }

    IDispatch* dispatch() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    operator Value() const { return Value{object_}; }

    DISPID id(const wchar_t* name) const
    {
        DISPID id = DISPID_UNKNOWN;
        auto text = const_cast<LPOLESTR>(name);
        object_->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
        return id;
    }

    Outcome invoke(DISPID id, WORD flags, const std::vector<Value>& arguments) const
    {
        std::vector<VARIANTARG> reversed(arguments.size());
        for (std::size_t i = 0; i < arguments.size(); ++i)
            reversed[arguments.size() - 1 - i] = arguments[i];
        DISPID put = DISPID_PROPERTYPUT;
        const bool sets = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        DISPPARAMS parameters{reversed.data(), sets ? &put : nullptr, static_cast<UINT>(reversed.size()), sets ? 1u : 0u};
        Outcome outcome;
        EXCEPINFO exception{};
        outcome.result = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, sets ? nullptr : &outcome.value,
                                         &exception, &outcome.bad_argument);
        if (outcome.result == DISP_E_EXCEPTION) {
            outcome.code = exception.wCode ? exception.wCode : exception.scode;
            if (exception.bstrSource)
                outcome.source = exception.bstrSource;
            if (exception.bstrDescription)
                outcome.description = exception.bstrDescription;
        }
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
        return outcome;
    }

    /// Calls a member as scripts do, whatever comes of it.
    Outcome try_call(const wchar_t* member, const std::vector<Value>& arguments = {}) const
    {
        return invoke(id(member), DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
    }
    Outcome try_put(const wchar_t* member, std::initializer_list<Value> arguments_and_value) const
    {
        return invoke(id(member), DISPATCH_PROPERTYPUT, arguments_and_value);
    }
    Outcome try_set(const wchar_t* member, std::initializer_list<Value> arguments_and_object) const
    {
        return invoke(id(member), DISPATCH_PROPERTYPUTREF, arguments_and_object);
    }

    /// The same where it has to succeed.
    Value call(const wchar_t* member, const std::vector<Value>& arguments = {}) const
    {
        Outcome outcome = try_call(member, arguments);
        EXPECT_EQ(outcome.result, S_OK) << "error " << outcome.number();
        return std::move(outcome.value);
    }
    Object object(const wchar_t* member, std::initializer_list<Value> arguments = {}) const
    {
        const Value value = call(member, arguments);
        EXPECT_EQ(value.vt, VT_DISPATCH);
        return value.vt == VT_DISPATCH ? Object{value.pdispVal} : Object{};
    }
    void put(const wchar_t* member, std::initializer_list<Value> arguments_and_value) const
    {
        const Outcome outcome = try_put(member, arguments_and_value);
        EXPECT_EQ(outcome.result, S_OK) << "error " << outcome.number();
    }

private:
    IDispatch* object_ = nullptr;
};

/// Everything that `for each` gives.
inline std::vector<Value> items(const Object& list)
{
    std::vector<Value> all;
    const Outcome outcome = list.invoke(DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {});
    EXPECT_EQ(outcome.result, S_OK);
    IEnumVARIANT* enumerator = nullptr;
    if (!outcome.value.punkVal || FAILED(outcome.value.punkVal->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(&enumerator))))
        return all;
    for (Value item; enumerator->Next(1, &item, nullptr) == S_OK; item = Value{})
        all.push_back(item);
    enumerator->Release();
    return all;
}

/// Expects that a call raised this error.
inline void expect_error(const Outcome& outcome, long number, std::wstring_view description, std::wstring_view source = L"qvObjects")
{
    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.number(), number);
    EXPECT_EQ(outcome.description, description);
    EXPECT_EQ(outcome.source, source);
}

/// The system's text for one of its error codes.
inline std::wstring system_text(DWORD code)
{
    wchar_t text[256];
    return {text, FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text, 256, nullptr)};
}

/// A folder of its own for what one test makes, gone with it.
class Folder {
public:
    Folder()
    {
        wchar_t place[MAX_PATH], name[MAX_PATH];
        GetTempPathW(MAX_PATH, place);
        GetTempFileNameW(place, L"qvo", 0, name);
        DeleteFileW(name);
        CreateDirectoryW(name, nullptr);
        path_ = name;
    }
    ~Folder() { remove(path_); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::wstring file(std::wstring_view name) const { return path_ + L"\\" + std::wstring{name}; }
    const std::wstring& path() const { return path_; }
    /// Writes a file of these bytes and gives its path.
    std::wstring write(std::wstring_view name, std::string_view bytes) const
    {
        const std::filesystem::path path = file(name);
        std::ofstream{path, std::ios::binary} << bytes;
        return path;
    }
    /// The same, with nothing but zeros behind these bytes up to this size.
    std::wstring write_large(std::wstring_view name, std::string_view bytes, LONGLONG size) const
    {
        const std::wstring path = write(name, bytes);
        const HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        DWORD got = 0;
        DeviceIoControl(handle, FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &got, nullptr); // takes no space where the system can
        LARGE_INTEGER end;
        end.QuadPart = size;
        EXPECT_TRUE(SetFilePointerEx(handle, end, nullptr, FILE_BEGIN) && SetEndOfFile(handle));
        CloseHandle(handle);
        return path;
    }
    /// How many entries the folder has.
    auto size() const { return std::distance(std::filesystem::directory_iterator{path_}, {}); }
    static std::string read(const std::wstring& path)
    {
        std::ifstream file{std::filesystem::path{path}, std::ios::binary};
        return file ? std::string{std::istreambuf_iterator<char>{file}, {}} : "(no file)";
    }

private:
    /// Links stay: they are the affair of those who made them.
    static void remove(const std::wstring& folder)
    {
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
        for (bool more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &found)) {
            const std::wstring name = found.cFileName, path = folder + L"\\" + name;
            const bool is_folder = found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY;
            if (name == L"." || name == L".." || (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
                continue;
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            is_folder ? remove(path) : void(DeleteFileW(path.c_str()));
        }
        if (search != INVALID_HANDLE_VALUE)
            FindClose(search);
        RemoveDirectoryW(folder.c_str());
    }

    std::wstring path_;
};

/// Starts automation for a thread of the tests. It is made before any object; when the last one ends, no object of the
/// library may be left.
class Apartment {
public:
    Apartment()
    {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        ++running();
    }
    ~Apartment()
    {
        CoUninitialize(); // after which objects that the library keeps for the thread are gone, too
        if (--running() == 0) {
            EXPECT_TRUE(nothing_left()) << "objects of the library are left";
        }
    }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

private:
    static std::atomic<int>& running()
    {
        static std::atomic<int> count{0};
        return count;
    }
    static bool nothing_left()
    {
        const HMODULE library = GetModuleHandleW(L"qvObjects.dll");
        const FARPROC entry = library ? GetProcAddress(library, "DllCanUnloadNow") : nullptr;
        return !entry || reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(entry))() == S_OK;
    }
};

} // namespace client
