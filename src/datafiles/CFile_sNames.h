#pragma once

#include "automation/object.h"
#include "automation/safe_array.h"
#include "datafiles/data_file.h"

#include <qvObjects_contract.h>

/// The block of names of a binary data file.
class CFile_sNames final : public automation::Object<CFile_sNames, faces::CFile_sNames> {
public:
    /// The names, converted in the user's locale; a null array where there are none. Raises what a conversion fails with.
    automation::Variant texts() const;
    void set_names(automation::Variant names) noexcept { names_ = std::move(names); }
    void load(DataFile& file);
    /// Raises 13 where the names are no array, 9 where they have not one dimension.
    void save(DataFile& file) const;

    automation::Variant get_Names() const { return names_; }
    void put_Names(const VARIANT& value) { names_ = automation::Variant{value}; }
    void putref_Names(const VARIANT& value) { put_Names(value); }
    void Save(long lFile) const { save(DataFile::with_number(lFile)); }
    void Load(long lFile) { load(DataFile::with_number(lFile)); }

private:
    automation::Variant names_;
};
