// Runs scripts with the platform's engines for VBScript and JScript, as its own script host does, and tells of their errors, which
// Wine's does not:
//     script_runner SCRIPT [ARGUMENT...]      runs one; ends with 1 when it ended with an error
//     script_runner /each LIST                runs those whose full paths stand in a file, a line each, in their folders; what one
//                                             prints goes to PATH.out, its temporary files to the folder PATH.temp
// Options of the script host, which begin with two slashes, are passed over.
// A script has the object WScript with Echo, CreateObject (with a prefix for events), Arguments, FullName, ScriptName,
// ScriptFullName, Sleep, Quit, StdOut. What is printed is UTF-8. A script's file is UTF-16 with its mark, or text in the system's
// code page.
#include "event_sink.h"
#include "host_object.h"

#include <initguid.h>

#include <activscp.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

std::string utf8(std::wstring_view text)
{
    const int units = static_cast<int>(text.size());
    std::string bytes(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr)), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), units, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    return bytes;
}

std::wstring read_text(const std::wstring& path)
{
    std::FILE* const file = _wfopen(path.c_str(), L"rb");
    if (!file)
        return {};
    std::string bytes;
    char part[4096];
    for (std::size_t count; (count = std::fread(part, 1, sizeof part, file)) > 0;)
        bytes.append(part, count);
    std::fclose(file);
    if (bytes.starts_with("\xFF\xFE"))
        return {reinterpret_cast<const wchar_t*>(bytes.data() + 2), (bytes.size() - 2) / sizeof(wchar_t)};
    std::wstring text(bytes.size(), L'\0');
    text.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                                                             static_cast<int>(text.size()))));
    return text;
}

std::wstring own_path()
{
    wchar_t path[MAX_PATH];
    return {path, GetModuleFileNameW(nullptr, path, MAX_PATH)};
}

std::wstring name_of(const std::wstring& path) { return path.substr(path.find_last_of(L"\\/") + 1); }

/// A value as a script's Echo shows it.
std::wstring shown(const VARIANT& value)
{
    VARIANT text;
    VariantInit(&text);
    if (FAILED(VariantChangeType(&text, const_cast<VARIANT*>(&value), VARIANT_ALPHABOOL, VT_BSTR)))
        return L"";
    const std::wstring found{text.bstrVal, SysStringLen(text.bstrVal)};
    VariantClear(&text);
    // A host shows truth as the script's numbers, whatever the language of the user.
    const auto type = static_cast<VARTYPE>(value.vt & ~VT_BYREF);
    return type == VT_BOOL ? (value.vt & VT_BYREF ? *value.pboolVal : value.boolVal) ? L"-1" : L"0" : found;
}

