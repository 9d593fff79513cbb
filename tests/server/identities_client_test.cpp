// What clients were compiled against: the type library, and the classes that are registered.
#include "support/client.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>

using client::Object;

namespace {

GUID guid(const wchar_t* digits)
{
    GUID guid{};
    EXPECT_EQ(CLSIDFromString(digits, &guid), S_OK);
    return guid;
}

std::wstring digits(const GUID& guid)
{
    wchar_t text[40];
    return {text, static_cast<std::size_t>(StringFromGUID2(guid, text, 40)) - 1};
}

std::string narrow(const std::wstring& text)
{
    return {text.begin(), text.end()};
}

/// A type of the library with what a browser shows of it.
class Type {
public:
    explicit Type(ITypeInfo* info) : info_{info, [](ITypeInfo* held) { held->Release(); }}
    {
        TYPEATTR* attributes = nullptr;
        info->GetTypeAttr(&attributes);
        attributes_ = *attributes;
        info->ReleaseTypeAttr(attributes);
        client::Value text = client::Value::of_type(VT_BSTR);
        info->GetDocumentation(MEMBERID_NIL, &text.bstrVal, nullptr, nullptr, nullptr);
        name = text.text();
    }

    ITypeInfo* operator->() const { return info_.get(); }
    const TYPEATTR& attributes() const { return attributes_; }
    bool has(WORD flags) const { return (attributes_.wTypeFlags & flags) == flags; }
    /// The help text of a member, or of the type itself.
    std::wstring help(MEMBERID id = MEMBERID_NIL) const
    {
        client::Value text = client::Value::of_type(VT_BSTR);
        info_->GetDocumentation(id, nullptr, &text.bstrVal, nullptr, nullptr);
        return text.text();
    }
    INT use(UINT index) const
    {
        INT flags = 0;
        EXPECT_EQ(info_->GetImplTypeFlags(index, &flags), S_OK);
        return flags;
    }
    Type implemented(UINT index) const
    {
        HREFTYPE reference = 0;
        info_->GetRefTypeOfImplType(index, &reference);
        return referred(reference);
    }
    Type referred(HREFTYPE reference) const
    {
        ITypeInfo* info = nullptr;
        EXPECT_EQ(info_->GetRefTypeInfo(reference, &info), S_OK);
        return Type{info};
    }

    std::wstring name;

private:
    std::shared_ptr<ITypeInfo> info_;
    TYPEATTR attributes_;
};

class TypeLibrary : public testing::Test {
protected:
    TypeLibrary()
    {
        EXPECT_EQ(LoadRegTypeLib(guid(L"{B713A6BC-B922-11D1-B817-0020182C2F2F}"), 1, 79, 0x409, &library), S_OK);
        for (UINT i = 0; library && i < library->GetTypeInfoCount(); ++i) {
            ITypeInfo* info = nullptr;
            library->GetTypeInfo(i, &info);
            Type type{info};
            types.emplace(type.name, std::move(type));
        }
    }
    ~TypeLibrary() override
    {
        types.clear();
        if (library)
            library->Release();
    }

    /// Every class with its interfaces and how it uses them, and every former identifier of one, a line each.
    std::wstring identities() const
    {
        std::wstring all;
        for (const auto& [name, type] : types) {
            const TYPEATTR& attributes = type.attributes();
            if (attributes.typekind == TKIND_ALIAS) {
                const std::wstring hidden = type.has(TYPEFLAG_FHIDDEN) ? L" hidden " : L" shown ";
                all += name + digits(attributes.guid) + hidden + type.referred(attributes.tdescAlias.hreftype).name + L"\n";
            } else if (attributes.typekind == TKIND_COCLASS) {
                all += name + digits(attributes.guid) + (type.has(TYPEFLAG_FCANCREATE) ? L" creatable" : L"")
                     + (type.has(TYPEFLAG_FAPPOBJECT) ? L" global" : L"");
                for (UINT i = 0; i < attributes.cImplTypes; ++i) {
                    const Type face = type.implemented(i);
                    all += L" " + std::to_wstring(type.use(i)) + L":" + face.name + digits(face.attributes().guid);
                }
                all += L"\n";
            }
        }
        return all;
    }

    client::Apartment apartment;
    ITypeLib* library = nullptr;
    std::map<std::wstring, Type> types;
};

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
using EntryPoint = HRESULT(STDAPICALLTYPE*)();

class ClassTable : public TypeLibrary {
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

