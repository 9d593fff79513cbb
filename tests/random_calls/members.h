#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <vector>

/// What the library's own description says that can be called.
namespace members {

struct Parameter {
    VARTYPE type; ///< without VT_BYREF
    bool by_reference;
    bool optional = false;
};

struct Member {
    std::wstring name;
    DISPID id;
    WORD kind; ///< DISPATCH_METHOD, ...
    std::vector<Parameter> parameters;
};

struct Class {
    std::wstring face; ///< the name of its interface
    CLSID id{};        ///< CLSID_NULL where only other members make objects of it
    std::vector<Member> members;
};

struct Library {
    std::vector<Class> classes;
    std::vector<IRecordInfo*> records; ///< for the life of the process
};

/// Ends the program where the file has no type library.
Library read(const wchar_t* file);

} // namespace members
