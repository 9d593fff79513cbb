' Keeps a named table in a NIF text file, which any editor shows.
' Run it with the 32-bit script host:
'     cscript //nologo nif_table.vbs [NIF file]
Option Explicit

Dim fso, table, path, row, column, line
Set fso = CreateObject("Scripting.FileSystemObject")
Set table = CreateObject("qvObjects.qvFile_Nif")
If WScript.Arguments.Count > 0 Then
    path = WScript.Arguments(0)
Else
    ' 2: the folder for temporary files
    path = fso.BuildPath(fso.GetSpecialFolder(2).Path, "table.nif")
End If

' The first run makes the table, each further one goes on with it.
If Not table.Load(path) Then
    table.SetSize 2, 3 ' objects, values of each
    table.Description = "Runs of this script"
    table.Name(1) = "runs"
    table.Name(2) = "halves"
End If
For column = 1 To table.n
    table.Value(1, column) = table.Value(1, column) + column
    table.Value(2, column) = table.Value(1, column) / 2
Next
table.Save ' to the path that it was loaded from, or should have been

WScript.Echo table.Description & ", in " & path
For row = 1 To table.m
    line = table.Name(row) & ":"
    For column = 1 To table.n
        line = line & " " & table.Value(row, column)
    Next
    WScript.Echo line
Next
