#pragma once

#include "automation/object.h"
#include "automation/safe_array.h"

#include <qvObjects_contract.h>

#include <cstdint>
#include <string>

namespace nif {
class Reader;
}

/// A named table of numbers that is loaded from a NIF file and saved to one.
class qvFile_Nif final : public automation::Object<qvFile_Nif, faces::qvFile_Nif> {
public:
    long get_m() const { return m_; }
    long get_n() const { return n_; }
    std::wstring_view get_Description() const { return description_; }
    void put_Description(std::wstring_view value) { description_ = value; }
    std::wstring_view get_FileName() const { return file_name_; }
    void put_FileName(std::wstring_view value) { file_name_ = value; }
    bool Load(BSTR* sFile);
    bool Save(BSTR* sFile);
    double get_Value(long m, long n) const;
    void put_Value(long m, long n, double value);
    std::wstring_view get_Name(long m) const;
    void put_Name(long m, std::wstring_view value);
    void GetValues(SAFEARRAY*& d) const;
    void GetNames(SAFEARRAY*& sNames) const;
    void SetValues(SAFEARRAY** d) { values_ = automation::array_of_type(d ? *d : nullptr, VT_R8); }
    void SetNames(SAFEARRAY** sNames) { names_ = automation::array_of_type(sNames ? *sNames : nullptr, VT_BSTR); }
    void SetSize(long m, long n);

private:
    /// The path that a call is about: the one that it gives, or else the one before, which the caller then gets.
    void choose_file(BSTR* sFile);
    void load();
    void read(nif::Reader& reader);
    void save() const;
    void require_arrays() const;

    std::int32_t m_ = 0, n_ = 0;
    std::wstring description_;
    std::wstring file_name_;
    automation::Variant values_; ///< of Double, (1 to m, 1 to n) unless a client has set others
    automation::Variant names_;  ///< of texts, (1 to m)
};
