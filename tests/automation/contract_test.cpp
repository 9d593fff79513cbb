// The constant tables against the type library: both come from the contract, on different ways.

#include "automation/border.h"
#include "automation/specimen.h"

#include <qvObjects_contract.h>

#include <climits>
#include <map>

using automation::Contracted;
using automation::Function;
using automation::Interface;
using automation::Member;
using automation::Parameter;
using automation::Ref;

namespace {

Ref<ITypeInfo> referred(ITypeInfo& info, HREFTYPE reference)
{
    Ref<ITypeInfo> target;
    EXPECT_EQ(info.GetRefTypeInfo(reference, target.put()), S_OK);
    return target;
}

template <class Use>
auto with_attributes(ITypeInfo& info, Use&& use)
{
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(info.GetTypeAttr(&attributes), S_OK);
    const TYPEATTR copy = *attributes;
    info.ReleaseTypeAttr(attributes);
    return use(copy);
}

/// A parameter as the type library describes it.
struct Described {
    VARTYPE type = VT_EMPTY;
    bool by_reference = false;
    GUID identity = GUID_NULL;

    void resolve(ITypeInfo& info, const TYPEDESC& description)
    {
        switch (description.vt) {
        case VT_SAFEARRAY:
            resolve(info, *description.lptdesc);
            type |= VT_ARRAY;
            break;
        case VT_PTR:
            resolve(info, *description.lptdesc);
            if (type == VT_USERDEFINED)
                type = VT_DISPATCH; // a pointer to an interface is the object itself
            else
                by_reference = true;
            break;
        case VT_USERDEFINED: {
            const Ref<ITypeInfo> named = referred(info, description.hreftype);
            with_attributes(*named, [&](const TYPEATTR& attributes) {
                const bool is_enum = attributes.typekind == TKIND_ENUM, is_record = attributes.typekind == TKIND_RECORD;
                type = is_enum ? VT_I4 : is_record ? VT_RECORD : VT_USERDEFINED;
                identity = is_enum ? GUID_NULL : attributes.guid;
            });
            break;
        }
        default:
            type = description.vt;
        }
    }
};

void expect_parameter(ITypeInfo& info, const ELEMDESC& element, const Parameter& parameter)
{
    const USHORT flags = element.paramdesc.wParamFlags;
    Described described;
    described.resolve(info, element.tdesc);
    EXPECT_EQ(parameter.type, described.type);
    EXPECT_EQ(parameter.by_reference(), described.by_reference);
    EXPECT_EQ(parameter.changes(), described.by_reference && (flags & PARAMFLAG_FOUT) != 0);
    EXPECT_EQ(parameter.optional(), (flags & PARAMFLAG_FOPT) != 0);
    EXPECT_EQ(parameter.identity ? *parameter.identity : GUID_NULL, described.identity);
    if (flags & PARAMFLAG_FHASDEFAULT) {
        const automation::Variant expected = automation::converted(element.paramdesc.pparamdescex->varDefaultValue, parameter.type);
        const VARIANT given = parameter.value_if_omitted();
        EXPECT_EQ(given.vt, expected.vt);
        EXPECT_EQ(VarCmp(const_cast<VARIANT*>(&given), const_cast<automation::Variant*>(&expected), 0, 0), VARCMP_EQ);
    }
}

const Function* function_of(const Member& member, INVOKEKIND kind)
{
    return kind == INVOKE_FUNC ? member.method : kind == INVOKE_PROPERTYGET ? member.get
         : kind == INVOKE_PROPERTYPUT ? member.put : member.put_reference;
}

std::vector<const Function*> functions_of(const Member& member)
{
    std::vector<const Function*> functions{member.method, member.get, member.put, member.put_reference};
    std::erase(functions, nullptr);
    return functions;
}

void expect_function(ITypeInfo& info, const FUNCDESC& description, const Interface& interface_table)
{
    std::vector<BSTR> names(static_cast<std::size_t>(description.cParams) + 1);
    UINT count = 0;
    ASSERT_EQ(info.GetNames(description.memid, names.data(), static_cast<UINT>(names.size()), &count), S_OK);
    std::vector<automation::Text> owners;
    for (const BSTR name : names)
        owners.push_back(automation::Text::adopt(name));
    SCOPED_TRACE(testing::Message() << std::wstring{owners[0]}.c_str());

    const Member* const member = interface_table.find(std::wstring_view{owners[0]});
    ASSERT_TRUE(member);
    EXPECT_EQ(member, interface_table.find(description.memid));
    EXPECT_EQ(member->name, std::wstring_view{owners[0]});
    const Function* const function = function_of(*member, description.invkind);
    ASSERT_TRUE(function);
    const bool is_alone = functions_of(*member).size() == 1;
    EXPECT_EQ(function->slot * sizeof(void*), static_cast<std::size_t>(description.oVft));

    std::size_t place = 0;
    VARTYPE result = VT_EMPTY;
    for (short i = 0; i < description.cParams; ++i) {
        const ELEMDESC& element = description.lprgelemdescParam[i];
        if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
            Described described;
            described.resolve(info, element.tdesc);
            result = described.type;
            continue;
        }
        ASSERT_LT(place, function->parameters.size());
        const Parameter& parameter = function->parameters[place++];
        // The platform gives the names of a member's first function only, none for the new value of a property, and of names
        // that differ in case the first.
        if (is_alone && static_cast<UINT>(i) + 1 < count) {
            EXPECT_TRUE(automation::equal_folded(parameter.name, owners[static_cast<std::size_t>(i) + 1])) << place;
        }
        expect_parameter(info, element, parameter);
    }
    EXPECT_EQ(place, function->parameters.size());
    EXPECT_EQ(function->result, result);
    EXPECT_EQ(!function->parameters.empty() && function->parameters.back().any_number(), description.cParamsOpt == -1);
}

