#include "ini/qvIniFile.h"

#include "files/text_file.h"
#include "ini/ini_format.h"

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

void qvIniFile::load_if_due()
{
    if (auto_load_ && !loaded_)
        Load({});
}

void qvIniFile::Load2(std::wstring_view sFileName, bool fHideComments, bool)
{
    if (!choose_file(sFileName))
        return;
    files::TextInput file{file_name_};
    ini::read(root_->node(), [&] { return file.next(); }, fHideComments);
    loaded_ = true;
}

void qvIniFile::Save(std::wstring_view sFileName)
{
    if (!choose_file(sFileName))
        return;
    files::TextOutput file{file_name_};
    ini::write(root_->node(), [&](std::wstring_view text) { file.write(text); });
    file.commit();
}

automation::Ref<qvIniSections> qvIniFile::get_Section()
{
    load_if_due();
    return root_->get_Section();
}

void qvIniFile::putref_Section(_qvIniSections* value)
{
    load_if_due();
    root_->putref_Section(value);
}
