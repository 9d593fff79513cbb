#include "random_calls/values.h"

#include "random_calls/fault.h"

#include <xmmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>

namespace {

constexpr unsigned sse_flags = 0x3F;

constexpr VARTYPE element_types[]{VT_I1, VT_UI1, VT_I2,  VT_UI2,   VT_I4,   VT_UI4,      VT_I8,      VT_UI8,     VT_INT,    VT_UINT, VT_R4,
                                  VT_R8, VT_CY,  VT_DATE, VT_BSTR, VT_ERROR, VT_DISPATCH, VT_UNKNOWN, VT_DECIMAL, VT_RECORD, VT_BOOL,
                                  VT_VARIANT};

void append(std::string& image, const void* bytes, std::size_t size)
{
    image.append(static_cast<const char*>(bytes), size);
}

void append_image(std::string& image, const VARIANT& value);

void append_text(std::string& image, BSTR text)
{
    const UINT size = SysStringByteLen(text);
    append(image, &size, sizeof size);
    if (text) // a null pointer is an empty text
        append(image, text, size);
}

std::size_t elements_of(const SAFEARRAY& array)
{
    std::size_t count = array.cDims > 0;
    for (USHORT i = 0; i < array.cDims; ++i)
        count *= array.rgsabound[i].cElements;
    return count;
}

void append_array(std::string& image, const SAFEARRAY* array)
{
    append(image, &array, sizeof array);
    if (!array)
        return;
    append(image, array, offsetof(SAFEARRAY, pvData));
    append(image, array->rgsabound, array->cDims * sizeof array->rgsabound[0]);
    if (!array->pvData)
        return;
    for (std::size_t i = 0, count = elements_of(*array); i < count; ++i) {
        const auto* const place = static_cast<const char*>(array->pvData) + i * array->cbElements;
        if (array->fFeatures & FADF_BSTR)
            append_text(image, *reinterpret_cast<const BSTR*>(place));
        else if (array->fFeatures & FADF_VARIANT)
            append_image(image, *reinterpret_cast<const VARIANT*>(place));
        else
            append(image, place, array->cbElements);
    }
}

void append_image(std::string& image, const VARIANT& value)
{
    append(image, &value.vt, sizeof value.vt);
    if (value.vt == VT_BSTR)
        append_text(image, value.bstrVal);
    else if ((value.vt & (VT_ARRAY | VT_BYREF)) == VT_ARRAY)
        append_array(image, value.parray);
    else if (value.vt == VT_DECIMAL)
        append(image, &value.decVal.scale, sizeof(DECIMAL) - sizeof(WORD));
    else if (value.vt == VT_RECORD)
        append(image, value.pvRecord, 16); // which both records of the library have
    else if (value.vt != VT_EMPTY && value.vt != VT_NULL)
        append(image, &value.lVal, sizeof value.llVal);
}

template <class Number>
void store(void* place, Number number)
{
    std::memcpy(place, &number, sizeof number);
}

} // namespace

FloatingModes FloatingModes::now()
{
    FloatingModes modes;
    asm volatile("fnstcw %0" : "=m"(modes.x87));
    modes.sse = _mm_getcsr() & ~sse_flags;
    return modes;
}

void FloatingModes::set() const
{
    asm volatile("fnclex; fldcw %0" : : "m"(x87));
    _mm_setcsr(sse);
}

std::string image_of(const VARIANT& value)
{
    std::string image;
    append_image(image, value);
    return image;
}

std::string description_of(const VARIANT& value)
{
    char text[160];
    std::string description;
    std::snprintf(text, sizeof text, "%s%s%u", value.vt & VT_BYREF ? "&" : "", value.vt & VT_ARRAY ? "array of " : "",
                  value.vt & ~(VT_BYREF | VT_ARRAY));
    description = text;
    if (value.vt == VT_BSTR) {
        const UINT length = SysStringLen(value.bstrVal);
        description += value.bstrVal ? " \"" : " null";
        for (UINT i = 0; i < std::min(length, 60u); ++i) {
            const wchar_t c = value.bstrVal[i];
            std::snprintf(text, sizeof text, c >= 32 && c < 127 ? "%lc" : "\\x%x", c);
            description += text;
        }
        std::snprintf(text, sizeof text, length > 60 ? "... (%u)" : "\"", length);
        description += value.bstrVal ? text : "";
    } else if (value.vt == VT_R8 || value.vt == VT_DATE) {
        std::snprintf(text, sizeof text, " %g", value.dblVal);
        description += text;
    } else if ((value.vt & VT_ARRAY) && !(value.vt & VT_BYREF) && value.parray) {
        std::snprintf(text, sizeof text, " features %x locks %lu", value.parray->fFeatures, value.parray->cLocks);
        description += text;
        for (USHORT i = 0; i < std::min<USHORT>(value.parray->cDims, 5); ++i) {
            const SAFEARRAYBOUND& bound = value.parray->rgsabound[i];
            std::snprintf(text, sizeof text, " (%ld, %lu)", bound.lLbound, bound.cElements);
            description += text;
        }
    } else if (value.vt != VT_EMPTY && value.vt != VT_NULL) {
        std::snprintf(text, sizeof text, " %ld", value.lVal);
        description += text;
    }
    return description;
}

