#include "random_calls/members.h"

#include "random_calls/fault.h"

#include <algorithm>

namespace members {
namespace {

constexpr SHORT first_own_slot = 7 * sizeof(void*); // behind those of IDispatch

Parameter parameter_of(ITypeInfo& info, const TYPEDESC& description)
{
    switch (description.vt) {
    case VT_PTR: {
        const Parameter inner = parameter_of(info, *description.lptdesc);
        return {inner.type, inner.type != VT_DISPATCH || description.lptdesc->vt == VT_PTR};
    }
    case VT_SAFEARRAY:
        return {static_cast<VARTYPE>(VT_ARRAY | parameter_of(info, *description.lptdesc).type), false};
    case VT_USERDEFINED: {
        ITypeInfo* named = nullptr;
        TYPEATTR* attributes = nullptr;
        require(SUCCEEDED(info.GetRefTypeInfo(description.hreftype, &named)) && SUCCEEDED(named->GetTypeAttr(&attributes)),
                "a type that the library does not describe");
        const TYPEKIND kind = attributes->typekind;
        const Parameter meant = kind == TKIND_ALIAS ? parameter_of(*named, attributes->tdescAlias)
                              : Parameter{static_cast<VARTYPE>(kind == TKIND_ENUM     ? VT_I4
                                                               : kind == TKIND_RECORD ? VT_RECORD
                                                                                      : VT_DISPATCH),
                                          false};
        named->ReleaseTypeAttr(attributes);
        named->Release();
        return meant;
    }
    default:
        return {description.vt, false};
    }
}

std::wstring name_of(ITypeInfo& info, DISPID id)
{
    BSTR name = nullptr;
    require(SUCCEEDED(info.GetDocumentation(id, &name, nullptr, nullptr, nullptr)), "a member without a name");
    const std::wstring copy = name;
    SysFreeString(name);
    return copy;
}

Class class_of(ITypeInfo& info, const TYPEATTR& attributes)
{
    Class made{name_of(info, MEMBERID_NIL), CLSID_NULL, {}};
    for (UINT i = 0; i < attributes.cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        require(SUCCEEDED(info.GetFuncDesc(i, &function)), "a member without a description");
        if (function->oVft >= first_own_slot) {
            Member member{name_of(info, function->memid), function->memid, static_cast<WORD>(function->invkind), {}};
            for (SHORT p = 0; p < function->cParams; ++p) {
                const ELEMDESC& parameter = function->lprgelemdescParam[p];
                if (parameter.paramdesc.wParamFlags & PARAMFLAG_FRETVAL)
                    continue;
                member.parameters.push_back(parameter_of(info, parameter.tdesc));
                member.parameters.back().optional = parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT;
            }
            made.members.push_back(std::move(member));
        }
        info.ReleaseFuncDesc(function);
    }
    return made;
}

/// Tells the interface of a class which one it belongs to.
void name_creatable(Library& library, ITypeInfo& info, const TYPEATTR& attributes)
{
    HREFTYPE reference = 0;
    ITypeInfo* face = nullptr;
    if (!(attributes.wTypeFlags & TYPEFLAG_FCANCREATE))
        return;
    require(SUCCEEDED(info.GetRefTypeOfImplType(0, &reference)) && SUCCEEDED(info.GetRefTypeInfo(reference, &face)),
            "a class without an interface");
    const auto found = std::ranges::find(library.classes, name_of(*face, MEMBERID_NIL), &Class::face);
    require(found != library.classes.end(), "the interface of a class is not described");
    found->id = attributes.guid;
    face->Release();
}

template <class Look>
void for_each_type(ITypeLib& types, TYPEKIND kind, const Look& look)
{
    for (UINT i = 0; i < types.GetTypeInfoCount(); ++i) {
        ITypeInfo* info = nullptr;
        TYPEATTR* attributes = nullptr;
        require(SUCCEEDED(types.GetTypeInfo(i, &info)) && SUCCEEDED(info->GetTypeAttr(&attributes)), "a type can't be read");
        if (attributes->typekind == kind)
            look(*info, *attributes);
        info->ReleaseTypeAttr(attributes);
        info->Release();
    }
}

} // namespace

Library read(const wchar_t* file)
{
    ITypeLib* types = nullptr;
    require(SUCCEEDED(LoadTypeLibEx(file, REGKIND_NONE, &types)), "the type library can't be read");
    Library library;
    for_each_type(*types, TKIND_DISPATCH, [&](ITypeInfo& info, const TYPEATTR& attributes) {
        if (attributes.wTypeFlags & TYPEFLAG_FDUAL)
            library.classes.push_back(class_of(info, attributes));
    });
    for_each_type(*types, TKIND_COCLASS,
                  [&](ITypeInfo& info, const TYPEATTR& attributes) { name_creatable(library, info, attributes); });
    for_each_type(*types, TKIND_RECORD, [&](ITypeInfo& info, const TYPEATTR&) {
        IRecordInfo* record = nullptr;
        if (SUCCEEDED(GetRecordInfoFromTypeInfo(&info, &record)))
            library.records.push_back(record);
    });
    types->Release();
    return library;
}

} // namespace members
