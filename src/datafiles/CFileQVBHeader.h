#pragma once

#include "automation/object.h"
#include "datafiles/data_file.h"
#include "datafiles/qvb_format.h"

#include <qvObjects_contract.h>

/// The fixed header of a QVB file.
class CFileQVBHeader final : public automation::Object<CFileQVBHeader, _CFileQVBHeader> {
public:
    qvb::MatrixHeader& fields() noexcept { return fields_; }
    void load(DataFile& file) { qvb::read(file, fields_); }
    void save(DataFile& file) const { file.write(qvb::bytes_of(fields_)); }

    HRESULT STDMETHODCALLTYPE Load(long lFile) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(long lFile) noexcept override;
    HRESULT STDMETHODCALLTYPE get_MCount(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_MCount(long value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_x(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_x(long value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_y(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_y(long value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Planes(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Planes(long value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DataType(qvDataType* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_DataType(qvDataType value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Transpose(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Transpose(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ObjNames(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ObjNames(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FeatNames(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ExtHeader(long* result) noexcept override;

private:
    qvb::MatrixHeader fields_;
};
