' Reads options from a plain INI file, one value at a time, and keeps settings in
' the user's registry. Run it with the 32-bit script host:
'     cscript //nologo settings.vbs
Set common = CreateObject("qvObjects.qvCommon")
Set api = CreateObject("qvObjects.qvAPI")
Set fso = CreateObject("Scripting.FileSystemObject")
' A whole path; 2: the user's folder for temporary files
file = fso.BuildPath(fso.GetSpecialFolder(2).Path, "options.ini")

api.WritePPs "Main", "Path", "D:\Data", file
api.WritePPs "Main", "Unit", "cm", file
WScript.Echo api.GetPPs2("Main", "Path", "C:\Temp", file)
WScript.Echo api.GetPPs2("Main", "Colour", "blue", file)

Set entries = CreateObject("Scripting.Dictionary")
count = api.GetPPSectionDic("Main", entries, file)
WScript.Echo count & " entries"
For Each name In entries.Keys
    WScript.Echo name & " = " & entries(name)
Next

common.WriteKey "qvObjects example", "Station", "Pegel West"
' As a German program writes it.
common.WriteKey "qvObjects example", "ShowGrid", "Wahr"
WScript.Echo "Last station: " & common.ReadKey("qvObjects example", "Station")
hasGrid = common.ReadKeyF("qvObjects example", "ShowGrid", False)
If hasGrid Then WScript.Echo "with a grid"
WScript.Echo "Printer: " & common.ReadKey("qvObjects example", "Printer", "none")
