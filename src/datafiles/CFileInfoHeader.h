#pragma once

#include "automation/object.h"
#include "datafiles/data_file.h"
#include "datafiles/qvb_format.h"

#include <qvObjects_contract.h>

/// The information header at the start of a binary data file.
class CFileInfoHeader final : public automation::Object<CFileInfoHeader, _CFileInfoHeader> {
public:
    CFileInfoHeader();
    /// The header of a file of this kind.
    CFileInfoHeader(std::int32_t version, std::string_view file_type);

    void load(DataFile& file);
    void save(DataFile& file) const;

    HRESULT STDMETHODCALLTYPE Load(long lFile) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(long lFile) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ID_NIF(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ID_QVD(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ID_QVB(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Version(long value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Version(long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_FileType(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FileType(BSTR* result) noexcept override;

private:
    qvb::InformationHeader header_;
};
