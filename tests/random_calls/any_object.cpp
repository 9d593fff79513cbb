#include "random_calls/any_object.h"

#include "random_calls/fault.h"

#include <algorithm>
#include <functional>

HRESULT AnyObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids)
{
    const std::size_t hash = std::hash<std::wstring>{}(names[0]);
    std::fill_n(ids, count, DISPID_UNKNOWN);
    if ((!willing() && (hash ^ number_) % 8 == 0) || count != 1)
        return DISP_E_UNKNOWNNAME;
    *ids = static_cast<DISPID>(1 + hash % 30000);
    return S_OK;
}

HRESULT AnyObject::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception, UINT*)
{
    require(FloatingModes::now() == client_modes, "the client's code runs in other floating-point modes");
    for (UINT i = 0; i < arguments->cArgs; ++i)
        image_of(arguments->rgvarg[i]); // whatever it gets can be read
    if (values_.one_in(10))
        client_.interrupted();
    if (--patience < 0 || (!willing() && values_.one_in(20))) {
        if (!exception || values_.one_in(2))
            return values_.one_of({DISP_E_MEMBERNOTFOUND, DISP_E_TYPEMISMATCH, DISP_E_BADPARAMCOUNT, E_OUTOFMEMORY});
        *exception = {};
        exception->scode = values_.one_of({0x800A000D, 0x800A01C9, 0x80004005, 0x80070005});
        exception->bstrDescription = values_.one_in(2) ? SysAllocString(L"the client's own") : nullptr;
        return DISP_E_EXCEPTION;
    }
    if (!result)
        return S_OK;
    VariantInit(result);
    if (!willing() && values_.one_in(2))
        return values_.answer(*result);
    result->vt = VT_I4;
    result->lVal = values_.small_number();
    return S_OK;
}
