#include "automation/class_factory.h"
#include "automation/specimen.h"

using automation::query;
using automation::Ref;

namespace {

class Objects : public testing::Test {
protected:
    client::Apartment apartment;
};

/// After every test of this program.
class NothingLeft : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo&) override { EXPECT_EQ(automation::module::held(), 0) << "objects are left"; }
};

[[maybe_unused]] const bool listens = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new NothingLeft);
    return true;
}();

constexpr IID former_specimen{0x7B1E0A57, 0x6B1B, 0x4F0B, {0x8C, 0x76, 0x0F, 0x6B, 0x7A, 0x3C, 0x9D, 0x10}};

} // namespace

TEST_F(Objects, AnswerForTheirInterfacesAndTheirFormerIdentifiers)
{
    const auto made = automation::make<Specimen>();
    IUnknown* const object = made->unknown();
    Ref<_Specimen> current, former;
    ASSERT_EQ(object->QueryInterface(__uuidof(_Specimen), current.put_void()), S_OK);
    ASSERT_EQ(object->QueryInterface(former_specimen, former.put_void()), S_OK);
    EXPECT_EQ(former.get(), current.get());
    EXPECT_EQ(query<IUnknown>(current.get()).get(), query<IUnknown>(query<ISupportErrorInfo>(object).get()).get()) << "one identity";
    EXPECT_EQ(query<ISupportErrorInfo>(object)->InterfaceSupportsErrorInfo(former_specimen), S_OK);
    EXPECT_EQ(query<ISupportErrorInfo>(object)->InterfaceSupportsErrorInfo(IID_IUnknown), S_FALSE);
    EXPECT_FALSE(query<IMarshal>(object));
    EXPECT_EQ(automation::own<Specimen>(object).get(), made.get());

    Ref<IUnknown> mark; // as the platform asks for it when it looks for a way into another apartment
    ASSERT_EQ(object->QueryInterface(automation::Mark::identifier(), mark.put_void()), S_OK);
    EXPECT_EQ(query<IUnknown>(mark.get()).get(), query<IUnknown>(object).get());
}

TEST_F(Objects, TellTheirClass)
{
    const auto made = automation::make<Specimen>();
    const auto information = query<IProvideClassInfo2>(made->unknown());
    Ref<ITypeInfo> info;
    ASSERT_EQ(information->GetClassInfo(info.put()), S_OK);
    TYPEATTR* attributes = nullptr;
    info->GetTypeAttr(&attributes);
    EXPECT_EQ(attributes->guid, __uuidof(Specimen));
    info->ReleaseTypeAttr(attributes);
    GUID events{};
    EXPECT_EQ(information->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
    EXPECT_EQ(events, __uuidof(__Specimen));
    EXPECT_EQ(information->GetGUID(4711, &events), E_INVALIDARG);
}

TEST_F(Objects, AreMadeByTheFactoryOfTheirClass)
{
    automation::ClassFactory table[]{automation::factory_of<Specimen>()};
    Ref<IClassFactory> factory;
    EXPECT_EQ(automation::get_class_object(table, IID_IDispatch, IID_IClassFactory, factory.put_void()), CLASS_E_CLASSNOTAVAILABLE);
    ASSERT_EQ(automation::get_class_object(table, __uuidof(Specimen), IID_IClassFactory, factory.put_void()), S_OK);
    Ref<IDispatch> object;
    EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, object.put_void()), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IStream, object.put_void()), E_NOINTERFACE);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, object.put_void()), S_OK);
    factory->LockServer(TRUE);
    object = nullptr;
    factory = nullptr;
    EXPECT_EQ(automation::module::held(), 1) << "the lock is left";
    automation::module::let_go();
}

TEST_F(Objects, MeetANullPointerWithAResultCode)
{
    const auto made = automation::make<Specimen>();
    EXPECT_EQ(made->face<_Specimen>()->Twice(1, nullptr), E_POINTER);
    EXPECT_EQ(made->unknown()->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(made->face<_Specimen>()->GetIDsOfNames(IID_NULL, nullptr, 1, 0, nullptr), E_INVALIDARG);
    EXPECT_EQ(made->face<_Specimen>()->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(made->face<_Specimen>()->Double(nullptr), static_cast<HRESULT>(0x800A0005)) << "by reference";
    BSTR text = nullptr;
    EXPECT_EQ(made->face<_Specimen>()->get_Value(nullptr, &text), S_OK) << "a null text is an empty one";
    SysFreeString(text);
}

TEST_F(Objects, LeaveErrorInformationForCompiledClients)
{
    const auto made = automation::make<Specimen>();
    long reached = 0;
    EXPECT_EQ(made->face<_Specimen>()->Fail(13, &reached), static_cast<HRESULT>(0x800A000D));
    Ref<IErrorInfo> information;
    ASSERT_EQ(GetErrorInfo(0, information.put()), S_OK);
    BSTR text = nullptr;
    information->GetDescription(&text);
    EXPECT_EQ(std::wstring_view{text}, L"Beschreibung \u00fc");
    SysFreeString(text);
}
