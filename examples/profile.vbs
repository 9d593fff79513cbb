' Lists a profile file, and remembers which one it was. Run it with the 32-bit script host:
'     cscript //nologo profile.vbs [INI file]
Set api = CreateObject("qvObjects.qvAPI")
Set common = CreateObject("qvObjects.qvCommon")
Set files = CreateObject("Scripting.FileSystemObject")

If WScript.Arguments.Count > 0 Then
    file = files.GetAbsolutePathName(WScript.Arguments(0))    ' a bare name would mean the Windows folder
    common.WriteKey "qvObjects example", "File", file
Else
    file = common.ReadKey("qvObjects example", "File", files.BuildPath(files.GetParentFolderName(WScript.ScriptFullName), "tour.ini"))
End If

Set sections = CreateObject("Scripting.Dictionary")
Set entries = CreateObject("Scripting.Dictionary")
WScript.Echo common.Insert("|1 has |2 section(s).", file, api.GetPPSectionNamesDic(sections, file))
For Each section In sections.Keys
    WScript.Echo common.Insert("[|1], |2 value(s)", section, api.GetPPSectionDic(section, entries, file))
    For Each key In entries.Keys
        WScript.Echo "    " & key & " = " & entries(key)
    Next
Next
