#include "server/identities.h"
#include "support/client.h"

#include <ocidl.h>

using client::Object;
using identities::guid;

namespace {

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

    /// Whether an object has this interface.
    static bool has(IUnknown* object, const GUID& id)
    {
        IUnknown* face = nullptr;
        object->QueryInterface(id, reinterpret_cast<void**>(&face));
        if (face)
            face->Release();
        return face;
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
        SCOPED_TRACE(identities::narrow(program));
        IUnknown* made = nullptr;
        CLSID registered{};
        if (expected.instancing == identities::NotCreatable) {
            EXPECT_NE(CLSIDFromProgID(program.c_str(), &registered), S_OK);
            EXPECT_EQ(get_class_object(guid(expected.id), IID_IClassFactory, reinterpret_cast<void**>(&made)),
                      CLASS_E_CLASSNOTAVAILABLE);
            continue;
        }
        const Object object = Object::create(program.c_str());
        EXPECT_EQ(CLSIDFromProgID(program.c_str(), &registered), S_OK);
        EXPECT_EQ(registered, guid(expected.id));
        EXPECT_TRUE(has(object.dispatch(), guid(expected.face)));
        ASSERT_EQ(has(object.dispatch(), IID_IConnectionPointContainer), expected.events != nullptr);
        if (!expected.events)
            continue;
        IConnectionPointContainer* container = nullptr;
        IConnectionPoint* point = nullptr;
        object.dispatch()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container));
        EXPECT_EQ(container->FindConnectionPoint(guid(expected.events), &point), S_OK);
        if (point)
            point->Release();
        container->Release();
    }
}

TEST_F(ClassTable, RegistrationWritesTheNamesOfTheClassesInAnyCodePage)
{
    ASSERT_EQ(entry<HRESULT(STDAPICALLTYPE*)()>("DllRegisterServer")(), S_OK);
    for (const identities::Class& expected : identities::classes) {
        if (expected.instancing == identities::NotCreatable)
            continue;
        const std::wstring program = std::wstring{L"qvObjects."} + expected.name;
        wchar_t written[64] = L"";
        DWORD size = sizeof written;
        RegGetValueW(HKEY_CLASSES_ROOT, (L"CLSID\\{" + std::wstring{expected.id} + L"}\\ProgID").c_str(), nullptr, RRF_RT_REG_SZ, nullptr,
                     written, &size);
        EXPECT_EQ(written, program);
        CLSID registered{};
        EXPECT_EQ(CLSIDFromProgID(program.c_str(), &registered), S_OK);
        EXPECT_EQ(registered, guid(expected.id)) << identities::narrow(program);
    }
}

TEST_F(ClassTable, ObjectsAnswerForEveryFormerIdentifierOfTheirClassOnly)
{
    for (const identities::FormerInterfaces& former : identities::former_interfaces) {
        SCOPED_TRACE(identities::narrow(former.name));
        Object object;
        if (former.name == L"qvIniSection" || former.name == L"qvIniParameter") { // which only the file gives
            object = Object::create(L"qvObjects.qvIniFile").object(L"Section", {L"Main"});
            if (former.name == L"qvIniParameter")
                object = object.object(L"Parameter", {L"p"});
        } else {
            object = Object::create((L"qvObjects." + former.name).c_str());
        }
        for (const wchar_t* const id : former.ids) {
            EXPECT_TRUE(has(object.dispatch(), guid(id))) << identities::narrow(id);
            EXPECT_EQ(has(keeps_it_loaded.dispatch(), guid(id)), former.name == L"qvCommon");
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
    const auto get_class_object = entry<GetClassObject>("DllGetClassObject");
    get_class_object(guid(identities::classes[0].id), IID_IClassFactory, reinterpret_cast<void**>(&factory));
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
