' Errors of the library as a script sees them: number, source and description.
Dim common, ini, nothingHere, language
Set common = CreateObject("qvObjects.qvCommon")
Set ini = CreateObject("qvObjects.qvIniFile")
ini("Main").Parameter("Path") = "x"

On Error Resume Next
For Each language In Array(0, 1)
    CheckTrue "the language is set", common.qvObjectsInit("Language", language)

    ' Errors of the runtime have their English text in both languages.
    ini.Section.Remove "Missing"
    CheckError "a key that is not there", 5, "qvObjects", "Invalid procedure call or argument"
    Set nothingHere = ini("Main").Parameter(2)
    CheckError "a parameter at a position behind the last", 9, "qvObjects", "Subscript out of range"
    ini.Load TestFile("missing.ini")
    CheckError "a file that is not there", 53, "qvObjects", "File not found"
    ini.Save TestFile("no folder\missing.ini")
    CheckError "a folder that is not there", 76, "qvObjects", "Path not found"
Next
On Error GoTo 0
Check "the tree is as it was", "x", ini("Main")("Path").Value

Done
