' Asks for a folder, which is created if need be, and remembers it for the next time. Run it with the 32-bit script host:
'     cscript //nologo choose_folder.vbs
Set common = CreateObject("qvObjects.qvCommon")
Set dialog = CreateObject("qvObjects.qvPathDialog")
common.qvObjectsInit "Language", 1    ' English

dialog.Mode = 1    ' qvPDDestination: the folder may be created
dialog.Prompt = "Where shall the measured values be kept?"
dialog.Path = common.ReadKey("qvObjects example", "Folder", "C:\Data\Values")
If dialog.Show() Then
    common.WriteKey "qvObjects example", "Folder", dialog.Path
    WScript.Echo "The values go to " & dialog.Path
Else
    WScript.Echo "Nothing was chosen."
End If
