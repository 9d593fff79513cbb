' The path members, called with what scripts have in hand.
Dim file, nothingYet, cell, here
Set file = CreateObject("qvObjects.qvFile")
here = CreateObject("Scripting.FileSystemObject").GetAbsolutePathName(".")

Check "the name without extension", "Maﬂ.v2", file.GetFile("C:\Grˆﬂe\Maﬂ.v2.txt", True)
Check "Empty is an empty path", "", file.GetFile(nothingYet)
Check "a number is its text", "17", file.GetFile(17)
Check "a number is a path", "5\", file.qvPathAddBackslash(5)
Check "Empty stays without a backslash", "", file.qvPathAddBackslash(Empty)
cell = 2.5
Check "a number in a variant", CStr(2.5), file.GetFileV(cell)
Check "the cell stays a number", vbDouble, VarType(cell)
Check "nothing in a grid", "", file.qvDirV(Empty, here)
Check "a folder if asked for", here, file.qvDir2(here, "", 16)

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

On Error Resume Next
file.GetPathV Null
CheckError "a folder of Null", 94, "qvObjects", "Invalid use of Null"
file.GetFileV file
CheckTrue "an object without a value has no name", Err.Number <> 0
Err.Clear
file.qvPathAddBackslash Null
CheckErrorNumber "a backslash for Null", 94
file.qvPathGetCharType "a"
CheckError "a member that is not supported", 10001, "qvObjects", "Function not supported"
file.qvPathBuildRoot "C"
CheckErrorNumber "a drive is no letter", 13
file.qvPathCombine "a"
CheckErrorNumber "one path of two", 450
On Error GoTo 0

Done
