#include "server/identities.h"
#include "support/client.h"

#include <map>
#include <memory>

using identities::guid;
using identities::narrow;

namespace {

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
    /// The help text of a member, or of the type itself.
    std::wstring help(MEMBERID id = MEMBERID_NIL) const
    {
        client::Value text = client::Value::of_type(VT_BSTR);
        info_->GetDocumentation(id, nullptr, &text.bstrVal, nullptr, nullptr);
        return text.text();
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
        EXPECT_EQ(LoadRegTypeLib(guid(L"B713A6BC-B922-11D1-B817-0020182C2F2F"), 1, 79, 0x409, &library), S_OK);
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
        EXPECT_EQ((flags & TYPEFLAG_FCANCREATE) != 0, expected.instancing != identities::NotCreatable);
        EXPECT_EQ((flags & TYPEFLAG_FAPPOBJECT) != 0, expected.instancing == identities::Global);

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

TEST_F(TypeLibrary, SaysThatAnIniFileIsASectionToo)
{
    const Type& file = types.at(L"qvIniFile");
    ASSERT_EQ(file.attributes().cImplTypes, 2u);
    EXPECT_EQ(file.implemented(0).name, L"_qvIniFile");
    EXPECT_EQ(file.implemented(1).name, L"_qvIniSection");
    INT use = ~0;
    EXPECT_EQ(file->GetImplTypeFlags(1, &use), S_OK);
    EXPECT_EQ(use, 0) << "neither the default nor a source of events";
}

TEST_F(TypeLibrary, KeepsEveryFormerIdentifier)
{
    for (const identities::FormerInterfaces& expected : identities::former_interfaces)
        for (std::size_t i = 0; i < expected.ids.size(); ++i) {
            SCOPED_TRACE(narrow(expected.alias(i)));
            ASSERT_TRUE(types.contains(expected.alias(i)));
            const Type& type = types.at(expected.alias(i));
            EXPECT_EQ(type.attributes().typekind, TKIND_ALIAS);
            EXPECT_EQ(type.attributes().guid, guid(expected.ids[i]));
            EXPECT_TRUE(type.attributes().wTypeFlags & TYPEFLAG_FHIDDEN);
            EXPECT_EQ(type.referred(type.attributes().tdescAlias.hreftype).name, L"_" + expected.name);
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
