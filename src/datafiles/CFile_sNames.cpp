#include "datafiles/CFile_sNames.h"

#include "automation/code_page.h"

#include <string>
#include <vector>

using automation::Error;
using automation::LockedArray;
using automation::Runtime;
using automation::Variant;
using automation::view;

Variant CFile_sNames::texts() const
{
    return automation::array_of_type(automation::array_in(names_).value_or(nullptr), VT_BSTR);
}

void CFile_sNames::load(DataFile& file)
{
    const std::vector<std::string> read = qvb::read_names(file);
    Variant names = automation::new_array(VT_VARIANT, read.size());
    {
        const LockedArray<VARIANT> elements{names.parray};
        for (std::size_t i = 0; i < read.size(); ++i)
            elements[i] = Variant{std::wstring_view{automation::decode(read[i])}}.release();
    }
    names_ = std::move(names);
}

void CFile_sNames::save(DataFile& file) const
{
    const auto array = automation::array_in(names_);
    if (!array)
        throw Error{Runtime::TypeMismatch};
    if (!*array || (*array)->cDims != 1)
        throw Error{Runtime::SubscriptOutOfRange};
    const Variant converted = texts();
    const LockedArray<BSTR> names{converted.parray};
    std::vector<std::string> encoded(names.size());
    for (std::size_t i = 0; i < encoded.size(); ++i)
        automation::append_encoded(encoded[i], view(names[i]));
    file.write(qvb::bytes_of(encoded));
}