std::size_t functions_in(const Interface& interface_table)
{
    std::size_t count = 0;
    for (const Member& member : interface_table.members)
        count += functions_of(member).size();
    return count;
}

void expect_interface(ITypeLib& library, const Interface& interface_table)
{
    SCOPED_TRACE(testing::Message() << std::wstring{interface_table.name}.c_str());
    Ref<ITypeInfo> info;
    ASSERT_EQ(library.GetTypeInfoOfGuid(interface_table.id, info.put()), S_OK);
    HREFTYPE reference = 0;
    ASSERT_EQ(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK); // its half that is no dispinterface
    const Ref<ITypeInfo> functions = referred(*info, reference);
    const UINT count = with_attributes(*functions, [](const TYPEATTR& attributes) { return attributes.cFuncs; });
    EXPECT_EQ(count, functions_in(interface_table));
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* description = nullptr;
        ASSERT_EQ(functions->GetFuncDesc(i, &description), S_OK);
        expect_function(*functions, *description, interface_table);
        functions->ReleaseFuncDesc(description);
    }
}

/// What a library names of a kind: identifiers, each with the identifier of what it stands for.
struct Contents {
    std::map<std::wstring, bool> classes; ///< by name: whether clients create them
    std::size_t interfaces = 0, events = 0;
    std::size_t aliases = 0;
};

Contents contents_of(ITypeLib& library, const automation::Library& table)
{
    Contents contents;
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        Ref<ITypeInfo> info;
        library.GetTypeInfo(i, info.put());
        BSTR text = nullptr;
        info->GetDocumentation(MEMBERID_NIL, &text, nullptr, nullptr, nullptr);
        const automation::Text name = automation::Text::adopt(text);
        with_attributes(*info, [&](const TYPEATTR& attributes) {
            if (attributes.typekind == TKIND_COCLASS)
                contents.classes[std::wstring{name}] = (attributes.wTypeFlags & TYPEFLAG_FCANCREATE) != 0;
            if (attributes.typekind == TKIND_DISPATCH)
                ++(attributes.wTypeFlags & TYPEFLAG_FDUAL ? contents.interfaces : contents.events);
            if (attributes.typekind != TKIND_ALIAS || attributes.guid == GUID_NULL)
                return;
            ++contents.aliases;
            const Ref<ITypeInfo> target = referred(*info, attributes.tdescAlias.hreftype);
            const IID current = with_attributes(*target, [](const TYPEATTR& of_target) { return of_target.guid; });
            const auto found = std::ranges::find_if(table.interfaces, [&](const Interface* one) { return one->id == current; });
            EXPECT_TRUE(found != table.interfaces.end() && (*found)->was(attributes.guid)) << std::wstring{name}.c_str();
        });
    }
    return contents;
}

void expect_library(ITypeLib& library, const automation::Library& table)
{
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library.GetLibAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->guid, table.id);
    EXPECT_EQ(attributes->wMajorVerNum, table.major);
    EXPECT_EQ(attributes->wMinorVerNum, table.minor);
    EXPECT_EQ(attributes->lcid, table.locale);
    library.ReleaseTLibAttr(attributes);

    const Contents contents = contents_of(library, table);
    std::map<std::wstring, bool> classes;
    for (const automation::Class& entry : table.classes)
        classes[std::wstring{entry.name}] = entry.creatable;
    EXPECT_EQ(classes, contents.classes);
    std::size_t aliases = 0;
    for (const Interface* one : table.interfaces) {
        aliases += one->former.size();
        expect_interface(library, *one);
    }
    EXPECT_EQ(aliases, contents.aliases);
    EXPECT_EQ(table.interfaces.size(), contents.interfaces);
    EXPECT_EQ(table.events.size(), contents.events);
}

/// The type library of the finished DLL, which stands beside the folder of the tests.
Ref<ITypeLib> library_of_the_dll()
{
    std::wstring path = automation::module::path();
    path.erase(path.find_last_of(L"\\/"));
    path.replace(path.find_last_of(L"\\/") + 1, std::wstring::npos, L"qvObjects.dll");
    Ref<ITypeLib> library;
    EXPECT_EQ(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put()), S_OK);
    return library;
}

} // namespace

TEST(Contract, TheTablesSayWhatTheTypeLibrarySays)
{
    client::Apartment apartment;
    expect_library(automation::type_library(), SpecimenLibrary_library);
    const Ref<ITypeLib> library = library_of_the_dll();
    ASSERT_TRUE(library);
    expect_library(*library, qvObjects_library);
}

TEST(Contract, MembersAreFoundByEveryNameAndNoOther)
{
    const Interface& table = Contracted<_qvCommon>::description;
    EXPECT_TRUE(table.find(L"anf\u00dc"));
    EXPECT_EQ(table.find(L"Anf"), nullptr);
    EXPECT_EQ(table.find(std::wstring_view{}), nullptr);
    EXPECT_EQ(Contracted<_qvScreen>::description.find(L"Width"), nullptr) << "no members yet";
    for (const DISPID id : {-9L, -5L, -1L, 4711L, LONG_MIN, LONG_MAX})
        EXPECT_EQ(table.find(id), nullptr) << id;
}
