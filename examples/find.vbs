' Finds the files of a folder, and of all below it, that a pattern matches. Run it with the 32-bit script host:
'     cscript //nologo find.vbs [FOLDER [PATTERN]]
Set files = WScript.CreateObject("qvObjects.qvFile", "files_") ' its events call what begins with files_
Set fso = CreateObject("Scripting.FileSystemObject")
pattern = "*.nif"
If WScript.Arguments.Count > 1 Then pattern = WScript.Arguments(1)
If WScript.Arguments.Count > 0 Then
    top = WScript.Arguments(0)
Else
    top = fso.BuildPath(fso.GetSpecialFolder(2).Path, "stations") ' 2: the user's folder for temporary files
    files.qvMkDirMulti top & "\north\2026" ' with all folders above it
    fso.CreateTextFile(top & "\list.txt").Close
    fso.CreateTextFile(top & "\north\levels.nif").Close
    fso.CreateTextFile(top & "\north\2026\march.nif").Close
End If

count = 0
Sub files_ItemFound(path, name, cancel)
    count = count + 1
    WScript.Echo path & name
End Sub
files.WalkDirTree top, pattern
WScript.Echo count & " files"
