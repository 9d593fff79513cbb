' Mathematics on tables, called with what scripts have in hand. Their own tables are arrays of Variant from 0; the results are
' arrays of Double, Long or String, which they can only hand on: MinMax shows them what is inside.
Dim math, synopsis, common
Set math = CreateObject("qvObjects.qvMath")
Set synopsis = CreateObject("qvObjects.qvSyno")
Set common = CreateObject("qvObjects.qvCommon")

' The greatest element of each row, from row 0, as a text.
Function Rows(table)
    Dim ends, i
    ends = common.MinMax(table)
    For i = 0 To UBound(ends, 2)
        Rows = Rows & " " & ends(1, i)
    Next
    Rows = Mid(Rows, 2)
End Function

' A table of one column.
Function Column(values)
    Dim table, i
    ReDim table(UBound(values), 0)
    For i = 0 To UBound(values)
        table(i, 0) = values(i)
    Next
    Column = table
End Function

' Results: the digits of a number times 100, 10 and 1 are the number that shows them.
Dim digits, table, turned, spectra
digits = math.NumbersToBase(2, 3)
Check "an array of Long", vbArray + vbLong, VarType(digits)
Check "digits of all numbers", "0 1 10 11 100 101 110 111", Rows(math.MMult(digits, Column(Array(100, 10, 1))))
Check "numbers from texts", "0 1 2 3 4 5 6 7 8 9 1 1", Rows(math.NumbersToBase("12", "1", 0))
Check "the user's text is cut", 3, math.RoundDown(CStr(3.5), 0)
ReDim table(2, 1)
table(1, 0) = 1: table(1, 1) = 10
table(2, 0) = 2: table(2, 1) = "20"
Check "a table with empty cells times a number", "0 30 60", Rows(math.MMult(3, table))
turned = math.Transpose(table)
Check "a text stays a text", "20", turned(1, 2)
Check "transposing what is no table", True, IsEmpty(math.Transpose("x"))
Check "smoothed", vbArray + vbDouble, VarType(math.AvgDyn(table, 2, 1))
ReDim spectra(1, 1)
spectra(0, 0) = 1: spectra(0, 1) = 2: spectra(1, 0) = 3: spectra(1, 1) = 4
Check "the focus", "15 33", _
    Rows(synopsis.CalcFocus(Column(Array(8, 9)), spectra, Column(Array(1, 2)), Array("unused", 3), False, 0, 0))

' Variables that get another table
Dim matrix, fixed(1, 0), texts, objects
matrix = Column(Array("Köln", "Süd"))
math.AddVektor matrix, math.NumbersToBase(2, 1, False)
Check "what stood there and a new column", "Köln 1", matrix(0, 0) & " " & matrix(1, 1)
math.AddVektor matrix, matrix
Check "the table itself, its columns counted from 1", 3, UBound(matrix, 2)
math.AddVektor fixed, matrix
math.AddVektor "no table", 5
Check "a fixed table stays as it is", 0, UBound(fixed, 2)
texts = Column(Array(Empty, "Köln", "", 7))
Check "rows kept", 2, math.CheckData(texts)
Check "texts", vbArray + vbString, VarType(texts)
Check "the texts", "Köln 7", Rows(texts)
Check "the rows again", 2, math.CheckData(texts)
ReDim objects(1, 0)
Set objects(0, 0) = Nothing
Set objects(1, 0) = common
Check "rows with objects", 1, math.CheckData(Column(Array("", "")), objects)
Check "their table", vbArray + vbObject, VarType(objects)

' Wrong calls
On Error Resume Next
Dim none, wrong
math.NumbersToBase 2, 0
CheckError "no digits", 9, "qvObjects", "Subscript out of range"
math.NumbersToBase 10, 9
CheckError "too many numbers for memory", 7, "qvObjects", "Out of memory"
math.CheckData fixed
CheckError "a fixed table", 10, "qvObjects", "This array is fixed or temporarily locked"
math.MMult Null, table
CheckError "Null times a table", 94, "qvObjects", "Invalid use of Null"
For Each wrong In Array("", "text", 5, none)
    math.CheckData wrong
    CheckError "no table to check", 13, "qvObjects", "Type mismatch"
Next
synopsis.CalcFocus none, none, none, none, False, 0, 0
CheckError "no spectra", 13, "qvObjects", "Type mismatch"
math.NumbersToBase "", 1
CheckErrorNumber "an empty text is no base", 13
synopsis.CalcFocus spectra
CheckErrorNumber "too few arguments", 450
On Error GoTo 0
Check "nothing was lost", "Köln", matrix(0, 0)

Done
