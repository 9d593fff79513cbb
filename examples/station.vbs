' Makes an INI file with sections in sections, changes it and lists it. Run it with the 32-bit script host:
'     cscript //nologo station.vbs
Set fso = CreateObject("Scripting.FileSystemObject")
file = fso.BuildPath(fso.GetSpecialFolder(2).Path, "station.ini") ' 2: the user's folder for temporary files

Set ini = CreateObject("qvObjects.qvIniFile")
ini("Display").Parameter("Title") = "Pegel Nord"
ini("Display").Parameter("FontSize") = 10
ini("Sensors").Parameter("Interval") = 60
ini("Sensors").Section("Water").Parameter("Unit") = "m"
ini("Sensors").Section("Air").Parameter("Unit") = "ft"
ini.Save file

Set station = CreateObject("qvObjects.qvIniFile")
station.Load file
station("Display").Parameter("FontSize") = 12
WScript.Echo "Language: " & station("Display")("Language").Value("German") ' what is empty has a default
station.Save

List station.Section, ""
Sub List(sections, indent)
    For Each section In sections
        WScript.Echo indent & "[" & section.Name & "]"
        For Each parameter In section.Parameter
            WScript.Echo indent & "  " & parameter.Name & "=" & parameter.Value
        Next
        List section.Section, indent & "  "
    Next
End Sub