    Object keeps_it_loaded = Object::create(L"qvObjects.qvCommon");
};

} // namespace

TEST_F(TypeLibrary, IsWhatClientsWereCompiledAgainst)
{
    ASSERT_TRUE(library);
    TLIBATTR* attributes = nullptr;
    library->GetLibAttr(&attributes);
    EXPECT_EQ(attributes->lcid, 0x409u);
    EXPECT_EQ(attributes->syskind, SYS_WIN32);
    library->ReleaseTLibAttr(attributes);
    client::Value name = client::Value::of_type(VT_BSTR);
    library->GetDocumentation(MEMBERID_NIL, &name.bstrVal, nullptr, nullptr, nullptr);
    EXPECT_EQ(name.text(), L"qvObjects");
}

TEST_F(TypeLibrary, KeepsTheIdentitiesOfItsClassesAndInterfaces)
{
    const std::wstring all = identities();
    std::uint64_t digest = 0xCBF29CE484222325;
    for (const wchar_t letter : all)
        digest = (digest ^ letter) * 0x100000001B3;
    // A class that is new has another digest; one that has been delivered keeps its line of these.
    EXPECT_EQ(digest, 0xCA4D0EF87C819572u) << narrow(all);
}

TEST_F(TypeLibrary, LetsCompiledClientsAndBrowsersUseEveryClass)
{
    for (const auto& [name, type] : types) {
        if (type.attributes().typekind != TKIND_COCLASS)
            continue;
        const Type face = type.implemented(0), table = face.implemented(static_cast<UINT>(-1)); // as compiled clients see it
        EXPECT_TRUE(face.has(TYPEFLAG_FDUAL | TYPEFLAG_FHIDDEN | TYPEFLAG_FNONEXTENSIBLE)) << narrow(name);
        EXPECT_TRUE(table.has(TYPEFLAG_FOLEAUTOMATION)) << narrow(name);
    }
}

TEST_F(TypeLibrary, ExplainsEveryClassMemberAndEnumeration)
{
    for (const auto& [name, type] : types) {
        SCOPED_TRACE(narrow(name));
        if (type.attributes().typekind != TKIND_ALIAS) {
            EXPECT_NE(type.help(), L"");
        }
        if (type.attributes().typekind != TKIND_DISPATCH)
            continue;
        for (UINT i = 0; i < type.attributes().cFuncs; ++i) {
            FUNCDESC* function = nullptr;
            type->GetFuncDesc(i, &function);
            if (function->memid < 0x60000000) { // not one of IDispatch itself
                EXPECT_NE(type.help(function->memid), L"") << "member " << function->memid;
            }
            type->ReleaseFuncDesc(function);
        }
    }
}

TEST_F(TypeLibrary, LosesAtMostTheNameWithTheUmlaut)
{
    // Readers take the names for text in the process's code page, where its last byte may be none.
    const bool readable = MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, "Anf\xFC", -1, nullptr, 0) > 0;
    int lost = 0;
    for (const auto& [name, type] : types) {
        EXPECT_NE(name, L"");
        for (UINT i = 0; i < type.attributes().cFuncs; ++i) {
            FUNCDESC* function = nullptr;
            type->GetFuncDesc(i, &function);
            client::Value member = client::Value::of_type(VT_BSTR);
            UINT count = 0;
            type->GetNames(function->memid, &member.bstrVal, 1, &count);
            lost += member.text().empty();
            type->ReleaseFuncDesc(function);
        }
    }
    EXPECT_EQ(lost, readable ? 0 : 1);
}

TEST_F(TypeLibrary, KnowsTheNameWithTheUmlaut)
{
    const Type& common = types.at(L"_qvCommon");
    wchar_t umlaut[2] = L"";
    if (MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, "\xFC", 1, umlaut, 2) != 1 || umlaut[0] != L'\u00FC')
        GTEST_SKIP() << "this code page has another letter there, or none";
    for (const wchar_t* name : {L"Anf\u00fc", L"ANF\u00dc", L"anf\u00fc"}) {
        auto text = const_cast<LPOLESTR>(name);
        MEMBERID id = MEMBERID_NIL;
        EXPECT_EQ(common->GetIDsOfNames(&text, 1, &id), S_OK);
        EXPECT_NE(common.help(id), L"");
    }
    EXPECT_EQ(types.at(L"EErrorSharedString").attributes().typekind, TKIND_ENUM);
}

