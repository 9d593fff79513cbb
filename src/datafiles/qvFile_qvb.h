#pragma once

#include "automation/object.h"
#include "automation/safe_array.h"
#include "datafiles/CFileInfoHeader.h"
#include "datafiles/CFileQVBHeader.h"
#include "datafiles/CFile_sNames.h"

#include <qvObjects_contract.h>

#include <array>
#include <string>

/// A QVB file: a matrix of objects (rows) and features (columns) in binary form.
class qvFile_qvb final : public automation::Object<qvFile_qvb, _qvFile_qvb> {
public:
    HRESULT STDMETHODCALLTYPE get_FileInfoHeader(_CFileInfoHeader** result) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_FileInfoHeader(_CFileInfoHeader* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FileQVBHeader(_CFileQVBHeader** result) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_FileQVBHeader(_CFileQVBHeader* value) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadHeader(VARIANT V) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadFile(VARIANT* V) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadFile_Byte(SAFEARRAY** b) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadFile_Int(SAFEARRAY** i) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadFile_Lng(SAFEARRAY** l) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadFile_Sng(SAFEARRAY** g) noexcept override;
    HRESULT STDMETHODCALLTYPE ReadFile_Dbl(SAFEARRAY** d) noexcept override;
    HRESULT STDMETHODCALLTYPE WriteFile(VARIANT V, long* OutputDataType) noexcept override;
    HRESULT STDMETHODCALLTYPE WriteFile_Byte(SAFEARRAY** b) noexcept override;
    HRESULT STDMETHODCALLTYPE WriteFile_Int(SAFEARRAY** i) noexcept override;
    HRESULT STDMETHODCALLTYPE WriteFile_Lng(SAFEARRAY** l) noexcept override;
    HRESULT STDMETHODCALLTYPE WriteFile_Sng(SAFEARRAY** g) noexcept override;
    HRESULT STDMETHODCALLTYPE WriteFile_Dbl(SAFEARRAY** d) noexcept override;
    HRESULT STDMETHODCALLTYPE get_File(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_File(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ObjNames(SAFEARRAY** result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ObjNames(SAFEARRAY** value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LBound1(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_LBound1(long value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LBound2(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_LBound2(long value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_LBoundAll(long value) noexcept override;

private:
    /// The parts of a file. A call holds them: a client's object that it meets may replace those of this object.
    struct Parts {
        automation::Ref<CFileInfoHeader> information;
        automation::Ref<CFileQVBHeader> matrix;
        automation::Ref<CFile_sNames> names;

        void load_headers(DataFile& file) const;
        void load_names(DataFile& file) const;
    };
    Parts parts();

    /// Of the matrix that is behind the headers.
    using Bounds = std::array<SAFEARRAYBOUND, 2>;
    Bounds bounds_of_data(const DataFile& file, const Parts& parts, VARTYPE type) const;
    automation::Variant read_matrix(DataFile& file, const Parts& parts, VARTYPE type) const;
    void read(VARIANT& target);
    void read(SAFEARRAY** target, VARTYPE type);
    void write(const VARIANT& value, long output_type);
    void write(DataFile& file, const VARIANT& value, long output_type);
    void write(SAFEARRAY** array, VARTYPE type);
    void write(DataFile& file, SAFEARRAY* array, VARTYPE type);

    static automation::Ref<CFileInfoHeader> new_information();

    // made anew where there is none
    automation::Ref<CFileInfoHeader> information_ = new_information();
    automation::Ref<CFileQVBHeader> matrix_;
    automation::Ref<CFile_sNames> names_;
    std::wstring file_;
    long lower1_ = 0, lower2_ = 0;
};
