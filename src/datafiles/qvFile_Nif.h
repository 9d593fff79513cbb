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
class qvFile_Nif final : public automation::Object<qvFile_Nif, _qvFile_Nif> {
public:
    HRESULT STDMETHODCALLTYPE get_m(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_n(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Description(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Description(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_FileName(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Load(BSTR* sFile, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(BSTR* sFile, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Value(long m, long n, double* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Value(long m, long n, double value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Name(long m, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Name(long m, BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValues(SAFEARRAY** d) noexcept override;
    HRESULT STDMETHODCALLTYPE GetNames(SAFEARRAY** sNames) noexcept override;
    HRESULT STDMETHODCALLTYPE SetValues(SAFEARRAY** d) noexcept override;
    HRESULT STDMETHODCALLTYPE SetNames(SAFEARRAY** sNames) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSize(long m, long n) noexcept override;

private:
    /// The path that a call is about: the one that it gives, or else the one before, which the caller then gets.
    void choose_file(BSTR* sFile);
    void load();
    void read(nif::Reader& reader);
    void save() const;
    void set_size(std::int32_t m, std::int32_t n);
    void require_arrays() const;

    std::int32_t m_ = 0, n_ = 0;
    std::wstring description_;
    std::wstring file_name_;
    automation::Variant values_; ///< of Double, (1 to m, 1 to n) unless a client has set others
    automation::Variant names_;  ///< of texts, (1 to m)
};
