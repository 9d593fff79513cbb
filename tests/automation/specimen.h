#pragma once

#include "automation/collection.h"
#include "automation/connection_point.h"
#include "automation/safe_array.h"
#include "support/client.h"

#include <specimen_library.h>

/// An object with a member for every shape of a call.
class Specimen final : public automation::WithEvents<automation::Object<Specimen, _Specimen>, __Specimen> {
public:
    HRESULT STDMETHODCALLTYPE get_Value(BSTR sDefault, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Value(BSTR sDefault, BSTR s) noexcept override;
    HRESULT STDMETHODCALLTYPE Twice(short n, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Double(long* n) noexcept override;
    HRESULT STDMETHODCALLTYPE Append(BSTR* s, BSTR tail) noexcept override;
    HRESULT STDMETHODCALLTYPE TypeOf(VARIANT v, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Replace(VARIANT* v, VARIANT with) noexcept override;
    HRESULT STDMETHODCALLTYPE Fill(SAFEARRAY** a, long n) noexcept override;
    HRESULT STDMETHODCALLTYPE Sum(SAFEARRAY* a, double* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Types(BSTR separator, SAFEARRAY* values, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Fail(long number, long* reached) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Partner(_Specimen** result) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Partner(_Specimen* value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Only(long value) noexcept override;
    HRESULT STDMETHODCALLTYPE Mixed(unsigned char b, double d, VARIANT_BOOL f, float g, CY c, DATE t, Colour e,
                                    double* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Options(long a, long b, VARIANT c, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Items(_Collection** result) noexcept override;
    HRESULT STDMETHODCALLTYPE Misalignment(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Happen(long n, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Member(IDispatch* object, BSTR name, VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Child(BSTR name, _Specimen** result) noexcept override;
    HRESULT STDMETHODCALLTYPE Total(SAFEARRAY** a, double* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Assign(VARIANT* v, VARIANT with) noexcept override;

    static client::Object create()
    {
        const auto made = automation::make<Specimen>();
        return client::Object{static_cast<_Specimen*>(made.get())};
    }

private:
    std::wstring value_;
    automation::Ref<_Specimen> partner_;
    std::vector<std::pair<std::wstring, automation::Ref<Specimen>>> children_;
    automation::Ref<automation::Collection> items_ = automation::make<automation::Collection>();
};
