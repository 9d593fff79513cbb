// Uses the library without registration. It creates an object of every class, and has one of them trim a text, on a thread with
// an apartment and on one without, whose calls the platform passes on to an apartment.
//
// Beside the program lie unregistered.exe.manifest, which says that it needs the library, qvObjects.Library.manifest, which says
// what the library holds, and qvObjects.dll. Build it as a 32-bit program, with the headers of the package:
//     i686-w64-mingw32-g++ -std=c++20 -w -municode -I ../../include -static unregistered.cpp -o unregistered.exe
//         -lole32 -loleaut32 -luuid
#include "qvObjects.h"

#include <cstdio>
#include <thread>

namespace {

const wchar_t* const classes[]{
    L"qvAPI", L"qvBitmap", L"qvCommon", L"qvFile", L"qvFile_Nif", L"qvFile_qvb", L"qvForm", L"qvIniFile", L"qvMath",
    L"qvPathDialog", L"qvPrinter", L"qvSave", L"qvScreen", L"qvSharedMemory", L"qvSyno", L"qvSystemColors", L"qvSystemMetrics", L"qvToolTip",
    L"qvWindowProc"};

/// Whether an object of the class can be created by name, as scripts create it.
bool can_create(const wchar_t* name)
{
    wchar_t program[64];
    std::swprintf(program, std::size(program), L"qvObjects.%ls", name);
    CLSID id;
    IDispatch* object = nullptr;
    HRESULT result = CLSIDFromProgID(program, &id);
    if (SUCCEEDED(result))
        result = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object));
    if (FAILED(result)) {
        std::printf("%ls: error %08lX\n", program, static_cast<unsigned long>(result));
        return false;
    }
    object->Release();
    return true;
}

/// A text trimmed through the interface of the class. From another apartment the call needs the type library.
bool can_call()
{
    _qvCommon* common = nullptr;
    HRESULT result = CoCreateInstance(__uuidof(qvCommon), nullptr, CLSCTX_INPROC_SERVER, __uuidof(_qvCommon),
                                      reinterpret_cast<void**>(&common));
    BSTR trimmed = nullptr;
    if (SUCCEEDED(result)) {
        const BSTR text = SysAllocString(L"  Pegel Nord ");
        result = common->qvTrim(text, &trimmed);
        SysFreeString(text);
        common->Release();
    }
    if (SUCCEEDED(result))
        std::printf("[%ls]\n", trimmed);
    else
        std::printf("error %08lX\n", static_cast<unsigned long>(result));
    SysFreeString(trimmed);
    return SUCCEEDED(result);
}

/// The number of failures on a thread of that kind.
int failures(const char* kind, COINIT apartment)
{
    CoInitializeEx(nullptr, apartment);
    int failed = 0;
    for (const wchar_t* name : classes)
        failed += !can_create(name);
    constexpr int all = std::size(classes);
    std::printf("%s: %d of %d classes, ", kind, all - failed, all);
    failed += !can_call();
    CoUninitialize();
    return failed;
}

} // namespace

int wmain()
{
    int failed = failures("with an apartment", COINIT_APARTMENTTHREADED);
    std::thread{[&] { failed += failures("without one", COINIT_MULTITHREADED); }}.join();
    return failed;
}
