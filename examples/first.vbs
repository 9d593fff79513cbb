' Makes an INI file, reads it back and tells what is in it. Run it with the 32-bit script host:
'     cscript //nologo first.vbs
Set fso = CreateObject("Scripting.FileSystemObject")
file = fso.BuildPath(fso.GetSpecialFolder(2).Path, "first.ini") ' 2: the user's folder for temporary files

Set ini = CreateObject("qvObjects.qvIniFile")
ini("Main").Parameter("Path") = "C:\Data"
ini("Main").Parameter("Language") = "English"
ini.Save file

Set readBack = CreateObject("qvObjects.qvIniFile")
readBack.Load file
Set common = CreateObject("qvObjects.qvCommon")
WScript.Echo common.Insert("|a|1|a has |2 section.", readBack.FileName, readBack.Section.Count)
For Each parameter In readBack("Main").Parameter
    WScript.Echo parameter.Name & " = " & parameter.Value
Next