/// One script and the engine that runs it.
class Script final : public IActiveScriptSite, public IActiveScriptSiteWindow {
public:
    Script(std::wstring path, std::vector<std::wstring> arguments, std::FILE* output)
        : path_{std::move(path)}, arguments_{std::move(arguments)}, output_{output}
    {
    }
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    /// Whether it came to its end without an error.
    bool run()
    {
        const bool is_java = path_.ends_with(L".js");
        CLSID engine{};
        IActiveScriptParse* parser = nullptr;
        if (FAILED(CLSIDFromProgID(is_java ? L"JScript" : L"VBScript", &engine))
            || FAILED(CoCreateInstance(engine, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript, reinterpret_cast<void**>(&engine_)))
            || FAILED(engine_->QueryInterface(IID_IActiveScriptParse, reinterpret_cast<void**>(&parser)))) {
            say(L"There is no engine for " + path_);
            return false;
        }
        engine_->SetScriptSite(this);
        parser->InitNew();
        engine_->AddNamedItem(L"WScript", SCRIPTITEM_ISVISIBLE);
        engine_->GetScriptDispatch(nullptr, &global_);
        const std::wstring text = read_text(path_);
        const HRESULT outcome = parser->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE, nullptr, nullptr);
        if (SUCCEEDED(outcome))
            engine_->SetScriptState(SCRIPTSTATE_STARTED);
        if (FAILED(outcome) && !failed_ && !quits_) {
            failed_ = true;
            say(name_of(path_) + L": the engine refuses it");
        }
        engine_->SetScriptState(SCRIPTSTATE_DISCONNECTED);
        if (global_)
            global_->Release();
        engine_->Close();
        parser->Release();
        engine_->Release();
        return !failed_;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        *object = iid == IID_IUnknown || iid == IID_IActiveScriptSite ? static_cast<IActiveScriptSite*>(this)
                : iid == IID_IActiveScriptSiteWindow ? static_cast<IActiveScriptSiteWindow*>(this) : static_cast<void*>(nullptr);
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetLCID(LCID* locale) override
    {
        *locale = GetUserDefaultLCID();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD wanted, IUnknown** item, ITypeInfo** type) override
    {
        if (wanted & SCRIPTINFO_ITYPEINFO)
            *type = nullptr;
        if (wanted & SCRIPTINFO_IUNKNOWN)
            *item = &host_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override
    {
        if (quits_)
            return S_OK;
        EXCEPINFO info{};
        DWORD context = 0;
        ULONG line = 0;
        LONG column = 0;
        error->GetExceptionInfo(&info);
        error->GetSourcePosition(&context, &line, &column);
        // Wine's JScript also tells of a call from outside that it refused, without a reason and a place: that is the caller's
        // affair.
        if (!info.bstrSource && !info.bstrDescription && line == 0 && column == 0)
            return S_OK;
        failed_ = true;
        const auto part = [](const wchar_t* before, const wchar_t* text) { return text && *text ? before + std::wstring{text} : L""; };
        say(name_of(path_) + L"(" + std::to_wstring(line + 1) + L", " + std::to_wstring(column + 1) + L")"
            + part(L" ", info.bstrSource) + L": error " + number_of(info.scode) + part(L": ", info.bstrDescription));
        for (BSTR text : {info.bstrSource, info.bstrDescription, info.bstrHelpFile})
            SysFreeString(text);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override
    {
        *window = nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }

private:
    void print(const std::wstring& text)
    {
        std::fputs(utf8(text).c_str(), output_);
        std::fflush(output_);
    }
    void say(const std::wstring& line) { print(line + L"\n"); }

    /// The number of an error as the reference names it: that of the runtime, or the code in hexadecimal digits.
    static std::wstring number_of(SCODE code)
    {
        if (HRESULT_FACILITY(code) == FACILITY_CONTROL)
            return std::to_wstring(HRESULT_CODE(code));
        wchar_t digits[16];
        std::swprintf(digits, std::size(digits), L"0x%08lX", static_cast<unsigned long>(code));
        return digits;
    }

    HRESULT echo(const DISPPARAMS& arguments)
    {
        std::wstring line;
        for (UINT place = arguments.cArgs; place > 0; --place)
            line += (line.empty() ? L"" : L" ") + shown(arguments.rgvarg[place - 1]);
        say(line);
        return S_OK;
    }
    HRESULT create(const DISPPARAMS& arguments, VARIANT* result)
    {
        CLSID class_id{};
        IDispatch* object = nullptr;
        const std::wstring name = arguments.cArgs > 0 ? shown(arguments.rgvarg[arguments.cArgs - 1]) : L"";
        HRESULT outcome = CLSIDFromProgID(name.c_str(), &class_id);
        if (SUCCEEDED(outcome))
            outcome = CoCreateInstance(class_id, nullptr, CLSCTX_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object));
        if (SUCCEEDED(outcome) && arguments.cArgs > 1)
            outcome = EventSink::connect(*object, *global_, shown(arguments.rgvarg[0]));
        if (FAILED(outcome) || !result) {
            if (object)
                object->Release();
            return outcome;
        }
        result->vt = VT_DISPATCH;
        result->pdispVal = object;
        return S_OK;
    }
    static HRESULT give(VARIANT* result, std::wstring_view text)
    {
        if (result) {
            result->vt = VT_BSTR;
            result->bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        }
        return S_OK;
    }
    static HRESULT give(VARIANT* result, HostObject& object)
    {
        if (result) {
            result->vt = VT_DISPATCH;
            result->pdispVal = &object;
        }
        return S_OK;
    }
    static HRESULT give(VARIANT* result, std::size_t number)
    {
        if (result) {
            result->vt = VT_I4;
            result->lVal = static_cast<long>(number);
        }
        return S_OK;
    }
    HRESULT argument(const DISPPARAMS& arguments, VARIANT* result)
    {
        VARIANT place;
        VariantInit(&place);
        if (arguments.cArgs == 0) // the collection itself
            return give(result, arguments_object_);
        if (FAILED(VariantChangeType(&place, &arguments.rgvarg[0], 0, VT_I4)))
            return DISP_E_TYPEMISMATCH;
        if (place.lVal < 0 || static_cast<std::size_t>(place.lVal) >= arguments_.size())
            return DISP_E_BADINDEX;
        return give(result, arguments_[static_cast<std::size_t>(place.lVal)]);
    }
    HRESULT sleep(const DISPPARAMS& arguments)
    {
        VARIANT time;
        VariantInit(&time);
        if (arguments.cArgs != 1 || FAILED(VariantChangeType(&time, &arguments.rgvarg[0], 0, VT_I4)))
            return DISP_E_TYPEMISMATCH;
        const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(std::max(time.lVal, 0L));
        do {
            MSG message{};
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
            Sleep(1);
        } while (GetTickCount64() < end);
        return S_OK;
    }
    /// Ends the process of a script that has one of its own, for no error would pass On Error Resume Next, or a catch. One of many
    /// ends by an error that its engine takes for the script's own, and that nobody is told of.
    HRESULT quit(const DISPPARAMS& arguments)
    {
        VARIANT code;
        VariantInit(&code);
        const bool has_code = arguments.cArgs == 1 && SUCCEEDED(VariantChangeType(&code, &arguments.rgvarg[0], 0, VT_I4));
        if (output_ == stdout)
            ExitProcess(failed_ ? 1 : has_code ? static_cast<UINT>(code.lVal) : 0);
        quits_ = true;
        return E_ABORT;
    }
    HRESULT write(const DISPPARAMS& arguments, const wchar_t* end)
    {
        print((arguments.cArgs > 0 ? shown(arguments.rgvarg[0]) : L"") + end);
        return S_OK;
    }

    const std::wstring path_;
    const std::vector<std::wstring> arguments_;
    std::FILE* const output_;
    IActiveScript* engine_ = nullptr;
    IDispatch* global_ = nullptr;
    bool failed_ = false, quits_ = false;
    HostObject arguments_object_{{
        {L"", [this](const auto& arguments, VARIANT* result) { return argument(arguments, result); }},
        {L"Item", [this](const auto& arguments, VARIANT* result) { return argument(arguments, result); }},
        {L"Count", [this](const auto&, VARIANT* result) { return give(result, arguments_.size()); }},
        {L"Length", [this](const auto&, VARIANT* result) { return give(result, arguments_.size()); }},
    }};
    HostObject standard_output_{{
        {L"Write", [this](const auto& arguments, VARIANT*) { return write(arguments, L""); }},
        {L"WriteLine", [this](const auto& arguments, VARIANT*) { return write(arguments, L"\n"); }},
    }};
    HostObject host_{{
        {L"Echo", [this](const auto& arguments, VARIANT*) { return echo(arguments); }},
        {L"CreateObject", [this](const auto& arguments, VARIANT* result) { return create(arguments, result); }},
        {L"Arguments", [this](const auto& arguments, VARIANT* result) { return argument(arguments, result); }},
        {L"FullName", [](const auto&, VARIANT* result) { return give(result, own_path()); }},
        {L"ScriptFullName", [this](const auto&, VARIANT* result) { return give(result, path_); }},
        {L"ScriptName", [this](const auto&, VARIANT* result) { return give(result, name_of(path_)); }},
        {L"StdOut", [this](const auto&, VARIANT* result) { return give(result, standard_output_); }},
        {L"Sleep", [this](const auto& arguments, VARIANT*) { return sleep(arguments); }},
        {L"Quit", [this](const auto& arguments, VARIANT*) { return quit(arguments); }},
    }};
};

int run_each(const std::wstring& list)
{
    const std::wstring paths = read_text(list);
    for (std::size_t start = 0, end; start < paths.size(); start = end + 1) {
        end = std::min(paths.find(L'\n', start), paths.size());
        std::wstring path = paths.substr(start, end - start);
        if (path.ends_with(L'\r'))
            path.pop_back();
        if (path.empty())
            continue;
        std::FILE* const output = _wfopen((path + L".out").c_str(), L"wb");
        if (!output)
            return 2;
        SetCurrentDirectoryW(path.substr(0, path.find_last_of(L'\\')).c_str());
        const std::wstring temporary = path + L".temp";
        CreateDirectoryW(temporary.c_str(), nullptr);
        for (const wchar_t* name : {L"TEMP", L"TMP"})
            SetEnvironmentVariableW(name, temporary.c_str());
        Script{path, {}, output}.run();
        std::fclose(output);
    }
    return 0;
}

std::wstring full_path(const wchar_t* path)
{
    wchar_t found[MAX_PATH];
    const DWORD length = GetFullPathNameW(path, MAX_PATH, found, nullptr);
    return length > 0 && length < MAX_PATH ? found : path;
}

} // namespace

int wmain(int count, wchar_t** words)
{
    for (; count > 1 && std::wstring_view{words[1]}.starts_with(L"//"); --count)
        ++words;
    if (count < 2 || (count < 3 && std::wstring_view{words[1]} == L"/each")) {
        std::fputs("usage: script_runner SCRIPT [ARGUMENT...]\n       script_runner /each LIST\n", stderr);
        return 2;
    }
    OleInitialize(nullptr);
    if (std::wstring_view{words[1]} == L"/each")
        return run_each(words[2]);
    const std::wstring path = full_path(words[1]);
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        std::fputs(("script_runner: there is no " + utf8(path) + "\n").c_str(), stderr);
        return 2;
    }
    Script script{path, {words + 2, words + count}, stdout};
    return script.run() ? 0 : 1;
}
