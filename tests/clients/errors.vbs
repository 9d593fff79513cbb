' Errors of the library: number, source and description, and the option for the language of its messages.
Dim common, ini, nothingHere
Set common = CreateObject("qvObjects.qvCommon")
Set ini = CreateObject("qvObjects.qvIniFile")
ini("Main").Parameter("Path") = "x"

On Error Resume Next
Dim language
For Each language In Array(0, 1)
    CheckTrue "the language is set", common.qvObjectsInit("Language", language)

    ' Errors of the runtime have their English text in both languages.
    ini.Section.Remove "Missing"
    CheckError "a key that is not there", 5, "qvObjects", "Invalid procedure call or argument"
    ini.Section.Remove 2
    CheckError "a position behind the last", 9, "qvObjects", "Subscript out of range"
    ini.Section.Remove 0
    CheckError "a position before the first", 9, "qvObjects", "Subscript out of range"
    Set nothingHere = ini.Section.Item(2)
    CheckError "a section at a position behind the last", 9, "qvObjects", "Subscript out of range"
    Set nothingHere = ini("Main").Parameter(2)
    CheckError "a parameter at a position behind the last", 9, "qvObjects", "Subscript out of range"
    ini.Load TestFile("missing.ini")
    CheckError "a file that is not there", 53, "qvObjects", "File not found"
    ini.Load TestFile("no folder\missing.ini")
    CheckError "a folder that is not there, for reading", 76, "qvObjects", "Path not found"
    ini.Save TestFile("no folder\missing.ini")
    CheckError "a folder that is not there, for writing", 76, "qvObjects", "Path not found"
    nothingHere = common.Insert("|1", Null)
    CheckError "Null as a text", 94, "qvObjects", "Invalid use of Null"
Next
On Error GoTo 0
Check "the tree is as it was", 1, ini.Section.Count
Check "its parameter too", "x", ini("Main")("Path").Value

' The option
Check "an option in another case", True, common.qvObjectsInit("LANGUAGE", 1)
Check "English as a text", True, common.qvObjectsInit("Language", "1")
Check "a value between two languages", True, common.qvObjectsInit("Language", 0.5)
Check "no such language", False, common.qvObjectsInit("Language", 2)
Check "no such language below 0", False, common.qvObjectsInit("Language", -1)
Check "no such option", False, common.qvObjectsInit("Lang", 1)
Check "a text that names no language", False, common.qvObjectsInit("Language", "English")
Check "Null for a language", False, common.qvObjectsInit("Language", Null)

Done
