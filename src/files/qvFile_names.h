#pragma once

#include "automation/border.h"
#include "files/path_names.h"

/// The members of qvFile that take paths apart, and find files seen from an application's folder.
class qvFile_names {
    using Text = automation::Text;

public:
    std::wstring_view GetPath(BSTR File) { return files::GetPath(automation::view(File)); }
    std::wstring_view GetFile(BSTR* File, const VARIANT_BOOL* NoExtension) noexcept;
    Text GetPathV(const VARIANT& vFile) { return Text{files::GetPath(automation::to_text(vFile))}; }
    Text GetFileV(const VARIANT& vFile) { return Text{files::GetFile(automation::to_text(vFile))}; }
    std::wstring qvDir(BSTR* sFile, BSTR* sAppPath) noexcept;
    std::wstring qvDir2(BSTR* sFile, BSTR* sAppPath, long* A) noexcept;
    std::wstring qvDirV(const VARIANT& vFile, VARIANT* vAppPath);
    std::wstring GetRelPath(BSTR* sFile, BSTR* sAppPath) noexcept;
    std::wstring GetRelPathV(const VARIANT& vFile, VARIANT* vAppPath);
    std::wstring_view GetExtension(BSTR* sFile) noexcept;
    std::wstring_view RemoveExtension(BSTR sFile) { return files::RemoveExtension(automation::view(sFile)); }
};
