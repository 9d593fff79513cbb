// What the first object of a process costs: loading the library, creating the object and its first call by name, against
// the platform's own dictionary. Every first object needs a process of its own: the program starts itself, and a process
// started so answers with the time it took.

#include "stopwatch.h"

#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <string>

namespace {

constexpr int rounds = 40;

CLSID class_of(const wchar_t* program)
{
    CLSID id{};
    if (FAILED(CLSIDFromProgID(program, &id))) {
        std::printf("%ls is not registered\n", program);
        std::exit(1);
    }
    return id;
}

bool read(IDispatch& object, const wchar_t* property)
{
    auto name = const_cast<LPOLESTR>(property);
    DISPID id = DISPID_UNKNOWN;
    DISPPARAMS none{};
    VARIANT result{};
    return SUCCEEDED(object.GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id))
        && SUCCEEDED(object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr))
        && SUCCEEDED(VariantClear(&result));
}

/// In the process started: the time of a first object, or of it and its first call, in tenths of a microsecond; 0 when it fails.
int first_object(const wchar_t* program, const wchar_t* property)
{
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const CLSID id = class_of(program);
    bool done = false;
    const double seconds = seconds_of([&] {
        void* object = nullptr;
        done = SUCCEEDED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object))
            && (!*property || read(*static_cast<IDispatch*>(object), property));
    });
    return done ? static_cast<int>(seconds * 1e7) : 0;
}

/// The same, asked of a new process.
double seconds_in_new_process(const std::wstring& program, const std::wstring& property)
{
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring line = L"\"" + std::wstring{self} + L"\" " + program + L" \"" + property + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    DWORD answer = 0;
    if (CreateProcessW(self, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        WaitForSingleObject(process.hProcess, INFINITE);
        GetExitCodeProcess(process.hProcess, &answer);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    if (answer == 0) {
        std::printf("%ls could not be created or called\n", program.c_str());
        std::exit(1);
    }
    return answer / 1e7;
}

void compare(const char* what, const std::wstring& our_property, const std::wstring& its_property, const char* bar)
{
    Typical ours;
    Typical dictionary;
    for (int round = 0; round < rounds; ++round) {
        ours.add(seconds_in_new_process(L"qvObjects.qvIniFile", our_property));
        dictionary.add(seconds_in_new_process(L"Scripting.Dictionary", its_property));
    }
    std::printf("%s %.1f of Scripting.Dictionary's, %.1f at its best (%s)\n", what, ours.seconds() / dictionary.seconds(),
                ours.best() / dictionary.best(), bar);
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count == 3)
        return first_object(arguments[1], arguments[2]);
    class_of(L"qvObjects.qvIniFile");
    compare("first object:                ", L"", L"", "no bar");
    compare("first object and first call: ", L"FileName", L"Count", "bar 3");
    return 0;
}
