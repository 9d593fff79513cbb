#pragma once

#include "automation/object.h"
#include "datafiles/data_file.h"
#include "datafiles/qvb_format.h"

#include <qvObjects_contract.h>

/// The fixed header of a QVB file.
class CFileQVBHeader final : public automation::Object<CFileQVBHeader, faces::CFileQVBHeader> {
public:
    qvb::MatrixHeader& fields() noexcept { return fields_; }
    void load(DataFile& file) { qvb::read(file, fields_); }
    void save(DataFile& file) const { file.write(qvb::bytes_of(fields_)); }

    void Load(long lFile) { load(DataFile::with_number(lFile)); }
    void Save(long lFile) const { save(DataFile::with_number(lFile)); }
    long get_MCount() const { return fields_.objects; }
    void put_MCount(long value) { fields_.objects = value; }
    long get_x() const { return fields_.x; }
    void put_x(long value) { fields_.x = value; }
    long get_y() const { return fields_.y; }
    void put_y(long value) { fields_.y = value; }
    long get_Planes() const { return fields_.planes; }
    void put_Planes(long value) { fields_.planes = value; }
    qvDataType get_DataType() const { return static_cast<qvDataType>(fields_.element); }
    void put_DataType(qvDataType value) { fields_.element = value; }
    bool get_Transpose() const { return fields_.transpose; }
    void put_Transpose(bool value) { fields_.transpose = value; }
    bool get_ObjNames() const { return fields_.object_names; }
    void put_ObjNames(bool value) { fields_.object_names = value; }
    bool get_FeatNames() const { return fields_.feature_names; }
    long get_ExtHeader() const { return fields_.extended_header; }

private:
    qvb::MatrixHeader fields_;
};
