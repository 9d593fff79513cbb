#include "automation/specimen.h"

#include "automation/client_object.h"

#include <emmintrin.h>

using namespace automation;

HRESULT Specimen::get_Value(BSTR sDefault, BSTR* result) noexcept
{
    return answer(result, [&] { return value_.empty() ? std::wstring{view(sDefault)} : value_; });
}

HRESULT Specimen::put_Value(BSTR, BSTR s) noexcept
{
    return answer([&] { value_ = view(s); });
}

HRESULT Specimen::Twice(short n, long* result) noexcept
{
    return answer(result, [&] { return 2 * n; });
}

HRESULT Specimen::Double(long* n) noexcept
{
    return answer([&] { *n *= 2; });
}

HRESULT Specimen::Append(BSTR* s, BSTR tail) noexcept
{
    return answer([&] {
        Text longer{std::wstring{view(*s)} + std::wstring{view(tail)}};
        SysFreeString(*s);
        *s = longer.release();
    });
}

HRESULT Specimen::TypeOf(VARIANT v, long* result) noexcept
{
    return answer(result, [&] { return static_cast<long>(v.vt); });
}

HRESULT Specimen::Replace(VARIANT* v, VARIANT with) noexcept
{
    return answer([&] {
        Variant fresh{with};
        std::swap(*v, static_cast<VARIANT&>(fresh));
    });
}

HRESULT Specimen::Fill(SAFEARRAY** a, long n) noexcept
{
    return answer([&] {
        Variant fresh = new_array(VT_R8, static_cast<std::size_t>(n));
        const LockedArray<double> numbers{fresh.parray};
        for (long i = 0; i < n; ++i)
            numbers[static_cast<std::size_t>(i)] = i + 0.5;
        SafeArrayDestroy(*a);
        *a = fresh.release().parray;
    });
}

HRESULT Specimen::Sum(SAFEARRAY* a, double* result) noexcept
{
    return answer(result, [&] {
        double sum = 0;
        for (const double number : LockedArray<double>{a})
            sum += number;
        return sum;
    });
}

HRESULT Specimen::Types(BSTR separator, SAFEARRAY* values, BSTR* result) noexcept
{
    return answer(result, [&] {
        std::wstring types;
        for (const VARIANT& value : LockedArray<VARIANT>{values})
            types += std::to_wstring(value.vt) + std::wstring{view(separator)};
        return types;
    });
}

HRESULT Specimen::Fail(long number, long* reached) noexcept
{
    return answer([&] {
        *reached = 1;
        if (number == 1)
            throw std::bad_alloc{};
        if (number == 2)
            throw 2;
        throw Error{number, L"Beschreibung \u00fc", number == 3 ? L"Specimen.Source" : L""};
    });
}

HRESULT Specimen::get_Partner(_Specimen** result) noexcept
{
    return answer(result, [&] { return partner_; });
}

HRESULT Specimen::putref_Partner(_Specimen* value) noexcept
{
    return answer([&] { partner_ = Ref{value}; });
}

HRESULT Specimen::put_Only(long value) noexcept
{
    return answer([&] { value_ = std::to_wstring(value); });
}

HRESULT Specimen::Mixed(unsigned char b, double d, VARIANT_BOOL f, float g, CY c, DATE t, Colour e, double* result) noexcept
{
    return answer(result, [&] { return b + 10 * d + 100 * (f ? 1 : 0) + 1000 * g + static_cast<double>(c.int64) + t * 1e6 + static_cast<int>(e) * 1e8; });
}

HRESULT Specimen::Options(long a, long b, VARIANT c, long* result) noexcept
{
    return answer(result, [&] { return 100 * a + 10 * b + (is_missing(c) ? 0 : converted(c, VT_I4).lVal); });
}

HRESULT Specimen::get_Items(_Collection** result) noexcept
{
    return answer(result, [&] { return Ref<_Collection>{items_.get()}; });
}

HRESULT Specimen::Misalignment(long* result) noexcept
{
    return answer(result, [&] {
        alignas(16) volatile float numbers[4]{};
        _mm_store_ps(const_cast<float*>(numbers), _mm_set1_ps(1.0f)); // faults on a place that is not aligned
        return static_cast<long>(reinterpret_cast<std::uintptr_t>(numbers) & 15);
    });
}

HRESULT Specimen::Happen(long n, long* result) noexcept
{
    return answer(result, [&] {
        VARIANT argument;
        argument.vt = VT_BYREF | VT_I4;
        argument.plVal = &n;
        events().fire(1, {argument});
        return n;
    });
}

HRESULT Specimen::Member(IDispatch* object, BSTR name, VARIANT* result) noexcept
{
    return answer(result, [&] { return get(object, std::wstring{view(name)}.c_str()); });
}

HRESULT Specimen::get_Child(BSTR name, _Specimen** result) noexcept
{
    return answer(result, [&] {
        for (const auto& [known, child] : children_)
            if (known == view(name))
                return child;
        return children_.emplace_back(view(name), make<Specimen>()).second;
    });
}

HRESULT Specimen::Total(SAFEARRAY** a, double* result) noexcept
{
    return Sum(*a, result);
}

HRESULT Specimen::Assign(VARIANT* v, VARIANT with) noexcept
{
    return answer([&] { assign(*v, Variant{with}); });
}
