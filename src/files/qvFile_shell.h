#pragma once

#include <qvObjects_contract.h>

#include <string>
#include <string_view>

/// The members of qvFile that the platform's shell is asked for.
class qvFile_shell {
public:
    std::wstring SelectFolder95(long StartFolderID, IDispatch* Owner, std::wstring_view stTitle, long Flags);
    std::wstring qvGetSpecialFolderPath(qvECSIDL nFolder, bool fBackSlashEnd);
    /// `sFile` may be several, with a NUL between them.
    bool qvMoveToRecycle(std::wstring_view sFile, bool fShowMessages);
    std::wstring GetShortFileName(std::wstring_view sLongFileName);
    /// The path with every part behind the drive as the folder above it has it; empty when one of them is missing.
    std::wstring GetLongFilename(std::wstring_view sShortFileName);
};