TEST_F(ClassTable, ClassesAreMadeOrNotAsTheirInstancingSays)
{
    const auto get_class_object = entry<GetClassObject>("DllGetClassObject");
    for (const auto& [name, type] : types) {
        if (type.attributes().typekind != TKIND_COCLASS)
            continue;
        const std::wstring program = L"qvObjects." + name;
        SCOPED_TRACE(narrow(program));
        IUnknown* made = nullptr;
        CLSID registered{};
        if (!type.has(TYPEFLAG_FCANCREATE)) {
            EXPECT_NE(CLSIDFromProgID(program.c_str(), &registered), S_OK);
            EXPECT_EQ(get_class_object(type.attributes().guid, IID_IClassFactory, reinterpret_cast<void**>(&made)),
                      CLASS_E_CLASSNOTAVAILABLE);
            continue;
        }
        const Object object = Object::create(program.c_str());
        ASSERT_TRUE(object);
        bool has_events = false;
        for (UINT i = 0; i < type.attributes().cImplTypes; ++i) {
            const GUID id = type.implemented(i).attributes().guid;
            if (!(type.use(i) & IMPLTYPEFLAG_FSOURCE)) {
                EXPECT_TRUE(has(object.dispatch(), id));
                continue;
            }
            has_events = true;
            IConnectionPointContainer* container = nullptr;
            IConnectionPoint* point = nullptr;
            object.dispatch()->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container));
            ASSERT_TRUE(container);
            EXPECT_EQ(container->FindConnectionPoint(id, &point), S_OK);
            if (point)
                point->Release();
            container->Release();
        }
        EXPECT_EQ(has(object.dispatch(), IID_IConnectionPointContainer), has_events);
    }
}

TEST_F(ClassTable, RegistrationWritesTheNamesOfTheClassesInAnyCodePage)
{
    ASSERT_EQ(entry<EntryPoint>("DllRegisterServer")(), S_OK);
    for (const auto& [name, type] : types) {
        if (type.attributes().typekind != TKIND_COCLASS || !type.has(TYPEFLAG_FCANCREATE))
            continue;
        const std::wstring program = L"qvObjects." + name;
        wchar_t written[64] = L"";
        DWORD size = sizeof written;
        RegGetValueW(HKEY_CLASSES_ROOT, (L"CLSID\\" + digits(type.attributes().guid) + L"\\ProgID").c_str(), nullptr, RRF_RT_REG_SZ,
                     nullptr, written, &size);
        EXPECT_EQ(written, program);
        CLSID registered{};
        EXPECT_EQ(CLSIDFromProgID(program.c_str(), &registered), S_OK);
        EXPECT_EQ(registered, type.attributes().guid) << narrow(program);
    }
}

TEST_F(ClassTable, ObjectsAnswerForEveryFormerIdentifierOfTheirClassOnly)
{
    for (const auto& [name, type] : types) {
        const std::wstring current = name.substr(0, name.find(L"___v"));
        if (type.attributes().typekind != TKIND_ALIAS || current == name)
            continue;
        SCOPED_TRACE(narrow(name));
        Object object;
        if (current == L"qvIniSection" || current == L"qvIniParameter") { // which only the file gives
            object = Object::create(L"qvObjects.qvIniFile").object(L"Section", {L"Main"});
            if (current == L"qvIniParameter")
                object = object.object(L"Parameter", {L"p"});
        } else {
            object = Object::create((L"qvObjects." + current).c_str());
        }
        EXPECT_TRUE(has(object.dispatch(), type.attributes().guid));
        EXPECT_EQ(has(keeps_it_loaded.dispatch(), type.attributes().guid), current == L"qvCommon");
    }
}

TEST_F(ClassTable, TheLibraryStaysAsLongAsAnythingOfItLives)
{
    const auto can_unload = entry<EntryPoint>("DllCanUnloadNow");
    const HMODULE library = LoadLibraryW(L"qvObjects.dll");
    ASSERT_TRUE(library);
    EXPECT_EQ(can_unload(), S_FALSE);
    IClassFactory* factory = nullptr;
    const auto get_class_object = entry<GetClassObject>("DllGetClassObject");
    get_class_object(types.at(L"qvCommon").attributes().guid, IID_IClassFactory, reinterpret_cast<void**>(&factory));
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
