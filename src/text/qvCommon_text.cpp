#include "frame/qvCommon.h"

#include "automation/client_object.h"
#include "automation/safe_array.h"
#include "frame/MErrors.h"
#include "text/leading_number.h"
#include "text/message_template.h"
#include "text/numeric_text.h"
#include "text/short_text.h"
#include "text/strings.h"

#include <vector>

using automation::answer;
using automation::Error;
using automation::LockedArray;
using automation::Runtime;
using automation::Text;
using automation::Variant;
using automation::view;

namespace {

/// The texts of the values for a template. Where a value but the first has no text form, it takes that of the one before.
class ReplacementTexts {
public:
    void add(const VARIANT& value)
    {
        try {
            owners_.push_back(automation::to_text(value));
            texts_.push_back(owners_.back());
        } catch (const std::exception&) {
            if (texts_.empty())
                throw;
            texts_.push_back(texts_.back());
        }
    }

    /// Adds all elements of an array with one dimension, of any type and with any lower bound.
    void add_elements(const VARIANT& value)
    {
        SAFEARRAY& array = automation::readable_array(value);
        if (array.cDims != 1)
            throw Error{Runtime::SubscriptOutOfRange};
        const VARTYPE type = automation::element_type(value);
        const LockedArray<std::byte> elements{&array};
        std::byte* place = elements.begin();
        for (std::size_t i = 0; i < elements.size(); ++i, place += array.cbElements)
            add(element(place, type));
    }

    const std::vector<std::wstring_view>& texts() const noexcept { return texts_; }

private:
    /// An element in its place in the array.
    static VARIANT element(void* place, VARTYPE type) noexcept
    {
        VARIANT reference{};
        reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
        reference.byref = place;
        return reference;
    }

    std::vector<Text> owners_;
    std::vector<std::wstring_view> texts_;
};

/// The values of a call: all of them, or the elements of the only one when that is an array.
ReplacementTexts replacement_texts(SAFEARRAY* values)
{
    ReplacementTexts texts;
    const LockedArray<const VARIANT> given{values};
    if (given.size() == 1) {
        const VARIANT& only = automation::followed(given[0]);
        if (automation::is_missing(only))
            return texts;
        if (only.vt & VT_ARRAY) {
            texts.add_elements(only);
            return texts;
        }
    }
    for (const VARIANT& value : given)
        texts.add(value);
    return texts;
}

std::wstring expanded(BSTR message, SAFEARRAY* values)
{
    const std::wstring own{view(message)}; // the code of an object among the values may change the caller's
    return text::expand(own, replacement_texts(values).texts());
}

long add_numbers(BSTR text, IDispatch* collection)
{
    const std::wstring own{view(text)}; // the collection's code may change the caller's
    const automation::Ref held{collection};
    for (const std::wstring_view run : text::digit_runs(own, text::is_digit))
        automation::call(collection, L"Add", {Variant{run}});
    return automation::converted(automation::get(collection, L"Count"), VT_I4).lVal;
}

void tell_that_no_number(BSTR caption)
{
    MErrors::ShowMessage(MErrors::LangStr(10011), view(caption), MB_ICONEXCLAMATION);
}

bool is_object(const VARIANT& value) noexcept
{
    return value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
}

bool item_exists(IDispatch* collection, const VARIANT& key, bool as_object)
{
    const Variant item = automation::get(collection, L"Item", {Variant{key}});
    if (!as_object && is_object(item))
        automation::default_value(item.punkVal); // which must be there
    return !as_object || is_object(item);
}

bool has_name(IDispatch* object)
{
    return !view(automation::to_text(automation::get(object, L"Name")).get()).empty();
}

/// For the members that never raise: what `test` says, false when it fails.
template <class Test>
bool holds(Test&& test) noexcept
{
    try {
        return test();
    } catch (...) {
        return false;
    }
}

} // namespace

HRESULT qvCommon::Insert(BSTR sString, SAFEARRAY* vReplacements, BSTR* result) noexcept
{
    return answer(result, [&] { return expanded(sString, vReplacements); });
}

HRESULT qvCommon::Ins(BSTR sString, SAFEARRAY* vReplacements, BSTR* result) noexcept
{
    return answer(result, [&] { return expanded(sString, vReplacements); });
}

HRESULT qvCommon::StringCut(BSTR s, BSTR CutString, short intSpace, BSTR* result) noexcept
{
    return answer(result, [&] { return text::StringCut(view(s), view(CutString), intSpace); });
}

HRESULT qvCommon::AnCD(BSTR StringNotInQuotationMarks, BSTR* result) noexcept
{
    return answer(result, [&] { return text::in_quotation_marks(view(StringNotInQuotationMarks)); });
}

HRESULT qvCommon::StrToNum(BSTR sStr, VARIANT* result) noexcept
{
    return answer(result, [&] { return Variant{text::leading_number(view(sStr))}; });
}

HRESULT qvCommon::StrToBOOL(BSTR sStr, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return text::StrToBOOL(view(sStr)); });
}

HRESULT qvCommon::GetNumbersFromStringCol(BSTR Str, IDispatch* colNumbers, long* result) noexcept
{
    return answer(result, [&] { return add_numbers(Str, colNumbers); });
}

HRESULT qvCommon::qvIsNumeric(BSTR s, VARIANT_BOOL fMsgBox, BSTR sCaption, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] {
        const bool numeric = text::is_numeric(view(s));
        if (!numeric && fMsgBox)
            tell_that_no_number(sCaption);
        return numeric;
    });
}

HRESULT qvCommon::qvTrimL(BSTR s, BSTR* result) noexcept
{
    return answer(result, [&] { return text::qvTrimL(view(s)); });
}

HRESULT qvCommon::qvTrimR(BSTR s, BSTR* result) noexcept
{
    return answer(result, [&] { return text::qvTrimR(view(s)); });
}

HRESULT qvCommon::qvTrim(BSTR s, BSTR* result) noexcept
{
    return answer(result, [&] { return text::qvTrim(view(s)); });
}

HRESULT qvCommon::ExistsInCol(IDispatch* Col, VARIANT Key, VARIANT_BOOL bolAsObject, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return holds([&] { return item_exists(Col, Key, bolAsObject != VARIANT_FALSE); }); });
}

HRESULT qvCommon::ObjTest(IDispatch* obj, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return holds([&] { return has_name(obj); }); });
}

HRESULT qvCommon::GetShortText(long lhDc, BSTR s, long Length, long lStyle, BSTR* result) noexcept
{
    return answer(result, [&] {
        return text::shortened(reinterpret_cast<HDC>(static_cast<LONG_PTR>(lhDc)), view(s), Length, lStyle);
    });
}
