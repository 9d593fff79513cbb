' The members of qvFile that look at folders and files, called with what scripts have in hand.
Dim files, fso, common, place, path
Set files = CreateObject("qvObjects.qvFile")
Set common = CreateObject("qvObjects.qvCommon")
Set fso = CreateObject("Scripting.FileSystemObject")
place = fso.BuildPath(fso.GetSpecialFolder(2).Path, fso.GetTempName) ' 2: the folder for temporary files

files.qvMkDirMulti place & "\Größe\b\c\"
CheckTrue "a folder with its parents", fso.FolderExists(place & "\Größe\b\c")
files.qvMkDirMulti place & "\Größe\b\c\"
WriteFile place & "\a.txt", "x"
WriteFile place & "\Größe\ä.txt", "x"

path = place
files.WalkDirTree path, "*.*"
Check "the variable got its backslash", place & "\", path
files.WalkDirTree place & "\Größe", "*", 2
files.WalkDirTree place & "\missing", "*", 1, 0

Check "a file", True, files.CheckFile(place & "\Größe\ä.txt")
Check "a pattern", True, files.CheckFile(place & "\*.txt")
Check "a folder is no file", False, files.CheckFile(place & "\Größe")
Check "no file", False, files.CheckFile(place & "\missing.txt", "never shown")
Check "a folder", True, files.CheckPath(place & "\Größe")
Check "a file passes as a path", True, files.CheckPath(place & "\a.txt")
Check "an empty folder with its backslash", False, files.CheckPath(place & "\Größe\b\c\")
Check "no path", False, files.CheckPath("")

Check "a new file may be written", True, files.CheckForWrite(place & "\new.txt")
Check "a file may be written", True, files.CheckForWrite(place & "\a.txt", "", False)
Check "a folder may not", False, files.CheckForWrite(place)
fso.GetFile(place & "\a.txt").Attributes = 1 ' read-only
Check "a read-only file may not", False, files.CheckForWrite(place & "\a.txt")

On Error Resume Next
files.DelFile place & "\a.txt"
CheckError "deleting a read-only file", 75, "qvObjects", "Path/File access error"
files.DelFile place & "\missing.txt"
CheckError "deleting a missing file", 53, "qvObjects", "File not found"
files.DelFile place & "\missing\*.txt"
CheckError "deleting in a missing folder", 53, "qvObjects", "File not found"
files.qvKill place & "\a.txt"
files.qvKill place & "\missing.txt"
Check "qvKill never complains", 0, Err.Number
files.qvChDir place & "\missing"
CheckError "going to a missing folder", 76, "qvObjects", "Path not found"
files.qvMkDirMulti place & "\a.txt\b"
CheckError "a file in the way", 75, "qvObjects", "Path/File access error"
files.WalkDirTree place
CheckErrorNumber "a walk without a pattern", 450
files.ClearFolder Null
CheckErrorNumber "clearing Null", 94
On Error GoTo 0
CheckTrue "the read-only file is still there", fso.FileExists(place & "\a.txt")

Check "not empty", False, files.PathIsEmpty(place & "\Größe")
Check "empty", True, files.PathIsEmpty(place & "\Größe\b\c")
Check "deleting a file", True, files.DelFile(place & "\Größe\ä.txt")
CheckTrue "it is gone", Not fso.FileExists(place & "\Größe\ä.txt")

files.qvChDir place
CheckTrue "the current folder", LCase(fso.GetAbsolutePathName(".")) = LCase(fso.GetFolder(place).Path)
WriteFile place & "\Größe\b\x.txt", "x"
Check "clearing a missing folder", 0, files.ClearFolder(place & "\missing")
Check "clearing a folder", 0, files.ClearFolder("Größe")
CheckTrue "only the folder is left", fso.FolderExists(place & "\Größe") And files.PathIsEmpty(place & "\Größe")
Check "clearing it all", 0, files.ClearFolder(place, False)
files.qvChDir fso.GetParentFolderName(place)
fso.DeleteFolder place

Done
