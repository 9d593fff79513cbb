#include "ini/qvIniFile.h"

#include "files/text_file.h"
#include "ini/ini_format.h"

using automation::answer;
using automation::view;

automation::Ref<qvIniSection> qvIniFile::new_root()
{
    auto root = automation::make<qvIniSection>(*ini::Section::create());
    root->node().set_found_in_file(true);
    return root;
}

bool qvIniFile::choose_file(std::wstring_view given)
{
    if (!given.empty())
        file_name_ = given;
    return !file_name_.empty();
}

void qvIniFile::load(std::wstring_view given, bool hide_comments)
{
    if (!choose_file(given))
        return;
    files::TextInput file{file_name_};
    ini::read(root_->node(), [&] { return file.next(); }, hide_comments);
    loaded_ = true;
}

void qvIniFile::save(std::wstring_view given)
{
    if (!choose_file(given))
        return;
    files::TextOutput file{file_name_};
    ini::write(root_->node(), [&](std::wstring_view text) { file.write(text); });
    file.commit();
}

HRESULT qvIniFile::load_if_due() noexcept
{
    return loaded_ || !auto_load_ ? S_OK : Load(nullptr);
}

HRESULT qvIniFile::get_FileName(BSTR* result) noexcept
{
    return answer(result, [&] { return std::wstring_view{file_name_}; });
}

HRESULT qvIniFile::put_FileName(BSTR value) noexcept
{
    return answer([&] { file_name_ = view(value); });
}

HRESULT qvIniFile::get_AutoLoad(VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return auto_load_; });
}

HRESULT qvIniFile::put_AutoLoad(VARIANT_BOOL value) noexcept
{
    return answer([&] { auto_load_ = value != VARIANT_FALSE; });
}

HRESULT qvIniFile::Load(BSTR sFileName) noexcept
{
    return answer([&] { load(view(sFileName), false); });
}

HRESULT qvIniFile::Load2(BSTR sFileName, VARIANT_BOOL fHideComments, VARIANT_BOOL) noexcept
{
    return answer([&] { load(view(sFileName), fHideComments != VARIANT_FALSE); });
}

HRESULT qvIniFile::Save(BSTR sFileName) noexcept
{
    return answer([&] { save(view(sFileName)); });
}

HRESULT qvIniFile::get_Section(_qvIniSections** result) noexcept
{
    if (!result)
        return E_POINTER;
    *result = nullptr;
    const HRESULT loaded = load_if_due();
    return FAILED(loaded) ? loaded : root_->get_Section(result);
}

HRESULT qvIniFile::putref_Section(_qvIniSections* value) noexcept
{
    const HRESULT loaded = load_if_due();
    return FAILED(loaded) ? loaded : root_->putref_Section(value);
}

HRESULT qvIniFile::get_Parameter(_qvIniParameters** result) noexcept
{
    return root_->get_Parameter(result);
}

HRESULT qvIniFile::putref_Parameter(_qvIniParameters* value) noexcept
{
    return root_->putref_Parameter(value);
}

HRESULT qvIniFile::get_Name(BSTR* result) noexcept
{
    return root_->get_Name(result);
}

HRESULT qvIniFile::put_Name(BSTR value) noexcept
{
    return root_->put_Name(value);
}

HRESULT qvIniFile::get_FoundInFile(VARIANT_BOOL* result) noexcept
{
    return root_->get_FoundInFile(result);
}

HRESULT qvIniFile::put_FoundInFile(VARIANT_BOOL value) noexcept
{
    return root_->put_FoundInFile(value);
}

HRESULT qvIniFile::get_qvIniSection_Section(_qvIniSections** result) noexcept
{
    return get_Section(result);
}

HRESULT qvIniFile::putref_qvIniSection_Section(_qvIniSections* value) noexcept
{
    return putref_Section(value);
}

HRESULT qvIniFile::get_qvIniSection_Parameter(_qvIniParameters** result) noexcept
{
    return get_Parameter(result);
}

HRESULT qvIniFile::putref_qvIniSection_Parameter(_qvIniParameters* value) noexcept
{
    return putref_Parameter(value);
}

HRESULT qvIniFile::get_qvIniSection_Name(BSTR* result) noexcept
{
    return get_Name(result);
}

HRESULT qvIniFile::put_qvIniSection_Name(BSTR value) noexcept
{
    return put_Name(value);
}

HRESULT qvIniFile::get_qvIniSection_FoundInFile(VARIANT_BOOL* result) noexcept
{
    return get_FoundInFile(result);
}

HRESULT qvIniFile::put_qvIniSection_FoundInFile(VARIANT_BOOL value) noexcept
{
    return put_FoundInFile(value);
}
