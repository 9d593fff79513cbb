' Matrices and tables in files, and arrays, as a script has them: variant arrays, empty variables, texts in its locale.
Dim common, file, table, matrix(1, 2), readBack, half
Set common = CreateObject("qvObjects.qvCommon")
Set file = CreateObject("qvObjects.qvFile_qvb")
Set table = CreateObject("qvObjects.qvFile_Nif")
half = 1 / 2

' A matrix there and back, into a variable that held nothing and into one that held something else.
matrix(0, 0) = 1
matrix(1, 0) = CStr(half) ' with the user's decimal separator
matrix(0, 1) = True
matrix(1, 2) = -7
file.File = TestFile("matrix.qvb")
file.ObjNames = Array(" Köln", "Süd ")
file.WriteFile matrix
file.LBoundAll = 1
file.ReadFile readBack
Check "an array of Double", vbArray + vbDouble, VarType(readBack)
table.SetValues readBack
Check "a number", 1, table.Value(1, 1)
Check "a number that was a text", half, table.Value(2, 1)
Check "a truth value", -1, table.Value(1, 2)
Check "a cell that was empty", 0, table.Value(2, 2)
readBack = "something else"
file.ReadFile readBack
Check "the smallest of what was read again", -7, common.Min(readBack)
Check "the columns", 3, file.FileQVBHeader.x

' Wrong calls
On Error Resume Next
file.WriteFile 5
CheckError "a value that is no array", -2147221399, "qvObjects", """V"" ist kein Array!"
common.qvObjectsInit "Language", 1
file.WriteFile 5
CheckError "the same in English", -2147221399, "qvObjects", """V"" isn't an array!"
table.Value(9, 9) = 1
CheckError "a cell that is not there, with the runtime's text in any language", 9, "qvObjects", "Subscript out of range"
table.Load "tests\clients\data_files.vbs"
CheckError "a file of another kind", -2147221503, "Nif-File", "Fehler beim einlesen. Datei entspricht nicht dem NIF-Format."
common.Sort 5
CheckError "sorting no array", 13, "qvObjects", "Type mismatch"
common.qvObjectsInit "Language", 0
On Error GoTo 0

' A table as text
table.SetSize 2, 1
table.Name(1) = "Köln, Süd"
table.Value(1, 1) = half
table.Value(2, 1) = -1500
Check "saved", True, table.Save(TestFile("table.nif"))
Set table = CreateObject("qvObjects.qvFile_Nif")
Check "there is no such file", False, table.Load(TestFile("missing.nif"))
Check "loaded", True, table.Load(TestFile("table.nif"))
Check "a name with a comma", "Köln, Süd", table.Name(1)
Check "a fraction", half, table.Value(1, 1)
Check "a large number", -1500, table.Value(2, 1)

' Arrays
Dim words, ends, levels(1, 1)
words = Array("b", "A", "a", "D")
common.Sort words
Check "sorted whatever the case", "AabD", words(0) & words(1) & words(2) & words(3)
Check "the smallest size", 2.5, common.AbsMin(Array(3, -5, 2.5))
levels(0, 0) = 4: levels(0, 1) = 3: levels(1, 0) = 2: levels(1, 1) = 9
ends = common.MinMax(levels)
Check "the smallest of the first row", 3, ends(0, 0)
Check "an array", True, common.BoundTest(words)
Check "no array", False, common.BoundTest(5)
Done
