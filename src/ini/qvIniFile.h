#pragma once

#include "ini/qvIniSection.h"
#include "ini/qvIniSections.h"

#include <string>

/// An INI file as a tree of sections and parameters. As a section it is the root of its tree.
class qvIniFile final : public automation::Object<qvIniFile, _qvIniFile, _qvIniSection> {
public:
    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_FileName(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_AutoLoad(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_AutoLoad(VARIANT_BOOL value) noexcept override;
    HRESULT STDMETHODCALLTYPE Load(BSTR sFileName) noexcept override;
    HRESULT STDMETHODCALLTYPE Load2(BSTR sFileName, VARIANT_BOOL fHideComments, VARIANT_BOOL fAutoReLoad) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(BSTR sFileName) noexcept override;

    HRESULT STDMETHODCALLTYPE get_qvIniSection_Section(_qvIniSections** result) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_qvIniSection_Section(_qvIniSections* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_qvIniSection_Parameter(_qvIniParameters** result) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_qvIniSection_Parameter(_qvIniParameters* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_qvIniSection_Name(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_qvIniSection_Name(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_qvIniSection_FoundInFile(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_qvIniSection_FoundInFile(VARIANT_BOOL value) noexcept override;

    // _qvIniSection; the members of one name and signature serve both interfaces
    HRESULT STDMETHODCALLTYPE get_Section(_qvIniSections** result) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Section(_qvIniSections* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Parameter(_qvIniParameters** result) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Parameter(_qvIniParameters* value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Name(BSTR value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FoundInFile(VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE put_FoundInFile(VARIANT_BOOL value) noexcept override;

private:
    /// Whether there is a file name, after one that was given has become it.
    bool choose_file(std::wstring_view given);
    void load(std::wstring_view given, bool hide_comments);
    void save(std::wstring_view given);
    /// What comes before every use of the sections.
    HRESULT load_if_due() noexcept;

    std::wstring file_name_;
    bool auto_load_ = false;
    bool loaded_ = false;
    automation::Ref<qvIniSection> root_ = new_root();

    static automation::Ref<qvIniSection> new_root();
};
