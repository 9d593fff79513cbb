#pragma once

#include "automation/collection.h"
#include "automation/connection_point.h"
#include "automation/safe_array.h"
#include "support/client.h"

#include <specimen_contract.h>

#include <emmintrin.h>

#include <map>

/// An object with a member for every shape of a call.
class Specimen final : public automation::WithEvents<automation::Object<Specimen, faces::Specimen>, __Specimen> {
public:
    std::wstring get_Value(std::wstring_view sDefault) const { return value_.empty() ? std::wstring{sDefault} : value_; }
    void put_Value(std::wstring_view, std::wstring_view s) { value_ = s; }
    long Twice(short n) { return 2 * n; }
    void Double(long& n) { n *= 2; }
    void Append(BSTR& s, std::wstring_view tail)
    {
        automation::Text longer{std::wstring{automation::view(s)} + std::wstring{tail}};
        SysFreeString(s);
        s = longer.release();
    }
    long TypeOf(const VARIANT& v) { return v.vt; }
    void Replace(VARIANT& v, const VARIANT& with)
    {
        automation::Variant fresh{with};
        std::swap(v, static_cast<VARIANT&>(fresh));
    }
    void Fill(SAFEARRAY*& a, long n)
    {
        if (n < 0)
            throw std::bad_alloc{};
        automation::Variant fresh = automation::new_array(VT_R8, static_cast<std::size_t>(n));
        {
            const automation::LockedArray<double> numbers{fresh.parray};
            for (long i = 0; i < n; ++i)
                numbers[static_cast<std::size_t>(i)] = i + 0.5;
        }
        SafeArrayDestroy(a);
        a = fresh.release().parray;
    }
    double Sum(SAFEARRAY* a)
    {
        double sum = 0;
        for (const double number : automation::LockedArray<double>{a})
            sum += number;
        return sum;
    }
    double Total(SAFEARRAY*& a) { return Sum(a); }
    std::wstring Types(std::wstring_view separator, SAFEARRAY* values)
    {
        std::wstring types;
        for (const VARIANT& value : automation::LockedArray<VARIANT>{values})
            types += std::to_wstring(value.vt) + std::wstring{separator};
        return types;
    }
    void Fail(long number, long& reached)
    {
        reached = 1;
        if (number == 1)
            throw std::bad_alloc{};
        if (number == 2)
            throw 2;
        throw automation::Error{number, L"Beschreibung \u00fc", number == 3 ? L"Specimen.Source" : L""};
    }
    automation::Ref<_Specimen> get_Partner() { return partner_; }
    void putref_Partner(_Specimen* value) { partner_ = automation::Ref{value}; }
    void put_Only(long value) { value_ = std::to_wstring(value); }
    double Mixed(unsigned char b, double d, bool f, float g, CY c, DATE t, Colour e)
    {
        return b + 10 * d + 100 * f + 1000 * g + static_cast<double>(c.int64) + t * 1e6 + static_cast<int>(e) * 1e8;
    }
    long Options(long a, long b, const VARIANT& c)
    {
        return 100 * a + 10 * b + (automation::is_missing(c) ? 0 : automation::converted(c, VT_I4).lVal);
    }
    automation::Ref<automation::Collection> get_Items() { return items_; }
    long Misalignment()
    {
        alignas(16) volatile float numbers[4]{};
        _mm_store_ps(const_cast<float*>(numbers), _mm_set1_ps(1.0f)); // faults on a place that is not aligned
        return static_cast<long>(reinterpret_cast<std::uintptr_t>(numbers) & 15);
    }
    long Happen(long n)
    {
        events().fire(1, {automation::by_reference(n)});
        return n;
    }
    automation::Ref<Specimen> get_Child(std::wstring_view name) // made when it is first asked for
    {
        return children_.try_emplace(std::wstring{name}, automation::make<Specimen>()).first->second;
    }
    void Assign(VARIANT& v, const VARIANT& with) { automation::assign(v, automation::Variant{with}); }
    std::wstring Repeat(std::wstring_view s, short n)
    {
        std::wstring all;
        for (short i = 0; i < n; ++i)
            all += s;
        return all;
    }
    long Difference(const Pair& pair) { return pair.second - pair.first; }
    void Announce(BSTR& s)
    {
        long unused = 0;
        events().fire(1, {automation::by_reference(unused)});
        automation::replace(s, L"announced");
    }
    long Raise(Bytes& bytes, long by)
    {
        long sum = 0;
        for (unsigned char& byte : bytes.all)
            sum += byte = static_cast<unsigned char>(byte + by);
        if (by < 0)
            throw automation::Error{automation::Runtime::Overflow};
        return sum;
    }
    bool IsOwn(_Specimen* object) { return bool{automation::own<Specimen>(object)}; }

    static client::Object create() { return client::Object{automation::make<Specimen>()->face<_Specimen>()}; }

private:
    std::wstring value_;
    automation::Ref<_Specimen> partner_;
    std::map<std::wstring, automation::Ref<Specimen>> children_;
    automation::Ref<automation::Collection> items_ = automation::make<automation::Collection>();
};
