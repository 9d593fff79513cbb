#pragma once

#include "automation/object.h"
#include "automation/safe_array.h"
#include "datafiles/data_file.h"

#include <qvObjects_contract.h>

/// The block of names of a binary data file.
class CFile_sNames final : public automation::Object<CFile_sNames, _CFile_sNames> {
public:
    /// The names, converted in the user's locale; a null array where there are none. Raises what a conversion fails with.
    automation::Variant texts() const;
    void set_names(automation::Variant names) noexcept { names_ = std::move(names); }
    void load(DataFile& file);
    /// Raises 13 where the names are no array, 9 where they have not one dimension.
    void save(DataFile& file) const;

    HRESULT STDMETHODCALLTYPE get_Names(VARIANT* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Names(VARIANT value) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Names(VARIANT value) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(long lFile) noexcept override;
    HRESULT STDMETHODCALLTYPE Load(long lFile) noexcept override;

private:
    automation::Variant names_;
};
