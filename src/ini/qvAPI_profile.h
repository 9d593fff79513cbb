#pragma once

#include "automation/values.h"

#include <string>
#include <string_view>

/// The members of qvAPI that read and write profile files, one value or one section at a time. All but GetPPs2 do so through the
/// system's functions: texts go to it in its code page, a null text as a null pointer, and its failures are not told.
class qvAPI_profile {
public:
    short GetPrivateProfileString(std::wstring_view Section, std::wstring_view Key, BSTR& sValue, std::wstring_view sFile);
    long GetPPs(std::wstring_view sSection, std::wstring_view sKey, BSTR& sValue, std::wstring_view sFile)
    {
        return GetPrivateProfileString(sSection, sKey, sValue, sFile);
    }
    std::wstring GetPPs2(std::wstring_view sSection, std::wstring_view sKey, std::wstring_view sDefault, std::wstring_view sFile);
    long WritePrivateProfileString(std::wstring_view Section, std::wstring_view Key, std::wstring_view sValue, std::wstring_view sFile);
    long WritePPs(std::wstring_view Section, std::wstring_view Key, std::wstring_view sValue, std::wstring_view sFile)
    {
        return WritePrivateProfileString(Section, Key, sValue, sFile);
    }
    long GetPPSectionStr(std::wstring_view sSection, SAFEARRAY*& sItems, std::wstring_view sFile);
    long GetPPSectionCol(std::wstring_view sSection, IDispatch* cItems, std::wstring_view sFile);
    long GetPPSectionDic(std::wstring_view sSection, IDispatch* dicItems, std::wstring_view sFile);
    long GetPPSectionNamesStr(SAFEARRAY*& sNames, std::wstring_view sFileName);
    long GetPPSectionNamesCol(IDispatch* cNames, std::wstring_view sFileName);
    long GetPPSectionNamesDic(IDispatch* dNames, std::wstring_view sFileName);
};
