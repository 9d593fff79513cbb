' Makes mistakes and tells of the errors. Run it with the 32-bit script host:
'     cscript //nologo errors.vbs
Set ini = CreateObject("qvObjects.qvIniFile")
On Error Resume Next
ini.Load "missing.ini"
WScript.Echo Err.Number & ", " & Err.Source & ": " & Err.Description
Err.Clear
ini.Section.Item(5).Name = "Main"
WScript.Echo Err.Number & ", " & Err.Source & ": " & Err.Description
Err.Clear
ini.Load3 "station.ini"
WScript.Echo Err.Number
Err.Clear
ini.Load "a.ini", "b.ini"
WScript.Echo Err.Number
Err.Clear

' The library's own messages come in two languages.
Set common = CreateObject("qvObjects.qvCommon")
Set file = CreateObject("qvObjects.qvFile_qvb")
file.File = "samples.qvb"
file.WriteFile "no matrix"
WScript.Echo Err.Number & ": " & Err.Description
Err.Clear
WScript.Echo common.qvObjectsInit("Language", 1) ' 0: German, 1: English
file.WriteFile "no matrix"
WScript.Echo Err.Number & ": " & Err.Description
WScript.Echo common.qvObjectsInit("Language", 7) ' no such language
