' Reads options from a plain INI file, one value at a time, and keeps settings in the user's registry. Run it with the 32-bit
' script host:
'     cscript //nologo settings.vbs
Set common = CreateObject("qvObjects.qvCommon")
Set api = CreateObject("qvObjects.qvAPI")
Set fso = CreateObject("Scripting.FileSystemObject")
file = fso.BuildPath(fso.GetSpecialFolder(2).Path, "options.ini") ' a whole path; 2: the user's folder for temporary files

api.WritePPs "Main", "Path", "D:\Data", file
api.WritePPs "Main", "Unit", "cm", file
WScript.Echo api.GetPPs2("Main", "Path", "C:\Temp", file) & ", " & api.GetPPs2("Main", "Colour", "blue", file)

Set entries = CreateObject("Scripting.Dictionary")
count = api.GetPPSectionDic("Main", entries, file)
WScript.Echo count & " entries"
For Each name In entries.Keys
    WScript.Echo name & " = " & entries(name)
Next

common.WriteKey "qvObjects example", "Station", "Pegel West"
common.WriteKey "qvObjects example", "ShowGrid", "Wahr" ' as a German program writes it
WScript.Echo "Last station: " & common.ReadKey("qvObjects example", "Station")
If common.ReadKeyF("qvObjects example", "ShowGrid", False) Then WScript.Echo "with a grid"
WScript.Echo "Printer: " & common.ReadKey("qvObjects example", "Printer", "none")
