// Lists the files below a folder, the current one if none is named, and stops after some of them:
//     walk [FOLDER [PATTERN [MOST]]]
//
// It shows how a program in C++ hears the events of an object: here ItemFound of qvFile, which its member WalkDirTree raises.
// Build it as a 32-bit program, with one of
//     cl /EHsc /DUNICODE walk.cpp ole32.lib oleaut32.lib uuid.lib
//     i686-w64-mingw32-g++ -municode -static walk.cpp -o walk.exe -lole32 -loleaut32 -luuid
#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>

#include <clocale>
#include <cstdio>
#include <cwchar>

/// Prints what the walk finds. It lives where it is declared, so nobody needs to count its references.
class Listener final : public IDispatch {
public:
    Listener(REFIID events, int most) : events_{events}, most_{most} {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == events_;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

    /// The one event is ItemFound(sPath, sFileName, fCancel). Arguments come in reverse order.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        constexpr DISPID item_found = 1;
        if (event != item_found || arguments->cArgs != 3)
            return DISP_E_MEMBERNOTFOUND;
        const VARIANTARG &path = arguments->rgvarg[2], &name = arguments->rgvarg[1], &cancel = arguments->rgvarg[0];
        std::wprintf(L"%ls%ls\n", path.bstrVal, name.bstrVal);
        if (++found_ == most_)
            *cancel.pboolVal = VARIANT_TRUE; // ends the walk
        return S_OK;
    }

    int found() const { return found_; }

private:
    const IID events_;
    const int most_;
    int found_ = 0;
};

/// Which interface the object calls to tell of its events.
IID events_of(IUnknown* object)
{
    IID events = GUID_NULL;
    IProvideClassInfo2* information = nullptr;
    if (SUCCEEDED(object->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&information)))) {
        information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events);
        information->Release();
    }
    return events;
}

/// Where a listener is made known to the object; null if there is no such place.
IConnectionPoint* connection_point(IUnknown* object, REFIID events)
{
    IConnectionPoint* point = nullptr;
    IConnectionPointContainer* container = nullptr;
    if (SUCCEEDED(object->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)))) {
        container->FindConnectionPoint(events, &point);
        container->Release();
    }
    return point;
}

/// object.WalkDirTree folder, pattern
HRESULT walk(IDispatch* object, const wchar_t* folder, const wchar_t* pattern)
{
    DISPID id;
    wchar_t member[] = L"WalkDirTree";
    LPOLESTR name = member;
    HRESULT result = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(result))
        return result;
    VARIANT reversed[2];
    reversed[1].vt = reversed[0].vt = VT_BSTR;
    reversed[1].bstrVal = SysAllocString(folder);
    reversed[0].bstrVal = SysAllocString(pattern);
    DISPPARAMS arguments{reversed, nullptr, 2, 0};
    result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr);
    VariantClear(&reversed[0]);
    VariantClear(&reversed[1]);
    return result;
}

int list(IDispatch* object, const wchar_t* folder, const wchar_t* pattern, int most)
{
    Listener listener{events_of(object), most};
    DWORD cookie = 0;
    IConnectionPoint* const point = connection_point(object, events_of(object));
    if (!point || FAILED(point->Advise(&listener, &cookie)))
        return 1;
    const HRESULT result = walk(object, folder, pattern);
    point->Unadvise(cookie); // before the listener goes
    point->Release();
    std::wprintf(L"%d found%ls\n", listener.found(), most > 0 && listener.found() == most ? L", there may be more" : L"");
    return FAILED(result);
}

int wmain(int count, wchar_t** arguments)
{
    std::setlocale(LC_ALL, ""); // names may hold any letter of the user's language
    CoInitialize(nullptr);
    CLSID id;
    IDispatch* object = nullptr;
    HRESULT result = CLSIDFromProgID(L"qvObjects.qvFile", &id);
    if (SUCCEEDED(result))
        result = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object));
    int code = 1;
    if (SUCCEEDED(result)) {
        code = list(object, count > 1 ? arguments[1] : L".", count > 2 ? arguments[2] : L"*.*",
                    count > 3 ? static_cast<int>(std::wcstol(arguments[3], nullptr, 10)) : 0);
        object->Release();
    } else {
        std::wprintf(L"qvObjects.qvFile can't be created: error %08lX\n", static_cast<unsigned long>(result));
    }
    CoUninitialize();
    return code;
}
