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

/// A list of Variants that counts from this index.
inline Value list(LONG first, const std::vector<Value>& elements)
{
    return array(VT_VARIANT, {{static_cast<ULONG>(elements.size()), first}}, elements);
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

/// A table as text: its first row and column, and its elements with a decimal point, row by row in brackets: "1,0: (1 2) (3 4)".
inline std::wstring told(const Value& table)
{
    if (!(table.vt & VT_ARRAY) || table.parray->cDims != 2)
        return L"no table";
    const SAFEARRAYBOUND rows = table.parray->rgsabound[1], columns = table.parray->rgsabound[0];
    std::wstring all = std::to_wstring(rows.lLbound) + L"," + std::to_wstring(columns.lLbound) + L":";
    for (ULONG row = 0; row < rows.cElements; ++row) {
        all += L" (";
        for (ULONG column = 0; column < columns.cElements; ++column) {
            LONG place[]{rows.lLbound + static_cast<LONG>(row), columns.lLbound + static_cast<LONG>(column)};
            Value element = Value::of_type(static_cast<VARTYPE>(table.vt & VT_TYPEMASK));
            const bool whole = element.vt == VT_VARIANT || element.vt == VT_DECIMAL;
            EXPECT_EQ(SafeArrayGetElement(table.parray, place, whole ? static_cast<void*>(&element) : &element.lVal), S_OK);
            EXPECT_EQ(VariantChangeTypeEx(&element, &element, 0x409, 0, VT_BSTR), S_OK);
            all += (column ? L" " : L"") + element.text();
        }
        all += L")";
    }
    return all;
}

} // namespace client
