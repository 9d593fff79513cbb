#include "automation/client_object.h"
#include "automation/error.h"
#include "support/dispatch_object.h"

#include <optional>

namespace {

/// How a client's object fails.
struct Failing {
    HRESULT result = DISP_E_EXCEPTION;
    WORD number = 0;
    HRESULT code = 0;
    const wchar_t* text = nullptr;
    bool tells_later = false;
};

/// An object whose member fails.
class Culprit final : public DispatchObject {
public:
    explicit Culprit(const Failing& failing) : DispatchObject{{L"Add"}, {}} { failing_ = failing; }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO* exception, UINT*) override
    {
        if (failing_.tells_later)
            exception->pfnDeferredFillIn = tell;
        else if (failing_.result == DISP_E_EXCEPTION)
            tell(exception);
        return failing_.result;
    }

private:
    static HRESULT STDMETHODCALLTYPE tell(EXCEPINFO* exception)
    {
        exception->wCode = failing_.number;
        exception->scode = failing_.code;
        exception->bstrDescription = SysAllocString(failing_.text);
        return S_OK;
    }

    static inline Failing failing_;
};

/// The number and the text of the error that reaches the library.
std::pair<int, std::wstring> raised(const Failing& failing)
{
    Culprit culprit{failing};
    try {
        automation::call(&culprit, L"Add");
    } catch (const automation::Error& error) {
        return {error.number(), error.description()};
    }
    return {};
}

using Told = std::pair<int, std::wstring>;

} // namespace

TEST(ClientObject, FailuresHaveANumberAndAText)
{
    EXPECT_EQ(raised({DISP_E_BADPARAMCOUNT}), (Told{450, L"Wrong number of arguments or invalid property assignment"}));
    EXPECT_EQ(raised({DISP_E_PARAMNOTOPTIONAL}), (Told{449, L"Argument not optional"}));
    EXPECT_EQ(raised({DISP_E_PARAMNOTFOUND}), (Told{448, L"Named argument not found"}));
    EXPECT_EQ(raised({DISP_E_NONAMEDARGS}), (Told{446, L"Object doesn't support named arguments"}));
    EXPECT_EQ(raised({DISP_E_MEMBERNOTFOUND}), (Told{438, L"Object doesn't support this property or method"}));
    EXPECT_EQ(raised({DISP_E_DIVBYZERO}), (Told{11, L"Division by zero"}));
    EXPECT_EQ(raised({static_cast<HRESULT>(0x800A0009)}), (Told{9, L"Subscript out of range"})) << "a number by way of a code";
    EXPECT_EQ(raised({static_cast<HRESULT>(0x800A1234)}), (Told{0x1234, L"Application-defined or object-defined error"}));
    EXPECT_EQ(raised({static_cast<HRESULT>(0x80041234)}), (Told{static_cast<int>(0x80041234), L"Automation error"}));
    EXPECT_FALSE(raised({E_ACCESSDENIED}).second.empty()) << "the system's own text";
}

TEST(ClientObject, ErrorsItRaisesAreCompleted)
{
    constexpr HRESULT raises = DISP_E_EXCEPTION;
    EXPECT_EQ(raised({raises, 57, E_FAIL, L"mine"}), (Told{57, L"mine"})) << "its own number goes first";
    EXPECT_EQ(raised({raises, 61, 0, nullptr}), (Told{61, L"Disk full"}));
    EXPECT_EQ(raised({raises, 0, DISP_E_TYPEMISMATCH, nullptr}), (Told{13, L"Type mismatch"}));
    EXPECT_EQ(raised({raises, 0, static_cast<HRESULT>(0x800A0035), L""}), (Told{53, L"File not found"}));
    EXPECT_EQ(raised({raises, 0, static_cast<HRESULT>(0x80041234), L"mine"}), (Told{static_cast<int>(0x80041234), L"mine"}));
    EXPECT_EQ(raised({raises, 0, 0, nullptr}), (Told{440, L"Automation error"})) << "it says nothing";
    EXPECT_EQ(raised({raises, 0, static_cast<HRESULT>(0x800A0006), L"late", true}), (Told{6, L"late"}));
}

TEST(ClientObject, ItemsComeFromItemOrFromTheDefaultMember)
{
    const auto tell_member = [](DISPID member, const DISPPARAMS& arguments, VARIANT* result) {
        *result = automation::Variant{long{member * 10 + arguments.rgvarg[0].lVal}}.release();
        return S_OK;
    };
    DispatchObject with_item{{L"Count", L"Item"}, tell_member}, without{{L"Count"}, tell_member};
    const automation::Variant third{3L};
    EXPECT_EQ(automation::item(&with_item, third).lVal, 23);
    EXPECT_EQ(automation::item(&without, third).lVal, 3);
    EXPECT_THROW(automation::item(nullptr, third), automation::Error);
}
