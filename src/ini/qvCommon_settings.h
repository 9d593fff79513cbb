#pragma once

#include "ini/settings_store.h"
#include "ini/truth_words.h"

/// The members of qvCommon that keep settings of the user: each application has one section of them.
class qvCommon_settings {
public:
    std::wstring ReadKey(std::wstring_view sSection, std::wstring_view sKey, std::wstring_view Default)
    {
        std::wstring stored = settings::read(place(sSection, sKey), {});
        return stored.empty() ? std::wstring{Default} : stored;
    }
    bool ReadKeyF(std::wstring_view sSection, std::wstring_view sKey, bool fDefault)
    {
        return settings::truth_in_words_or_digits(settings::read(place(sSection, sKey), {})).value_or(fDefault);
    }
    void WriteKey(std::wstring_view sSection, std::wstring_view sKey, std::wstring_view sValue)
    {
        settings::write(place(sSection, sKey), sValue);
    }

private:
    static settings::Place place(std::wstring_view application, std::wstring_view key) { return {application, L"Settings", key}; }
};
