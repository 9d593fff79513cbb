#include "frame/identities.h"
#include "support/client.h"

#include <qvObjects.h>

#include <map>
#include <set>

namespace {

GUID guid(const wchar_t* text)
{
    GUID guid{};
    EXPECT_EQ(CLSIDFromString(text, &guid), S_OK);
    return guid;
}

std::string narrow(const std::wstring& text)
{
    return {text.begin(), text.end()};
}

/// A type of the library with what a browser shows of it.
class Type {
public:
    explicit Type(ITypeInfo* info) : info_{info}
    {
        info_->GetTypeAttr(&attributes_);
        BSTR name = nullptr, help = nullptr;
        info_->GetDocumentation(MEMBERID_NIL, &name, &help, nullptr, nullptr);
        this->name = name ? name : L"";
        this->help = help ? help : L"";
        SysFreeString(name);
        SysFreeString(help);
    }
    Type(Type&& other) noexcept
        : name{other.name}, help{other.help}, info_{std::exchange(other.info_, nullptr)},
          attributes_{std::exchange(other.attributes_, nullptr)}
    {
    }
    ~Type()
    {
        if (!info_)
            return;
        info_->ReleaseTypeAttr(attributes_);
        info_->Release();
    }

    ITypeInfo* operator->() const { return info_; }
    const TYPEATTR& attributes() const { return *attributes_; }
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

    std::wstring name, help;

private:
    ITypeInfo* info_;
    TYPEATTR* attributes_ = nullptr;
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

    client::Apartment apartment;
    ITypeLib* library = nullptr;
    std::map<std::wstring, Type> types;
};

/// The help text of a member.
std::wstring help_of(const Type& type, MEMBERID id)
{
    BSTR text = nullptr;
    type->GetDocumentation(id, nullptr, &text, nullptr, nullptr);
    const std::wstring help = text ? text : L"";
    SysFreeString(text);
    return help;
}

} // namespace

TEST_F(TypeLibrary, IsWhatClientsWereCompiledAgainst)
{
    ASSERT_TRUE(library);
    TLIBATTR* attributes = nullptr;
    library->GetLibAttr(&attributes);
    EXPECT_EQ(attributes->lcid, 0x409u);
    EXPECT_EQ(attributes->syskind, SYS_WIN32);
    library->ReleaseTLibAttr(attributes);
    BSTR name = nullptr;
    library->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    EXPECT_EQ(std::wstring{name}, L"qvObjects");
    SysFreeString(name);
}

TEST_F(TypeLibrary, HoldsEveryClassWithItsIdentities)
{
    std::size_t classes = 0;
    for (const auto& [name, type] : types)
        classes += type.attributes().typekind == TKIND_COCLASS;
    EXPECT_EQ(classes, std::size(identities::classes));

    for (const identities::Class& expected : identities::classes) {
        SCOPED_TRACE(narrow(expected.name));
        ASSERT_TRUE(types.contains(expected.name));
        const Type& type = types.at(expected.name);
        EXPECT_EQ(type.attributes().guid, guid(expected.id));
        const WORD flags = type.attributes().wTypeFlags;
        EXPECT_EQ((flags & TYPEFLAG_FCANCREATE) != 0, expected.instancing != identities::Instancing::NotCreatable);
        EXPECT_EQ((flags & TYPEFLAG_FAPPOBJECT) != 0, expected.instancing == identities::Instancing::Global);

        bool has_default = false, has_events = false;
        for (UINT i = 0; i < type.attributes().cImplTypes; ++i) {
            INT use = 0;
            type->GetImplTypeFlags(i, &use);
            const Type implemented = type.implemented(i);
            if (use & IMPLTYPEFLAG_FSOURCE) {
                has_events = true;
                EXPECT_EQ(implemented.name, L"__" + type.name);
                ASSERT_TRUE(expected.events);
                EXPECT_EQ(implemented.attributes().guid, guid(expected.events));
            } else if (use & IMPLTYPEFLAG_FDEFAULT) {
                has_default = true;
                EXPECT_EQ(implemented.name, L"_" + type.name);
                EXPECT_EQ(implemented.attributes().guid, guid(expected.face));
                constexpr WORD all = TYPEFLAG_FDUAL | TYPEFLAG_FHIDDEN | TYPEFLAG_FNONEXTENSIBLE;
                EXPECT_EQ(implemented.attributes().wTypeFlags & all, all);
                const Type table = implemented.implemented(static_cast<UINT>(-1)); // as compiled clients see it
                EXPECT_TRUE(table.attributes().wTypeFlags & TYPEFLAG_FOLEAUTOMATION);
            }
        }
        EXPECT_TRUE(has_default);
        EXPECT_EQ(has_events, expected.events != nullptr);
    }
}

TEST_F(TypeLibrary, KeepsEveryFormerIdentifier)
{
    for (const identities::Alias& expected : identities::aliases) {
        SCOPED_TRACE(narrow(expected.name));
        ASSERT_TRUE(types.contains(expected.name));
        const Type& type = types.at(expected.name);
        EXPECT_EQ(type.attributes().typekind, TKIND_ALIAS);
        EXPECT_EQ(type.attributes().guid, guid(expected.id));
        EXPECT_TRUE(type.attributes().wTypeFlags & TYPEFLAG_FHIDDEN);
        const std::wstring full = expected.name;
        EXPECT_EQ(type.referred(type.attributes().tdescAlias.hreftype).name, L"_" + full.substr(0, full.find(L"___")));
    }
}

TEST_F(TypeLibrary, ExplainsEveryClassMemberAndEnumeration)
{
    for (const auto& [name, type] : types) {
        SCOPED_TRACE(narrow(name));
        if (type.attributes().typekind != TKIND_ALIAS) {
            EXPECT_FALSE(type.help.empty());
        }
        if (type.attributes().typekind != TKIND_DISPATCH)
            continue;
        for (UINT i = 0; i < type.attributes().cFuncs; ++i) {
            FUNCDESC* function = nullptr;
            type->GetFuncDesc(i, &function);
            if (function->memid < 0x60000000) { // not one of IDispatch itself
                EXPECT_FALSE(help_of(type, function->memid).empty()) << "member " << function->memid;
            }
            type->ReleaseFuncDesc(function);
        }
    }
}

TEST_F(TypeLibrary, KnowsTheNameWithTheUmlaut)
{
    const Type& common = types.at(L"_qvCommon");
    for (const wchar_t* name : {L"Anf\u00fc", L"ANF\u00dc", L"anf\u00fc"}) {
        auto text = const_cast<LPOLESTR>(name);
        MEMBERID id = MEMBERID_NIL;
        EXPECT_EQ(common->GetIDsOfNames(&text, 1, &id), S_OK);
        EXPECT_FALSE(help_of(common, id).empty());
    }
    EXPECT_EQ(types.at(L"EErrorSharedString").attributes().typekind, TKIND_ENUM);
}
