' The members of qvFile that look at folders and files, called with what scripts have in hand.
Dim files, fso, place, path
Set files = CreateObject("qvObjects.qvFile")
Set fso = CreateObject("Scripting.FileSystemObject")
place = fso.BuildPath(fso.GetSpecialFolder(2).Path, fso.GetTempName) ' 2: the folder for temporary files

files.qvMkDirMulti place & "\Größe\b"
CheckTrue "a folder with its parents", fso.FolderExists(place & "\Größe\b")
WriteFile place & "\Größe\ä.txt", "x"
path = place
files.WalkDirTree path, "*.*"
Check "the variable got its backslash", place & "\", path
files.WalkDirTree place & "\Größe", "*", 2

Check "a file", True, files.CheckFile(place & "\Größe\ä.txt")
Check "no file, and no message", False, files.CheckFile(place & "\missing.txt", "never shown")
Check "no path", False, files.CheckPath(Empty)
Check "a file may be written", True, files.CheckForWrite(place & "\Größe\ä.txt", "", False)

On Error Resume Next
files.DelFile place & "\missing.txt"
CheckError "deleting a missing file", 53, "qvObjects", "File not found"
files.qvKill place & "\missing.txt"
Check "qvKill never complains", 0, Err.Number
files.WalkDirTree place
CheckErrorNumber "a walk without a pattern", 450
files.ClearFolder Null
CheckErrorNumber "clearing Null", 94
On Error GoTo 0

Check "clearing a folder", 0, files.ClearFolder(place & "\Größe")
Check "it is empty", True, files.PathIsEmpty(place & "\Größe")
CheckTrue "but there", fso.FolderExists(place & "\Größe")
Check "clearing it all", 0, files.ClearFolder(place, False)
fso.DeleteFolder place

Done
