' A tour of qvObjects. Run it with the 32-bit script host:
'     cscript //nologo tour.vbs [file to save to]
Option Explicit

Dim fso, folder, savedFile
Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.GetParentFolderName(WScript.ScriptFullName)
If WScript.Arguments.Count > 0 Then
    savedFile = WScript.Arguments(0)
Else
    savedFile = fso.BuildPath(fso.GetSpecialFolder(2).Path, "tour.ini") ' 2: the folder for temporary files
End If

Dim common, ini
Set common = CreateObject("qvObjects.qvCommon")
Set ini = CreateObject("qvObjects.qvIniFile")

Title "An INI file as a tree"
ini.Load2 fso.BuildPath(folder, "tour.ini"), True ' True: without its comments
ShowParameters ini.qvIniSection_Parameter, "    "
ShowSections ini.Section, "    "

Title "Reading a value, in any case, with a default for what is not there"
WScript.Echo "    Highest water temperature: " & ini("sensors").Section("water").Section("LIMITS")("high").Value
WScript.Echo "    Language: " & ini("Display")("Language").Value("not set")
WScript.Echo "    Reading has created it: " & ini("Display").Parameter.Exists("Language")

Title "Adding a section and a parameter, and saving"
ini("Network").Parameter("Server") = "messwerte.example"
ini("Archive").Parameter("Keep") = 30
ini.Save savedFile
ShowFile savedFile

Title "A message from a template and its values"
WScript.Echo "    " & common.Insert("|a|1|a has |2 sections; |3 holds |4 parameters.", _
    fso.GetFileName(savedFile), ini.Section.Count, "Archive", ini("Archive").Parameter.Count)

Title "An error that a script can catch"
On Error Resume Next
ini.Load fso.BuildPath(folder, "missing.ini")
WScript.Echo "    Error " & Err.Number & " from " & Err.Source & ": " & Err.Description
Err.Clear
On Error GoTo 0

Title "A matrix in a file, and back"
Dim matrix(2, 3), row, column, file, sizes, readBack
For row = 0 To 2
    For column = 0 To 3
        matrix(row, column) = (row + 1) * 10 + column / 4
    Next
Next
Set file = CreateObject("qvObjects.qvFile_qvb")
file.File = savedFile & ".qvb"
file.ObjNames = Array("Nord", "Süd", "West")
file.WriteFile matrix
file.LBoundAll = 1 ' the array that is read counts from 1
file.ReadFile readBack
Set sizes = file.FileQVBHeader
WScript.Echo "    " & sizes.MCount & " objects with " & sizes.x & " features, from " & common.Min(readBack) & " to " & common.max(readBack)
ShowMatrix readBack, sizes.MCount, sizes.x

Title "The matrix times itself, with rows and columns exchanged"
Dim math
Set math = CreateObject("qvObjects.qvMath")
ShowMatrix math.MMult(readBack, math.Transpose(readBack)), sizes.MCount, sizes.MCount

Title "A path seen from a folder, and found again there"
Dim files, whole, home, stored
Set files = CreateObject("qvObjects.qvFile")
whole = fso.GetAbsolutePathName(file.File)
home = files.GetPath(whole)
stored = files.GetRelPath(whole, home)
WScript.Echo "    Stored as " & stored & ", found again: " & (files.qvDir(stored, home) = whole)
WScript.Echo "    " & files.qvPathCombine("C:\Messung\2026", "..\Archiv\nord.qvb")

Title "An error in German, and in English"
On Error Resume Next
file.WriteFile "no matrix"
WScript.Echo "    " & Replace(Err.Description, vbCrLf, vbCrLf & "    ")
Err.Clear
common.qvObjectsInit "Language", 1
file.WriteFile "no matrix"
WScript.Echo "    " & Replace(Err.Description, vbCrLf, vbCrLf & "    ")
Err.Clear
On Error GoTo 0

WScript.Echo ""
WScript.Echo "End of the tour."

Sub Title(text)
    WScript.Echo ""
    WScript.Echo text
End Sub

Sub ShowParameters(parameters, indent)
    Dim parameter
    For Each parameter In parameters
        WScript.Echo indent & parameter.Name & " = " & parameter.Value
    Next
End Sub

Sub ShowSections(sections, indent)
    Dim section
    For Each section In sections
        WScript.Echo indent & "[" & section.Name & "]"
        ShowParameters section.Parameter, indent & "    "
        ShowSections section.Section, indent & "    "
    Next
End Sub

Sub ShowFile(name)
    Dim file
    Set file = fso.OpenTextFile(name)
    Do Until file.AtEndOfStream
        WScript.Echo "    | " & file.ReadLine
    Loop
    file.Close
End Sub

' Scripts can't index an array of Doubles themselves; a table that takes it gives its values.
Sub ShowMatrix(matrix, rows, columns)
    Dim table, row, column, line
    Set table = CreateObject("qvObjects.qvFile_Nif")
    table.SetValues matrix
    For row = 1 To rows
        line = "   "
        For column = 1 To columns
            line = line & " " & table.Value(row, column)
        Next
        WScript.Echo line
    Next
End Sub
