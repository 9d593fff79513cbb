#pragma once

#include "support/client.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

/// Lists and tables as a client makes them, and what is in them.
namespace client {

/// An array of one or two dimensions with these bounds and elements in storage order, each converted to its type.
inline Value array(VARTYPE type, std::vector<SAFEARRAYBOUND> bounds, const std::vector<Value>& elements)
{
    Value made = Value::of_type(VT_ARRAY | type);
    made.parray = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
    auto* place = static_cast<std::byte*>(made.parray->pvData);
    for (Value element : elements) {
        const bool whole = type == VT_VARIANT || type == VT_DECIMAL;
        if (type != VT_VARIANT) {
            EXPECT_EQ(VariantChangeType(&element, &element, 0, type), S_OK);
        }
        std::memcpy(place, whole ? static_cast<void*>(&element) : &element.lVal, made.parray->cbElements);
        place += made.parray->cbElements;
        element.vt = VT_EMPTY; // the array has it
    }
    return made;
}

/// A list that counts from this index.
inline Value list(LONG first, const std::vector<Value>& elements, VARTYPE type = VT_VARIANT)
{
    return array(type, {{static_cast<ULONG>(elements.size()), first}}, elements);
}

/// A table whose rows and columns count from these indexes.
inline Value table(VARTYPE type, LONG first_row, LONG first_column, const std::vector<std::vector<Value>>& rows)
{
    std::vector<Value> elements;
    for (std::size_t column = 0; column < rows[0].size(); ++column)
        for (const auto& row : rows)
            elements.push_back(row.at(column));
    const auto columns = static_cast<ULONG>(rows[0].size());
    return array(type, {{static_cast<ULONG>(rows.size()), first_row}, {columns, first_column}}, elements);
}

/// A value as text: numbers with a decimal point, a Long with & and a Double with # behind it, texts in quotes, Empty as -.
inline std::wstring told_value(const Value& value)
{
    switch (value.vt) {
    case VT_EMPTY:
        return L"-";
    case VT_NULL:
        return L"Null";
    case VT_BSTR:
        return L"'" + value.text() + L"'";
    case VT_ERROR:
        return L"error";
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return value.punkVal ? L"object" : L"nothing";
    default:
        Value text;
        if (FAILED(VariantChangeTypeEx(&text, const_cast<Value*>(&value), 0x409, 0, VT_BSTR)))
            return L"type " + std::to_wstring(value.vt);
        return text.text() + (value.vt == VT_I4 ? L"&" : value.vt == VT_R8 ? L"#" : L"");
    }
}

/// A list or a table as text: the type of its elements, the first index of each dimension, and the elements, a table's row by
/// row in brackets: "Byte 3: 7 8", "Variant 1,0: (1& 'a')(- 2.5#)". Only among Variants each number shows its type.
inline std::wstring told(const Value& value)
{
    if (!(value.vt & VT_ARRAY) || !value.parray || value.parray->cDims > 2)
        return told_value(value);
    const SAFEARRAY& array = *value.parray;
    const bool is_table = array.cDims == 2;
    const auto type = static_cast<VARTYPE>(value.vt & VT_TYPEMASK);
    const SAFEARRAYBOUND rows = array.rgsabound[array.cDims - 1], columns = is_table ? array.rgsabound[0] : SAFEARRAYBOUND{1, 0};
    std::wstring all = type == VT_VARIANT ? L"Variant" : type == VT_BSTR ? L"String" : type == VT_DISPATCH ? L"Object"
                     : type == VT_I4 ? L"Long" : type == VT_I2 ? L"Integer" : type == VT_UI1 ? L"Byte"
                     : type == VT_R8 ? L"Double" : type == VT_R4 ? L"Single" : L"type " + std::to_wstring(type);
    all += L" " + std::to_wstring(rows.lLbound) + (is_table ? L"," + std::to_wstring(columns.lLbound) + L": " : L":");
    for (ULONG row = 0; row < rows.cElements; ++row) {
        all += is_table ? L"(" : L"";
        for (ULONG column = 0; column < columns.cElements; ++column) {
            const auto* place = static_cast<std::byte*>(array.pvData) + (column * rows.cElements + row) * array.cbElements;
            Value shared = Value::of_type(type);
            const bool whole = type == VT_VARIANT || type == VT_DECIMAL;
            std::memcpy(whole ? static_cast<void*>(&shared) : &shared.lVal, place, array.cbElements);
            std::wstring element = told_value(shared);
            shared.vt = VT_EMPTY; // it is the array's
            if ((type == VT_I4 || type == VT_R8) && !element.empty())
                element.pop_back();
            all += (column > 0 || !is_table ? L" " : L"") + element;
        }
        all += is_table ? L")" : L"";
    }
    return all;
}

} // namespace client
