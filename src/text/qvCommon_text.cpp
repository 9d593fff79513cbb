#include "text/qvCommon_text.h"

#include "automation/client_object.h"
#include "automation/handle.h"
#include "automation/safe_array.h"
#include "messages/MErrors.h"
#include "text/message_template.h"
#include "text/numeric_text.h"
#include "text/short_text.h"

#include <vector>

using automation::Error;
using automation::LockedArray;
using automation::Runtime;
using automation::Text;
using automation::Variant;

namespace {

/// The texts of the values for a template. Where a value but the first has no text form, it takes that of the one before.
class ReplacementTexts {
public:
    void add(const VARIANT& value)
    {
        try {
            owners_.push_back(automation::to_text(value));
            texts_.push_back(owners_.back());
        } catch (const Error& error) {
            if (texts_.empty() || error.number() == static_cast<std::int32_t>(Runtime::OutOfMemory))
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

bool is_object(const VARIANT& value) noexcept
{
    return value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
}

} // namespace

std::wstring qvCommon_text::Insert(std::wstring_view sString, SAFEARRAY* vReplacements)
{
    const std::wstring own{sString}; // the code of an object among the values may change the caller's
    return text::expand(own, replacement_texts(vReplacements).texts());
}

long qvCommon_text::GetNumbersFromStringCol(std::wstring_view Str, IDispatch* colNumbers)
{
    const std::wstring own{Str}; // the collection's code may change the caller's
    const automation::Ref held{colNumbers};
    for (const std::wstring_view run : text::digit_runs(own, text::is_digit))
        automation::call(colNumbers, L"Add", {Variant{run}});
    return automation::converted(automation::get(colNumbers, L"Count"), VT_I4).lVal;
}

bool qvCommon_text::qvIsNumeric(std::wstring_view s, bool fMsgBox, std::wstring_view sCaption)
{
    const bool numeric = text::is_numeric(s);
    if (!numeric && fMsgBox)
        MErrors::ShowMessage(MErrors::LangStr(10011), sCaption, MB_ICONEXCLAMATION);
    return numeric;
}

bool qvCommon_text::ExistsInCol(IDispatch* Col, const VARIANT& Key, bool bolAsObject)
{
    return automation::or_default([&] {
        const Variant item = automation::get(Col, L"Item", {Variant{Key}});
        if (!bolAsObject && is_object(item))
            automation::default_value(item.punkVal); // which must be there
        return !bolAsObject || is_object(item);
    });
}

bool qvCommon_text::ObjTest(IDispatch* obj)
{
    return automation::or_default([&] { return SysStringLen(automation::to_text(automation::get(obj, L"Name")).get()) != 0; });
}

std::wstring qvCommon_text::GetShortText(long lhDc, std::wstring_view s, long Length, long lStyle)
{
    return text::shortened(automation::handle_from<HDC>(lhDc), s, Length, lStyle);
}
