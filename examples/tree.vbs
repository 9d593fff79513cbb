' Lists a folder with all that lies below it: the paths seen from there, which folders are empty, which files can't be
' written. On Windows a script can also hear of each file from WalkDirTree: create the object with
'     Set files = WScript.CreateObject("qvObjects.qvFile", "files_")
' and write a Sub files_ItemFound(path, name, cancel). Wine's script host knows no events. Run it with the 32-bit script host:
'     cscript //nologo tree.vbs [FOLDER]
Option Explicit

Dim files, fso, top
Set files = CreateObject("qvObjects.qvFile")
Set fso = CreateObject("Scripting.FileSystemObject")
top = "."
If WScript.Arguments.Count > 0 Then top = WScript.Arguments(0)
top = fso.GetAbsolutePathName(top)
If Not files.CheckPath(top) Then
    WScript.Echo "There is no folder " & top
    WScript.Quit 1
End If
List fso.GetFolder(top), ""

Sub List(folder, indent)
    Dim entry, note
    note = ""
    If files.PathIsEmpty(folder.Path) Then note = " (empty)"
    WScript.Echo indent & folder.Name & note
    For Each entry In folder.Files
        note = ""
        If Not files.CheckForWrite(entry.Path) Then note = " (read-only)"
        WScript.Echo indent & "  " & files.GetRelPath(entry.Path, top) & note
    Next
    For Each entry In folder.SubFolders
        List entry, indent & "  "
    Next
End Sub
