#pragma once

#include "support/client.h"

#include <qvObjects.h>

/// The library as its entry points give it, without the platform's class tables.
namespace library {

template <class Function>
Function entry_point(HMODULE module, const char* name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// The file that the library is registered with.
inline std::wstring file()
{
    wchar_t id[40], path[MAX_PATH]{};
    StringFromGUID2(__uuidof(qvMath), id, 40);
    DWORD size = sizeof path;
    const std::wstring key = L"CLSID\\" + std::wstring{id} + L"\\InprocServer32";
    EXPECT_EQ(RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path, &size), ERROR_SUCCESS);
    return path;
}

inline HRESULT try_create(HMODULE module, REFCLSID id, client::Object& object)
{
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    IClassFactory* factory = nullptr;
    IDispatch* made = nullptr;
    const auto get_class_object = entry_point<GetClassObject>(module, "DllGetClassObject");
    EXPECT_EQ(get_class_object(id, IID_IClassFactory, reinterpret_cast<void**>(&factory)), S_OK);
    const HRESULT result = factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&made));
    factory->Release();
    object = client::Object{made};
    if (made)
        made->Release();
    return result;
}

inline client::Object create(HMODULE module, REFCLSID id)
{
    client::Object object;
    EXPECT_EQ(try_create(module, id, object), S_OK);
    return object;
}

inline HRESULT can_unload(HMODULE module)
{
    return entry_point<HRESULT(STDAPICALLTYPE*)()>(module, "DllCanUnloadNow")();
}

} // namespace library
