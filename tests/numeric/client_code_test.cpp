#include "server/qvCommon.h"
#include "numeric/appended_columns.h"
#include "numeric/array_extrema.h"
#include "numeric/array_sorting.h"
#include "numeric/elements.h"
#include "numeric/empty_rows.h"
#include "numeric/qvMath.h"
#include "numeric/table_products.h"
#include "numeric/transposition.h"
#include "numeric/variant_arithmetic.h"
#include "support/dispatch_object.h"
#include "support/error_of.h"

#include <cwchar>

using automation::Ref;
using automation::Variant;
using numeric::Elements;
using numeric::End;

namespace {

/// A list of an object and a text. The object's code gives the text's place a copy of it while it is asked for its value, and
/// overwrites the characters of the former as the memory's next owner would.
class ObjectBesideText {
public:
    ObjectBesideText(std::wstring_view value, std::wstring_view text, bool object_first)
        : text_place_{object_first ? 1u : 0u}, object_{{}, [=, this](DISPID, const DISPPARAMS&, VARIANT* result) {
                                                           replace_text();
                                                           *result = Variant{value}.release();
                                                           return S_OK;
                                                       }}
    {
        const Elements elements{list_};
        elements.replace(1 - text_place_, Variant{Ref<IDispatch>{&object_}});
        elements.replace(text_place_, Variant{text});
    }
    ~ObjectBesideText() { EXPECT_EQ(list_.parray->cLocks, 0u); }

    const VARIANT& list() const { return list_; }
    bool begins_with_object() const { return Elements{list_}[0].vt == VT_DISPATCH; }

private:
    void replace_text()
    {
        VARIANT& place = static_cast<VARIANT*>(list_.parray->pvData)[text_place_];
        if (former_.vt == VT_BSTR || place.vt != VT_BSTR)
            return;
        former_ = Variant{automation::view(place.bstrVal)};
        std::swap(former_.bstrVal, place.bstrVal);
        std::wmemset(former_.bstrVal, L'0', SysStringLen(former_.bstrVal));
    }

    std::size_t text_place_;
    DispatchObject object_;
    Variant former_, list_ = automation::new_array(VT_VARIANT, 2);
};

/// An array by hand whose bounds promise more than memory can hold.
class Huge {
public:
    explicit Huge(VARTYPE type) : array_{automation::new_array(type, std::size_t{4})}
    {
        SafeArrayAllocDescriptorEx(type, 2, &huge_);
        huge_->rgsabound[0] = {0x10000, 0};
        huge_->rgsabound[1] = {0x10001, 0};
        huge_->pvData = array_.parray->pvData;
        value_.vt = static_cast<VARTYPE>(VT_ARRAY | type);
        value_.parray = huge_;
    }
    ~Huge()
    {
        EXPECT_EQ(huge_->cLocks, 0u);
        SafeArrayDestroyDescriptor(huge_);
    }
    const VARIANT& value() const { return value_; }

private:
    Variant array_;
    SAFEARRAY* huge_ = nullptr;
    VARIANT value_{};
};

} // namespace

TEST(ClientCode, MayReplaceATextBesideItsObject)
{
    for (const bool object_first : {false, true}) {
        const ObjectBesideText sorted{L"c", L"d", object_first}, searched{L"c", L"d", object_first},
            multiplied{L"2", L"3", object_first}, subtracted{L"2", L"3", object_first};
        numeric::sort(sorted.list());
        EXPECT_TRUE(sorted.begins_with_object());
        EXPECT_EQ(numeric::extreme(searched.list(), End::Greatest).vt, VT_BSTR);
        const Elements factors{multiplied.list()}, terms{subtracted.list()};
        EXPECT_EQ(numeric::to_double(numeric::product(factors[0], factors[1])), 6);
        EXPECT_EQ(numeric::to_double(numeric::difference(terms[0], terms[1])), object_first ? -1 : 1);
    }
}

TEST(ClientsArray, ThatPromisesMoreThanMemoryIsRefused)
{
    for (const VARTYPE type : {VT_UI1, VT_R8, VT_VARIANT, VT_BSTR}) {
        const Huge huge{type};
        const Variant one{1.0};
        VARIANT texts = huge.value();
        EXPECT_EQ(error_of([&] { numeric::sort(huge.value()); }), 7);
        EXPECT_EQ(error_of([&] { numeric::sort_records(huge.value(), 0, false); }), 7);
        EXPECT_EQ(error_of([&] { numeric::min_max(huge.value(), false); }), 7);
        EXPECT_EQ(error_of([&] { numeric::extreme(huge.value(), End::Least); }), 7);
        EXPECT_EQ(error_of([&] { numeric::absolute_extreme(huge.value(), End::Greatest); }), 7);
        EXPECT_EQ(error_of([&] { numeric::transposed(huge.value()); }), 7);
        EXPECT_EQ(error_of([&] { numeric::multiplied(huge.value(), one); }), 7);
        EXPECT_EQ(error_of([&] { numeric::remove_empty_rows(texts, nullptr); }), 7);
        numeric::append_columns(huge.value(), huge.value()); // which never raises
    }
}

TEST(ClientsArray, WithAResultBeyondMemoryIsRefused)
{
    // Two Variants a row: 2^32 bytes and 64 more. The elements are never looked at.
    Variant bytes = automation::new_array(VT_UI1, std::size_t{16});
    SAFEARRAY* table = nullptr;
    SafeArrayAllocDescriptorEx(VT_UI1, 2, &table);
    table->rgsabound[0] = {1, 0};
    table->rgsabound[1] = {0x8000002, 0};
    table->pvData = bytes.parray->pvData;
    VARIANT value{};
    value.vt = VT_ARRAY | VT_UI1;
    value.parray = table;
    EXPECT_EQ(error_of([&] { numeric::min_max(value, false); }), 7);
    SafeArrayDestroyDescriptor(table);
}

TEST(ClientsArgument, ThatIsANullPointerIsAnErrorOnlyWhereAValueIsNeeded)
{
    const Ref<_qvCommon> common = automation::make<qvCommon>();
    const Ref<_qvMath> math = automation::make<qvMath>();
    Variant number{2.0}, result;
    VARIANT_BOOL flag = VARIANT_TRUE;
    long count = 1;
    EXPECT_EQ(common->BoundTest(nullptr, &flag), S_OK);
    EXPECT_EQ(flag, VARIANT_FALSE);
    EXPECT_EQ(common->ArrayDim(nullptr, &count), S_OK);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(common->Sort(nullptr, &result), static_cast<HRESULT>(0x800A0005));
    EXPECT_EQ(math->AddVektor(nullptr, &number, &result), S_OK);
    EXPECT_EQ(math->AddVektor(&number, nullptr, &result), S_OK);
    EXPECT_EQ(math->CheckData(&number, nullptr, &count), static_cast<HRESULT>(0x800A000D)) << "no table, and no objects needed";
}
