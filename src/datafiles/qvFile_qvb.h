#pragma once

#include "automation/object.h"
#include "datafiles/CFileInfoHeader.h"
#include "datafiles/CFileQVBHeader.h"
#include "datafiles/CFile_sNames.h"
#include "datafiles/matrix_elements.h"

#include <qvObjects_contract.h>

#include <string>

/// A QVB file: a matrix of objects (rows) and features (columns) in binary form.
class qvFile_qvb final : public automation::Object<qvFile_qvb, faces::qvFile_qvb> {
public:
    automation::Ref<CFileInfoHeader> get_FileInfoHeader() { return parts().information; }
    void putref_FileInfoHeader(_CFileInfoHeader* value);
    automation::Ref<CFileQVBHeader> get_FileQVBHeader() { return parts().matrix; }
    void putref_FileQVBHeader(_CFileQVBHeader* value);
    void ReadHeader(const VARIANT& V);
    void ReadFile(VARIANT* V);
    void ReadFile_Byte(SAFEARRAY** b) { read(b, VT_UI1); }
    void ReadFile_Int(SAFEARRAY** i) { read(i, VT_I2); }
    void ReadFile_Lng(SAFEARRAY** l) { read(l, VT_I4); }
    void ReadFile_Sng(SAFEARRAY** g) { read(g, VT_R4); }
    void ReadFile_Dbl(SAFEARRAY** d) { read(d, VT_R8); }
    void WriteFile(const VARIANT& V, const long* OutputDataType);
    void WriteFile_Byte(SAFEARRAY** b) { write(b, VT_UI1); }
    void WriteFile_Int(SAFEARRAY** i) { write(i, VT_I2); }
    void WriteFile_Lng(SAFEARRAY** l) { write(l, VT_I4); }
    void WriteFile_Sng(SAFEARRAY** g) { write(g, VT_R4); }
    void WriteFile_Dbl(SAFEARRAY** d) { write(d, VT_R8); }
    std::wstring_view get_File() const { return file_; }
    void put_File(std::wstring_view value) { file_ = value; }
    automation::Variant get_ObjNames() const noexcept;
    void put_ObjNames(SAFEARRAY** value) noexcept;
    long get_LBound1() const { return lower1_; }
    void put_LBound1(long value) { lower1_ = value; }
    long get_LBound2() const { return lower2_; }
    void put_LBound2(long value) { lower2_ = value; }
    void put_LBoundAll(long value) { lower1_ = lower2_ = value; }

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

    qvb::Bounds bounds_of_data(const DataFile& file, const Parts& parts, VARTYPE type) const;
    void read(SAFEARRAY** target, VARTYPE type);
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
