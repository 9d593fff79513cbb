#include "frame/identities.h"
#include "support/client.h"

#include <qvObjects.h>

#include <set>

using client::Object;
using client::Value;

namespace {

GUID guid(const wchar_t* text)
{
    GUID guid{};
    EXPECT_EQ(CLSIDFromString(text, &guid), S_OK);
    return guid;
}

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();

class ClassTable : public testing::Test {
protected:
    template <class Function>
    static Function entry(const char* name)
    {
        const auto function = GetProcAddress(GetModuleHandleW(L"qvObjects.dll"), name);
        EXPECT_TRUE(function);
        return reinterpret_cast<Function>(reinterpret_cast<void*>(function));
    }

    client::Apartment apartment;
    Object keeps_it_loaded = Object::create(L"qvObjects.qvCommon");
};

} // namespace

TEST_F(ClassTable, ClassesAreMadeOrNotAsTheirInstancingSays)
{
    const auto get_class_object = entry<GetClassObject>("DllGetClassObject");
    for (const identities::Class& expected : identities::classes) {
        const std::wstring program = std::wstring{L"qvObjects."} + expected.name;
        SCOPED_TRACE(std::string(program.begin(), program.end()));
        IUnknown* made = nullptr;
        if (expected.instancing == identities::Instancing::NotCreatable) {
            CLSID id{};
            EXPECT_NE(CLSIDFromProgID(program.c_str(), &id), S_OK);
            EXPECT_EQ(get_class_object(guid(expected.id), IID_IClassFactory, reinterpret_cast<void**>(&made)), CLASS_E_CLASSNOTAVAILABLE);
            continue;
        }
        CLSID registered{};
        EXPECT_EQ(CLSIDFromProgID(program.c_str(), &registered), S_OK);
        EXPECT_EQ(registered, guid(expected.id));
        ASSERT_EQ(CoCreateInstance(registered, nullptr, CLSCTX_INPROC_SERVER, guid(expected.face), reinterpret_cast<void**>(&made)), S_OK);
        IConnectionPointContainer* container = nullptr;
        EXPECT_EQ(made->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)) == S_OK, expected.events != nullptr);
        if (container) {
            IConnectionPoint* point = nullptr;
            EXPECT_EQ(container->FindConnectionPoint(guid(expected.events), &point), S_OK);
            if (point)
                point->Release();
            container->Release();
        }
        made->Release();
    }
}

TEST_F(ClassTable, ObjectsAnswerForEveryFormerIdentifierOfTheirClassOnly)
{
    for (const identities::Alias& alias : identities::aliases) {
        const std::wstring full = alias.name;
        const std::wstring name = full.substr(0, full.find(L"___"));
        SCOPED_TRACE(std::string(full.begin(), full.end()));
        CLSID id{};
        if (FAILED(CLSIDFromProgID((L"qvObjects." + name).c_str(), &id)))
            continue; // no client creates it; it is met in the tests of its folder
        IUnknown *object = nullptr, *former = nullptr;
        ASSERT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, reinterpret_cast<void**>(&object)), S_OK);
        EXPECT_EQ(object->QueryInterface(guid(alias.id), reinterpret_cast<void**>(&former)), S_OK);
        object->Release();
        if (former) {
            IDispatch* foreign = nullptr;
            EXPECT_EQ(keeps_it_loaded.dispatch()->QueryInterface(guid(alias.id), reinterpret_cast<void**>(&foreign)) == S_OK, name == L"qvCommon");
            if (foreign)
                foreign->Release();
            former->Release();
        }
    }
}

TEST_F(ClassTable, TheLibraryStaysAsLongAsAnythingOfItLives)
{
    const auto can_unload = entry<CanUnloadNow>("DllCanUnloadNow");
    const HMODULE library = LoadLibraryW(L"qvObjects.dll");
    ASSERT_TRUE(library);
    EXPECT_EQ(can_unload(), S_FALSE);
    IClassFactory* factory = nullptr;
    entry<GetClassObject>("DllGetClassObject")(guid(identities::classes[0].id), IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->LockServer(TRUE);
    keeps_it_loaded = Object{};
    EXPECT_EQ(can_unload(), S_FALSE);
    factory->LockServer(FALSE);
    factory->Release();
    EXPECT_EQ(can_unload(), S_OK);
    FreeLibrary(library);
}

TEST_F(ClassTable, TheLibraryCanBeUnloadedAndLoadedAgain)
{
    keeps_it_loaded = Object{};
    for (int round = 0; round < 3; ++round) {
        CoFreeUnusedLibrariesEx(0, 0);
        CoFreeUnusedLibrariesEx(0, 0);
        const Object common = Object::create(L"qvObjects.qvCommon");
        EXPECT_EQ(common.call(L"qvTrim", {L" x "}).text(), L"x");
    }
}
