' Writes a matrix with the names of its objects to a QVB file, and reads it back.
' Run it with the 32-bit script host:
'     cscript //nologo matrix.vbs [QVB file]
Option Explicit

Dim fso, path
Set fso = CreateObject("Scripting.FileSystemObject")
If WScript.Arguments.Count > 0 Then
    path = WScript.Arguments(0)
Else
    ' 2: the folder for temporary files
    path = fso.BuildPath(fso.GetSpecialFolder(2).Path, "matrix.qvb")
End If

' A row for each object, a column for each feature.
Dim measured(2, 3), row, column
For row = 0 To 2
    For column = 0 To 3
        measured(row, column) = (row + 1) * 10 + column / 4
    Next
Next

Dim file
Set file = CreateObject("qvObjects.qvFile_qvb")
file.File = path
file.ObjNames = Array("bread", "wine", "cheese")
file.WriteFile measured ' as Doubles; 3 as second argument would make them Longs

' Another object reads it, with bounds that begin at 1.
Dim reader, matrix, sizes, features
Set reader = CreateObject("qvObjects.qvFile_qvb")
reader.File = path
reader.LBoundAll = 1
reader.ReadFile matrix
Set sizes = reader.FileQVBHeader
features = sizes.x * sizes.y * sizes.Planes
WScript.Echo sizes.MCount & " objects with " & features & " features in " & path

' Scripts can't index an array of Doubles: a table takes it and gives its values.
Dim table, names, line
Set table = CreateObject("qvObjects.qvFile_Nif")
table.SetValues matrix
names = reader.ObjNames
table.SetNames names
For row = 1 To sizes.MCount
    line = table.Name(row - 1) & ":" ' names are counted from 0
    For column = 1 To features
        line = line & " " & table.Value(row, column)
    Next
    WScript.Echo line
Next
