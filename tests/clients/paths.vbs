' The path members, called with what scripts have in hand.
Dim file
Set file = CreateObject("qvObjects.qvFile")

' ---- Names ----

Check "the folder of a path", "C:\Grˆﬂe", file.GetPath("C:\Grˆﬂe\Maﬂ.txt")
Check "the name in a path", "Maﬂ.v2.txt", file.GetFile("C:\Grˆﬂe\Maﬂ.v2.txt")
Check "the name without extension", "Maﬂ.v2", file.GetFile("C:\Grˆﬂe\Maﬂ.v2.txt", True)
Check "an extension", "txt", file.GetExtension("C:\a\b.txt")
Check "a path without extension", "C:\x", file.RemoveExtension("C:\x.y\z")
Check "a path below an application", "\data\x.txt", file.GetRelPath("C:\App\data\x.txt", "c:\APP")

Dim nothingYet, cell
Check "Empty is an empty path", "", file.GetFile(nothingYet)
Check "a number is its text", "17", file.GetFile(17)
cell = 2.5
Check "a number in a variant", CStr(2.5), file.GetFileV(cell)
Check "the cell stays a number", vbDouble, VarType(cell)
Check "a grid's path below", "\b", file.GetRelPathV("C:\a\b", "C:\a")

' ---- Files that are there ----

Dim files, here
Set files = CreateObject("Scripting.FileSystemObject")
here = files.GetAbsolutePathName(TestFile("."))
WriteFile TestFile("Maﬂ.txt"), "x"

Check "a file below the application", here & "\Maﬂ.txt", file.qvDir("\Maﬂ.txt", here)
Check "a file by its name", here & "\Maﬂ.txt", file.qvDir("Maﬂ.txt", here)
Check "a file by its full path", here & "\Maﬂ.txt", file.qvDir(here & "\Maﬂ.txt", "C:\none")
Check "with a wildcard", here & "\Ma*.txt", file.qvDir("\Ma*.txt", here)
Check "there and back", here & "\Maﬂ.txt", file.qvDir(file.GetRelPath(here & "\Maﬂ.txt", here), here)
Check "no such file", "", file.qvDir("\none.txt", here)
Check "a folder is no file", "", file.qvDir(here, "")
Check "a folder if asked for", here, file.qvDir2(here, "", 16)
Check "nothing in a grid", "", file.qvDirV(Empty, here)

' ---- The shell's functions ----

Check "the name after the first part", "dir\file.txt", file.qvPathFindFileName("C:\dir\file.txt")

Dim extension, path, icon, room
extension = "txt"
Check "an extension is added", "C:\Maﬂ.txt", file.qvPathAddExtension("C:\Maﬂ", extension)
Check "and keeps its dot", ".txt", extension
path = "C:\a\b"
Check "down to the root", True, file.qvPathStripToRoot(path)
Check "the root is left", "C:\", path
icon = "C:\Maﬂ.dll,-7"
Check "an icon's index", -7, file.qvPathParseIconLocation(icon)
Check "an icon's file", "C:\Maﬂ.dll" & Chr(0) & "-7", icon
room = Space(260)
Check "a full path", True, file.qvPathSearchAndQualify("C:\a\..\Maﬂ.txt", room)
Check "is in the room for it", "C:\Maﬂ.txt", Left(room, InStr(room, Chr(0)) - 1)
Check "whose length stays", 260, Len(room)
Check "a number is a path", "5\", file.qvPathAddBackslash(5)
Check "Empty stays without a backslash", "", file.qvPathAddBackslash(Empty)

' ---- Wrong calls ----

On Error Resume Next
file.GetPathV Null
CheckError "a folder of Null", 94, "qvObjects", "Invalid use of Null"
file.qvDirV "x", Null
CheckError "a file below Null", 94, "qvObjects", "Invalid use of Null"
file.GetFileV files
CheckTrue "an object without a value has no name", Err.Number <> 0
Err.Clear
file.qvPathAddBackslash Null
CheckErrorNumber "a backslash for Null", 94
file.qvPathAddBackslash String(261, "a")
CheckError "too long a path", 5, "qvObjects", "Invalid procedure call or argument"
file.qvPathGetCharType "a"
CheckError "a member that is not supported", 10001, "qvObjects", "Function not supported"
file.qvPathBuildRoot "C"
CheckErrorNumber "a drive is no letter", 13
file.GetPath
CheckErrorNumber "no path", 450
file.qvPathCombine "a"
CheckErrorNumber "one path of two", 450
On Error GoTo 0

files.DeleteFile TestFile("Maﬂ.txt")
Done
