#pragma once

#include "automation/collection.h"
#include "automation/connection_point.h"
#include "automation/safe_array.h"
#include "support/client.h"

#include <specimen_contract.h>

#include <emmintrin.h>

#include <map>

/// An object with a member for every shape of a call.
class Specimen final : public automation::WithEvents<automation::Object<Specimen, _Specimen>, __Specimen> {
public:
    HRESULT STDMETHODCALLTYPE get_Value(BSTR sDefault, BSTR* result) noexcept override
    {
        return automation::answer(result, [&] { return value_.empty() ? std::wstring{automation::view(sDefault)} : value_; });
    }
    HRESULT STDMETHODCALLTYPE put_Value(BSTR, BSTR s) noexcept override
    {
        return automation::answer([&] { value_ = automation::view(s); });
    }
    HRESULT STDMETHODCALLTYPE Twice(short n, long* result) noexcept override
    {
        return automation::answer(result, [&] { return 2 * n; });
    }
    HRESULT STDMETHODCALLTYPE Double(long* n) noexcept override
    {
        return automation::answer([&] { *n *= 2; });
    }
    HRESULT STDMETHODCALLTYPE Append(BSTR* s, BSTR tail) noexcept override
    {
        return automation::answer([&] {
            automation::Text longer{std::wstring{automation::view(*s)} + std::wstring{automation::view(tail)}};
            SysFreeString(*s);
            *s = longer.release();
        });
    }
    HRESULT STDMETHODCALLTYPE TypeOf(VARIANT v, long* result) noexcept override
    {
        return automation::answer(result, [&] { return static_cast<long>(v.vt); });
    }
    HRESULT STDMETHODCALLTYPE Replace(VARIANT* v, VARIANT with) noexcept override
    {
        return automation::answer([&] {
            automation::Variant fresh{with};
            std::swap(*v, static_cast<VARIANT&>(fresh));
        });
    }
    HRESULT STDMETHODCALLTYPE Fill(SAFEARRAY** a, long n) noexcept override
    {
        return automation::answer([&] {
            if (n < 0)
                throw std::bad_alloc{};
            automation::Variant fresh = automation::new_array(VT_R8, static_cast<std::size_t>(n));
            const automation::LockedArray<double> numbers{fresh.parray};
            for (long i = 0; i < n; ++i)
                numbers[static_cast<std::size_t>(i)] = i + 0.5;
            SafeArrayDestroy(*a);
            *a = fresh.release().parray;
        });
    }
    HRESULT STDMETHODCALLTYPE Sum(SAFEARRAY* a, double* result) noexcept override
    {
        return automation::answer(result, [&] {
            double sum = 0;
            for (const double number : automation::LockedArray<double>{a})
                sum += number;
            return sum;
        });
    }
    HRESULT STDMETHODCALLTYPE Total(SAFEARRAY** a, double* result) noexcept override { return Sum(*a, result); }
    HRESULT STDMETHODCALLTYPE Types(BSTR separator, SAFEARRAY* values, BSTR* result) noexcept override
    {
        return automation::answer(result, [&] {
            std::wstring types;
            for (const VARIANT& value : automation::LockedArray<VARIANT>{values})
                types += std::to_wstring(value.vt) + std::wstring{automation::view(separator)};
            return types;
        });
    }
    HRESULT STDMETHODCALLTYPE Fail(long number, long* reached) noexcept override
    {
        return automation::answer([&] {
            *reached = 1;
            if (number == 1)
                throw std::bad_alloc{};
            if (number == 2)
                throw 2;
            throw automation::Error{number, L"Beschreibung \u00fc", number == 3 ? L"Specimen.Source" : L""};
        });
    }
    HRESULT STDMETHODCALLTYPE get_Partner(_Specimen** result) noexcept override
    {
        return automation::answer(result, [&] { return partner_; });
    }
    HRESULT STDMETHODCALLTYPE putref_Partner(_Specimen* value) noexcept override
    {
        return automation::answer([&] { partner_ = automation::Ref{value}; });
    }
    HRESULT STDMETHODCALLTYPE put_Only(long value) noexcept override
    {
        return automation::answer([&] { value_ = std::to_wstring(value); });
    }
    HRESULT STDMETHODCALLTYPE Mixed(unsigned char b, double d, VARIANT_BOOL f, float g, CY c, DATE t, Colour e,
                                    double* result) noexcept override
    {
        return automation::answer(result, [&] {
            return b + 10 * d + 100 * (f ? 1 : 0) + 1000 * g + static_cast<double>(c.int64) + t * 1e6 + static_cast<int>(e) * 1e8;
        });
    }
    HRESULT STDMETHODCALLTYPE Options(long a, long b, VARIANT c, long* result) noexcept override
    {
        return automation::answer(result, [&] {
            return 100 * a + 10 * b + (automation::is_missing(c) ? 0 : automation::converted(c, VT_I4).lVal);
        });
    }
    HRESULT STDMETHODCALLTYPE get_Items(_Collection** result) noexcept override
    {
        return automation::answer(result, [&] { return automation::Ref<_Collection>{items_.get()}; });
    }
    HRESULT STDMETHODCALLTYPE Misalignment(long* result) noexcept override
    {
        return automation::answer(result, [&] {
            alignas(16) volatile float numbers[4]{};
            _mm_store_ps(const_cast<float*>(numbers), _mm_set1_ps(1.0f)); // faults on a place that is not aligned
            return static_cast<long>(reinterpret_cast<std::uintptr_t>(numbers) & 15);
        });
    }
    HRESULT STDMETHODCALLTYPE Happen(long n, long* result) noexcept override
    {
        return automation::answer(result, [&] {
            VARIANT argument;
            argument.vt = VT_BYREF | VT_I4;
            argument.plVal = &n;
            events().fire(1, {argument});
            return n;
        });
    }
    HRESULT STDMETHODCALLTYPE get_Child(BSTR name, _Specimen** result) noexcept override
    {
        return automation::answer(result, [&] { // made when it is first asked for
            return children_.try_emplace(std::wstring{automation::view(name)}, automation::make<Specimen>()).first->second;
        });
    }
    HRESULT STDMETHODCALLTYPE Assign(VARIANT* v, VARIANT with) noexcept override
    {
        return automation::answer([&] { automation::assign(*v, automation::Variant{with}); });
    }
    HRESULT STDMETHODCALLTYPE Repeat(BSTR s, short n, BSTR* result) noexcept override
    {
        return automation::answer(result, [&] {
            std::wstring all;
            for (short i = 0; i < n; ++i)
                all += automation::view(s);
            return all;
        });
    }
    HRESULT STDMETHODCALLTYPE Difference(Pair* pair, long* result) noexcept override
    {
        return automation::answer(result, [&] { return pair->second - pair->first; });
    }
    HRESULT STDMETHODCALLTYPE IsOwn(_Specimen* object, VARIANT_BOOL* result) noexcept override
    {
        return automation::answer(result, [&] { return bool{automation::own<Specimen>(object)}; });
    }

    static client::Object create() { return client::Object{static_cast<_Specimen*>(automation::make<Specimen>().get())}; }

private:
    std::wstring value_;
    automation::Ref<_Specimen> partner_;
    std::map<std::wstring, automation::Ref<Specimen>> children_;
    automation::Ref<automation::Collection> items_ = automation::make<automation::Collection>();
};
