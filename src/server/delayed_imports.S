# The functions of libraries that take long to load: a client that needs none of them doesn't wait for them. A function
# of theirs that is missing here would be imported at once, with its library: tests/tools/library_test finds that.

#include "server/delayed_import.inc"

# Where what the imports lay out begins and ends: the linker sorts such sections by their names.
        .section .data$delayed_a, "dw"
        .balign 4
        .globl  _first_import
_first_import:
        .section .data$delayed_c, "dw"
        .balign 4
        .globl  _end_of_imports
_end_of_imports:

        import  comctl32, InitCommonControlsEx, 4

        import  gdi32, AbortDoc, 4
        import  gdi32, CreateBitmap, 20
        import  gdi32, CreateDCW, 16
        import  gdi32, CreateFontIndirectW, 4
        import  gdi32, CreateICW, 16
        import  gdi32, CreatePatternBrush, 4
        import  gdi32, DeleteDC, 4
        import  gdi32, DeleteEnhMetaFile, 4
        import  gdi32, DeleteObject, 4
        import  gdi32, EndDoc, 4
        import  gdi32, EndPage, 4
        import  gdi32, EnumFontFamiliesExW, 20
        import  gdi32, GetDeviceCaps, 8
        import  gdi32, GetObjectType, 4
        import  gdi32, GetPaletteEntries, 16
        import  gdi32, GetTextExtentPoint32W, 16
        import  gdi32, ModifyWorldTransform, 12
        import  gdi32, PlayEnhMetaFile, 12
        import  gdi32, RestoreDC, 8
        import  gdi32, SaveDC, 4
        import  gdi32, SelectObject, 8
        import  gdi32, SetEnhMetaFileBits, 8
        import  gdi32, SetLayout, 8
        import  gdi32, SetMapMode, 8
        import  gdi32, SetViewportOrgEx, 16
        import  gdi32, SetWindowOrgEx, 16
        import  gdi32, StartDocW, 8
        import  gdi32, StartPage, 4

        import  shell32, SHBrowseForFolderW, 4
        import  shell32, SHFileOperationW, 4
        import  shell32, SHGetPathFromIDListW, 8
        import  shell32, SHGetSpecialFolderLocation, 12

        import  shlwapi, PathAddBackslashW, 4
        import  shlwapi, PathAddExtensionW, 8
        import  shlwapi, PathAppendW, 8
        import  shlwapi, PathBuildRootW, 8
        import  shlwapi, PathCanonicalizeW, 8
        import  shlwapi, PathCombineW, 12
        import  shlwapi, PathCommonPrefixW, 12
        import  shlwapi, PathCompactPathExW, 16
        import  shlwapi, PathCompactPathW, 12
        import  shlwapi, PathFileExistsW, 4
        import  shlwapi, PathFindExtensionW, 4
        import  shlwapi, PathFindNextComponentW, 4
        import  shlwapi, PathGetArgsW, 4
        import  shlwapi, PathGetDriveNumberW, 4
        import  shlwapi, PathIsDirectoryW, 4
        import  shlwapi, PathIsFileSpecW, 4
        import  shlwapi, PathIsPrefixW, 8
        import  shlwapi, PathIsRelativeW, 4
        import  shlwapi, PathIsRootW, 4
        import  shlwapi, PathIsSameRootW, 8
        import  shlwapi, PathIsUNCW, 4
        import  shlwapi, PathIsURLW, 4
        import  shlwapi, PathMakePrettyW, 4
        import  shlwapi, PathMatchSpecW, 8
        import  shlwapi, PathParseIconLocationW, 4
        import  shlwapi, PathQuoteSpacesW, 4
        import  shlwapi, PathRelativePathToW, 20
        import  shlwapi, PathRemoveArgsW, 4
        import  shlwapi, PathRemoveBackslashW, 4
        import  shlwapi, PathRemoveBlanksW, 4
        import  shlwapi, PathRemoveExtensionW, 4
        import  shlwapi, PathRemoveFileSpecW, 4
        import  shlwapi, PathRenameExtensionW, 8
        import  shlwapi, PathSearchAndQualifyW, 12
        import  shlwapi, PathSetDlgItemPathW, 12
        import  shlwapi, PathSkipRootW, 4
        import  shlwapi, PathStripPathW, 4
        import  shlwapi, PathStripToRootW, 4
        import  shlwapi, PathUnquoteSpacesW, 4
        import  shlwapi, SHAutoComplete, 8

        import  user32, AdjustWindowRectEx, 16
        import  user32, CallWindowProcA, 20
        import  user32, ChangeDisplaySettingsA, 8
        import  user32, CreateWindowExA, 48
        import  user32, CreateWindowExW, 48
        import  user32, DefWindowProcA, 16
        import  user32, DestroyWindow, 4
        import  user32, DialogBoxIndirectParamW, 20
        import  user32, DispatchMessageW, 4
        import  user32, DrawEdge, 16
        import  user32, DrawFrameControl, 16
        import  user32, DrawTextExA, 24
        import  user32, DrawTextW, 20
        import  user32, EndDialog, 8
        import  user32, EnumDisplaySettingsA, 12
        import  user32, EnumWindows, 8
        import  user32, FillRect, 12
        import  user32, FindWindowExA, 16
        import  user32, GetActiveWindow, 0
        import  user32, GetClassLongA, 8
        import  user32, GetClassNameA, 12
        import  user32, GetClientRect, 8
        import  user32, GetDC, 4
        import  user32, GetDlgItem, 8
        import  user32, GetMonitorInfoW, 8
        import  user32, GetPropA, 8
        import  user32, GetSysColor, 4
        import  user32, GetSysColorBrush, 4
        import  user32, GetSystemMetrics, 4
        import  user32, GetWindow, 8
        import  user32, GetWindowLongA, 8
        import  user32, GetWindowLongW, 8
        import  user32, GetWindowRect, 8
        import  user32, GetWindowTextA, 12
        import  user32, GetWindowTextLengthA, 4
        import  user32, GetWindowTextLengthW, 4
        import  user32, GetWindowTextW, 12
        import  user32, GetWindowThreadProcessId, 8
        import  user32, IsIconic, 4
        import  user32, IsRectEmpty, 4
        import  user32, IsWindow, 4
        import  user32, IsWindowVisible, 4
        import  user32, KillTimer, 8
        import  user32, MessageBoxW, 16
        import  user32, MonitorFromWindow, 8
        import  user32, PeekMessageW, 20
        import  user32, PostQuitMessage, 4
        import  user32, PostThreadMessageW, 16
        import  user32, RedrawWindow, 16
        import  user32, ReleaseDC, 8
        import  user32, RemovePropA, 8
        import  user32, SendMessageA, 16
        import  user32, SendMessageW, 16
        import  user32, SetFocus, 4
        import  user32, SetPropA, 12
        import  user32, SetTimer, 16
        import  user32, SetWindowLongA, 12
        import  user32, SetWindowLongW, 12
        import  user32, SetWindowPos, 28
        import  user32, SetWindowTextW, 8
        import  user32, SystemParametersInfoW, 16
        import  user32, TranslateMessage, 4
        import  user32, wsprintfW

        import  winspool.drv, GetDefaultPrinterW, 8
