#pragma once

#include "automation/code_page.h"
#include "automation/object.h"
#include "datafiles/data_file.h"
#include "datafiles/qvb_format.h"

#include <qvObjects_contract.h>

/// The information header at the start of a binary data file.
class CFileInfoHeader final : public automation::Object<CFileInfoHeader, faces::CFileInfoHeader> {
public:
    CFileInfoHeader();
    /// The header of a file of this kind.
    CFileInfoHeader(std::int32_t version, std::string_view file_type);

    void load(DataFile& file) { qvb::read(file, header_); }
    void save(DataFile& file) const { file.write(qvb::bytes_of(header_)); }

    void Load(long lFile) { load(DataFile::with_number(lFile)); }
    void Save(long lFile) const { save(DataFile::with_number(lFile)); }
    std::wstring get_ID_NIF() const { return automation::decode(qvb::ID_NIF); }
    std::wstring get_ID_QVD() const { return automation::decode(qvb::ID_QVD); }
    std::wstring get_ID_QVB() const { return automation::decode(qvb::ID_QVB); }
    long get_Version() const { return header_.version; }
    void put_Version(long value) { header_.version = value; }
    std::wstring get_FileType() const { return automation::decode(header_.file_type); }
    void put_FileType(std::wstring_view value);

private:
    qvb::InformationHeader header_;
};