VARTYPE Values::any_type()
{
    return element_types[below(std::size(element_types))];
}

long Values::number()
{
    switch (below(8)) {
    case 0:
        return one_of<long>({LONG_MAX, LONG_MIN, 32767, 32768, -32768, -32769, 65535, 65536, 255, 256, 1000, 100'000, -100'000});
    case 1:
        return window;
    case 2:
        return static_cast<long>(1u << below(32));
    default:
        return small_number();
    }
}

double Values::real()
{
    using Limits = std::numeric_limits<double>;
    if (!one_in(3))
        return static_cast<double>(number()) / 4;
    return one_of({Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), Limits::max(), -Limits::max(),
                   Limits::denorm_min(), -0.0, 2147483648.0, 1e15 + 0.3});
}

BSTR Values::text()
{
    using namespace std::string_view_literals;
    static constexpr std::wstring_view texts[]{
        L""sv, L"a"sv, L"b.txt"sv, L"sub"sv, L"sub\\c.ini"sv, L"sub\\"sv, L"*"sv, L"*.txt"sv, L"?"sv, L"NUL"sv, L"COM9"sv,
        L"nul.txt"sv, L"Gr\u00F6\u00DFe.dat"sv, L"\u6F22\u5B57.ini"sv, L"\xD800x"sv, L"a\0b"sv, L"\0"sv, L" "sv, L"1"sv, L"-1"sv,
        L"1,5"sv, L"1e400"sv, L"&HFF"sv, L"True"sv, L"wahr"sv, L"|1 and |2|a|n"sv, L"[x]"sv, L"[x] {"sv, L"}"sv, L"k=v"sv, L"Main"sv,
        L"{00020400-0000-0000-C000-000000000046}"sv, L"http://x"sv, L"7F"sv, L"\"a b\" c"sv, L"2024-02-30"sv, L"GUID"sv,
        L"LANGUAGE"sv};
    switch (below(12)) {
    case 0:
        return nullptr;
    case 1:
        return SysAllocStringByteLen("odd number", one_of({1u, 3u, 7u}));
    case 2: {
        static constexpr std::wstring_view alphabet = L"abcxyz\u00C4\u00F6\u20AC\u00DF0189 =[]{};|,+-&%()!'\t\r\n";
        std::wstring any;
        for (std::size_t left = below(one_in(10) ? 3000 : 30); left > 0; --left)
            any += alphabet[below(alphabet.size())];
        return SysAllocStringLen(any.data(), static_cast<UINT>(any.size()));
    }
    case 3:
        if (one_in(10))
            return SysAllocString(std::wstring(70'000, L'x').c_str());
        [[fallthrough]];
    case 4:
    case 5:
        return SysAllocString(files[below(files.size())].c_str());
    default: {
        const std::wstring_view chosen = texts[below(std::size(texts))];
        return SysAllocStringLen(chosen.data(), static_cast<UINT>(chosen.size()));
    }
    }
}

IDispatch* Values::object()
{
    if (one_in(6))
        return nullptr;
    IDispatch* const chosen = objects[below(objects.size())];
    chosen->AddRef();
    return chosen;
}

VARIANT Values::of_type(VARTYPE type, int depth)
{
    VARIANT value{};
    if (type == VT_VARIANT || type == VT_EMPTY) {
        if (one_in(12))
            return value;
        type = any_type();
        if (one_in(depth == 0 ? 4 : 20) && depth < 2)
            type = static_cast<VARTYPE>(VT_ARRAY | type);
        if (type == VT_VARIANT)
            type = VT_NULL;
    }
    value.vt = type;
    if (type & VT_ARRAY) {
        value.parray = array(static_cast<VARTYPE>(type & ~VT_ARRAY), depth);
        return value;
    }
    switch (type) {
    case VT_NULL:
        break;
    case VT_BSTR:
        value.bstrVal = text();
        break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        value.pdispVal = object();
        break;
    case VT_R4:
        value.fltVal = static_cast<float>(real());
        break;
    case VT_R8:
    case VT_DATE:
        value.dblVal = real();
        break;
    case VT_I8:
    case VT_UI8:
    case VT_CY:
        value.llVal = one_in(3) ? static_cast<LONGLONG>(random_()) << 32 | random_() : static_cast<LONGLONG>(number()) * 10'000;
        break;
    case VT_BOOL:
        value.boolVal = one_of<VARIANT_BOOL>({VARIANT_TRUE, VARIANT_TRUE, VARIANT_FALSE, VARIANT_FALSE, 1});
        break;
    case VT_ERROR:
        value.scode = one_of({DISP_E_PARAMNOTFOUND, DISP_E_PARAMNOTFOUND, E_FAIL, static_cast<HRESULT>(0x800A000D)});
        break;
    case VT_DECIMAL:
        value.decVal.Lo64 = static_cast<ULONGLONG>(number());
        value.decVal.Hi32 = one_in(3) ? random_() : 0;
        value.decVal.scale = static_cast<BYTE>(below(29));
        value.decVal.sign = one_in(2) ? DECIMAL_NEG : 0;
        value.vt = VT_DECIMAL;
        break;
    case VT_RECORD:
        if (library_.records.empty()) {
            value.vt = VT_EMPTY;
            break;
        }
        value.pRecInfo = library_.records[below(library_.records.size())];
        value.pRecInfo->AddRef();
        value.pvRecord = value.pRecInfo->RecordCreate();
        for (std::size_t i = 0; i < 4; ++i)
            store(static_cast<long*>(value.pvRecord) + i, number());
        break;
    default:
        value.lVal = number();
    }
    return value;
}

SAFEARRAY* Values::array(VARTYPE type, int depth)
{
    if (one_in(12))
        return nullptr;
    IRecordInfo* record = nullptr;
    if (type == VT_RECORD && !library_.records.empty())
        record = library_.records[below(library_.records.size())];
    else if (type == VT_RECORD)
        type = VT_I4;
    const UINT dimensions = one_in(40) ? 60 : one_of({1u, 1u, 1u, 2u, 2u, 2u, 3u, 4u});
    std::vector<SAFEARRAYBOUND> bounds(dimensions);
    for (SAFEARRAYBOUND& bound : bounds) {
        bound.cElements = dimensions > 4 ? 1 : static_cast<ULONG>(one_in(20) ? 0 : 1 + below(dimensions == 1 ? 12 : 5));
        bound.lLbound = one_of<long>({0, 0, 0, 1, 1, -3, 5, LONG_MIN, LONG_MAX - 12});
    }
    if (dimensions == 1 && one_in(20))
        bounds[0].cElements = 3000;
    SAFEARRAY* made = nullptr;
    if (!record && one_in(25)) {
        SafeArrayAllocDescriptorEx(type, dimensions, &made); // dimensions without elements
        return made;
    }
    made = SafeArrayCreateEx(type, dimensions, bounds.data(), record);
    require(made != nullptr, "no array could be made");
    fill(*made, type, depth);
    return made;
}

void Values::fill(SAFEARRAY& array, VARTYPE type, int depth)
{
    const bool of_numbers = one_in(2); // so that tables make sense
    const std::size_t count = std::min<std::size_t>(elements_of(array), 100);
    for (std::size_t i = 0; i < count; ++i) {
        auto* const place = static_cast<char*>(array.pvData) + i * array.cbElements;
        const VARTYPE wanted = type == VT_VARIANT && of_numbers ? one_of<VARTYPE>({VT_R8, VT_I4, VT_I2}) : type;
        VARIANT value = of_type(wanted, depth + 1);
        if (type == VT_VARIANT)
            std::memcpy(place, &value, sizeof value);
        else if (type == VT_DECIMAL)
            std::memcpy(place, &value.decVal, sizeof value.decVal);
        else if (type != VT_RECORD)
            std::memcpy(place, &value.lVal, array.cbElements);
        else
            VariantClear(&value);
    }
}

VARIANT Values::harmless(VARTYPE type)
{
    VARIANT value{};
    switch (below(5)) {
    case 0:
        return of_type(static_cast<VARTYPE>(VT_ARRAY | one_of<VARTYPE>({VT_I4, VT_BSTR, VT_VARIANT})));
    case 1:
        value.vt = VT_DISPATCH;
        return value;
    default:
        break;
    }
    if (type == VT_BSTR) {
        value.vt = VT_BSTR;
        value.bstrVal = SysAllocString(files[below(files.size())].c_str());
    } else if (type == VT_DISPATCH) {
        value.vt = VT_DISPATCH;
        value.pdispVal = object();
    } else if (type & VT_ARRAY) {
        return of_type(type);
    } else {
        value.vt = VT_I4;
    }
    return value;
}

HRESULT Values::answer(VARIANT& result)
{
    result = of_type(one_in(2) ? VARTYPE{VT_VARIANT} : one_of<VARTYPE>({VT_BSTR, VT_BOOL, VT_DISPATCH, VT_R8, VT_I2}));
    return S_OK;
}

Argument::Argument(Values& values, VARTYPE type, bool by_reference, bool harmless)
{
    content_ = harmless ? values.harmless(type) : values.of_type(values.one_in(4) ? static_cast<VARTYPE>(VT_VARIANT) : type);
    if ((content_.vt & VT_ARRAY) && content_.parray && values.one_in(8)) {
        special_ = content_.parray;
        features_ = special_->fFeatures;
        locked_ = values.one_in(2);
        if (locked_)
            SafeArrayLock(special_);
        else
            special_->fFeatures |= values.one_of({FADF_FIXEDSIZE, FADF_FIXEDSIZE | FADF_STATIC});
    }
    refer(values, by_reference);
    before_ = image_of(content_);
    passed_before_ = image_of(passed_);
    if (passed_.vt == (VT_BYREF | VT_VARIANT) && passed_.pvarVal == &between_)
        passed_before_ += image_of(between_);
}

/// By value, as a script's variable, as a typed variable, as a variable that leads to one, and in ways that lead nowhere.
void Argument::refer(Values& values, bool by_reference)
{
    const bool has_storage = content_.vt != VT_EMPTY && content_.vt != VT_NULL;
    const auto typed = [&](VARIANT& reference) {
        reference.vt = static_cast<VARTYPE>(VT_BYREF | content_.vt);
        if (content_.vt == VT_DECIMAL)
            reference.pdecVal = &content_.decVal;
        else if (content_.vt == VT_RECORD)
            reference.pvRecord = content_.pvRecord, reference.pRecInfo = content_.pRecInfo;
        else
            reference.byref = &content_.lVal;
    };
    const auto variable = [](VARIANT& reference, VARIANT& of) {
        reference.vt = VT_BYREF | VT_VARIANT;
        reference.pvarVal = &of;
    };
    switch (values.below(by_reference ? 8 : 40)) {
    case 0:
        if (has_storage && content_.vt != VT_RECORD)
            passed_.vt = static_cast<VARTYPE>(VT_BYREF | content_.vt); // to nothing
        else
            variable(passed_, between_), variable(between_, between_); // in a circle
        if (values.one_in(2))
            break;
        passed_ = {};
        passed_.vt = values.one_of<VARTYPE>({15, VT_VOID, VT_FILETIME, VT_BLOB, 4095, VT_BYREF, VT_BYREF | VT_NULL, VT_VECTOR});
        break;
    case 1:
    case 2:
    case 3:
        variable(passed_, content_);
        break;
    case 4:
    case 5:
        has_storage ? typed(passed_) : variable(passed_, content_);
        break;
    case 6:
        has_storage ? typed(between_) : variable(between_, content_);
        variable(passed_, between_);
        break;
    default:
        passed_ = content_;
    }
}

Argument::~Argument()
{
    if ((content_.vt & VT_ARRAY) && content_.parray == special_ && special_) {
        if (locked_)
            SafeArrayUnlock(special_);
        special_->fFeatures = features_;
    }
    VariantClear(&content_);
}

void Argument::change()
{
    const bool leads_to_content = passed_.vt == (VT_BYREF | VT_VARIANT) && passed_.pvarVal == &content_;
    if (leads_to_content && !special_ && SUCCEEDED(VariantClear(&content_)))
        changed_ = true;
}

void Argument::check(bool succeeded, bool may_change) const
{
    std::string passed = image_of(passed_);
    if (passed_.vt == (VT_BYREF | VT_VARIANT) && passed_.pvarVal == &between_)
        passed += image_of(between_);
    const bool by_value = !(passed_.vt & VT_BYREF);
    if (by_value || (!succeeded && !may_change))
        require(changed_ || image_of(content_) == before_,
                by_value ? "a value of the caller has changed" : "a failed call has changed a variable");
    require(changed_ || passed == passed_before_, "an argument itself has changed");
    if (content_.vt & VT_ARRAY && content_.parray) {
        VARTYPE type = VT_EMPTY;
        SafeArrayGetVartype(content_.parray, &type);
        require(content_.parray->cLocks == (locked_ && content_.parray == special_), "an array stays locked");
        const bool must_stay = special_ && (locked_ || ((passed_.vt | between_.vt) & VT_ARRAY)); // a Variant takes another one
        require(!must_stay || content_.parray == special_, "an array that must stay was replaced");
    }
    require(!(content_.vt & VT_BYREF), "a variable leads to another one");
    image_of(content_);
}

std::string Argument::description() const
{
    const bool leads = passed_.vt & VT_BYREF;
    return description_of(passed_) + (leads ? " -> " + description_of(content_) : "");
}
