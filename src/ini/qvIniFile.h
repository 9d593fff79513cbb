#pragma once

#include "ini/qvIniSection.h"
#include "ini/qvIniSections.h"

#include <string>

/// An INI file as a tree of sections and parameters. As a section it is the root of its tree.
class qvIniFile final : public automation::Object<qvIniFile, faces::qvIniFile, faces::qvIniSection> {
public:
    std::wstring_view get_FileName() const { return file_name_; }
    void put_FileName(std::wstring_view value) { file_name_ = value; }
    bool get_AutoLoad() const { return auto_load_; }
    void put_AutoLoad(bool value) { auto_load_ = value; }
    void Load(std::wstring_view sFileName) { Load2(sFileName, false, false); }
    void Load2(std::wstring_view sFileName, bool fHideComments, bool fAutoReLoad);
    void Save(std::wstring_view sFileName);

    // _qvIniSection, whose members stand in the other interface too
    automation::Ref<qvIniSections> get_Section();
    void putref_Section(_qvIniSections* value);
    automation::Ref<qvIniParameters> get_Parameter() { return root_->get_Parameter(); }
    void putref_Parameter(_qvIniParameters* value) { root_->putref_Parameter(value); }
    std::wstring_view get_Name() const { return root_->get_Name(); }
    void put_Name(std::wstring_view value) { root_->put_Name(value); }
    bool get_FoundInFile() const { return root_->get_FoundInFile(); }
    void put_FoundInFile(bool value) { root_->put_FoundInFile(value); }

    automation::Ref<qvIniSections> get_qvIniSection_Section() { return get_Section(); }
    void putref_qvIniSection_Section(_qvIniSections* value) { putref_Section(value); }
    automation::Ref<qvIniParameters> get_qvIniSection_Parameter() { return get_Parameter(); }
    void putref_qvIniSection_Parameter(_qvIniParameters* value) { putref_Parameter(value); }
    std::wstring_view get_qvIniSection_Name() const { return get_Name(); }
    void put_qvIniSection_Name(std::wstring_view value) { put_Name(value); }
    bool get_qvIniSection_FoundInFile() const { return get_FoundInFile(); }
    void put_qvIniSection_FoundInFile(bool value) { put_FoundInFile(value); }

private:
    /// Whether there is a file name, after one that was given has become it.
    bool choose_file(std::wstring_view given);
    /// What comes before every use of the sections.
    void load_if_due();

    std::wstring file_name_;
    bool auto_load_ = false;
    bool loaded_ = false;
    automation::Ref<qvIniSection> root_ = new_root();

    static automation::Ref<qvIniSection> new_root();
};
