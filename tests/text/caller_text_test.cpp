#include "text/qvCommon_text.h"

#include "automation/safe_array.h"
#include "support/dispatch_object.h"

#include <cwchar>

using automation::Ref;
using automation::Text;
using automation::Variant;

// A caller's text is lent for the call; the caller's code may run in the middle of it and give the variable another one. The
// characters of the former are overwritten here as the memory's next owner would.
namespace {

void overwrite(BSTR text)
{
    std::wmemset(text, L'?', SysStringLen(text));
}

} // namespace

TEST(CallersText, MayBeReplacedByAValueOfATemplate)
{
    const Text message{L"|1 and |2"};
    DispatchObject value{{}, [&](DISPID, const DISPPARAMS&, VARIANT* result) {
                             overwrite(message.get());
                             *result = Variant{1L}.release();
                             return S_OK;
                         }};
    Variant values = automation::new_array(VT_VARIANT, 2);
    {
        const automation::LockedArray<VARIANT> elements{values.parray};
        elements[0] = Variant{Ref<IDispatch>{&value}}.release();
        elements[1] = Variant{2L}.release();
    }
    EXPECT_EQ(qvCommon_text{}.Insert(message, values.parray), L"1 and 2");
}

TEST(CallersText, MayBeReplacedByTheCollectionItsNumbersGoTo)
{
    const Text text{L"12,345,6"};
    std::wstring added;
    DispatchObject collection{{L"Add", L"Count"}, [&](DISPID member, const DISPPARAMS& arguments, VARIANT* result) {
                                  if (member == 1)
                                      added.append(arguments.rgvarg[0].bstrVal).append(L";");
                                  else
                                      *result = Variant{3L}.release();
                                  overwrite(text.get());
                                  return S_OK;
                              }};
    EXPECT_EQ(qvCommon_text{}.GetNumbersFromStringCol(text, &collection), 3);
    EXPECT_EQ(added, L"12;345;6;");
}
