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
        If i > 0 Then Rows = Rows & " "
        Rows = Rows & ends(1, i)
    Next
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

' Counting: the digits of a number times 100, 10 and 1 are the number that shows them.
Dim digits
digits = math.NumbersToBase(2, 3)
Check "an array of Long", vbArray + vbLong, VarType(digits)
Check "digits of all numbers", "0 1 10 11 100 101 110 111", Rows(math.MMult(digits, Column(Array(100, 10, 1))))
Check "numbers that show their digits", "0 1 2 10 11 12 20 21 22", Rows(math.NumbersToBase(3, 2, False))
Check "digits of two figures", "0 1 2 3 4 5 6 7 8 9 1 1", Rows(math.NumbersToBase("12", "1", 0))

' Cutting, in the user's locale
Check "cut to two decimals", 1.98, math.RoundDown(1.987, 2)
Check "a negative number", -1.98, math.RoundDown(-1.987, 2)
Check "a whole number", 5, math.RoundDown(5, 2)
Check "the user's text", 3, math.RoundDown(CStr(3.5), 0)
Check "cut into the whole part", 12, math.RoundDown(123.5, -2)

' Columns
Dim matrix, fixed(1, 0)
ReDim matrix(1, 0)
matrix(0, 0) = "Köln"
matrix(1, 0) = "Süd"
math.AddVektor matrix, math.NumbersToBase(2, 1, False)
Check "a new column", 1, UBound(matrix, 2)
Check "what stood there", "Köln", matrix(0, 0)
Check "a number from another table", 1, matrix(1, 1)
math.AddVektor matrix, matrix
Check "the table itself, its columns counted from 1", 3, UBound(matrix, 2)
Check "its second column comes first", 1, matrix(1, 2)
Check "the column that it has not", True, IsEmpty(matrix(1, 3))
math.AddVektor matrix, Array(1, 2)
Check "a list gives an empty column", True, IsEmpty(matrix(0, 4))
math.AddVektor fixed, matrix
Check "a fixed table stays as it is", 0, UBound(fixed, 2)
math.AddVektor "no table", 5
Check "wrong arguments are ignored", "Köln", matrix(0, 0)

' Rows
Dim texts, objects
ReDim texts(3, 1)
texts(0, 1) = "Köln"
texts(2, 0) = 7
Check "rows kept", 2, math.CheckData(texts)
Check "texts", vbArray + vbString, VarType(texts)
Check "the texts", "Köln 7", Rows(math.Transpose(math.Transpose(texts)))
Check "the rows again", 2, math.CheckData(texts)
ReDim objects(1, 0)
Set objects(0, 0) = Nothing
Set objects(1, 0) = common
Check "rows with objects", 1, math.CheckData(Column(Array("", "")), objects)
Check "their table", vbArray + vbObject, VarType(objects)

' Products, transposition, averages
Dim table, turned, smooth
ReDim table(2, 1)
table(1, 0) = 1: table(1, 1) = 10
table(2, 0) = 2: table(2, 1) = "20"
Check "a product of numbers", 6, math.MMult(2, "3")
Check "a product of tables", "0 21 42", Rows(math.MMult(table, Column(Array(1, 2))))
Check "a table times a number", "0 30 60", Rows(math.MMult(3, table))
turned = math.Transpose(table)
Check "transposed", 10, turned(1, 1)
Check "a text stays a text", "20", turned(1, 2)
Check "transposing what is no table", True, IsEmpty(math.Transpose("x"))
smooth = math.AvgDyn(table, 0, 3)
Check "not smoothed", "20", smooth(2, 1)
Check "smoothed", vbArray + vbDouble, VarType(math.AvgDyn(table, 2, 1))

' The focus of two spectra: times 1 and 2, and all that times the coefficient 3
Dim spectra, result
ReDim spectra(1, 1)
spectra(0, 0) = 1: spectra(0, 1) = 2
spectra(1, 0) = 3: spectra(1, 1) = 4
result = synopsis.CalcFocus(Column(Array(8, 9)), spectra, Column(Array(1, 2)), Array("unused", 3), False, 0, 0)
Check "the focus", "15 33", Rows(result)

' Every wrong call
On Error Resume Next
Dim none, wrong
math.NumbersToBase 2, 0
CheckError "no digits", 9, "qvObjects", "Subscript out of range"
math.NumbersToBase 0, 3
CheckError "no base", 9, "qvObjects", "Subscript out of range"
math.NumbersToBase 2, 32
CheckError "too many numbers", 6, "qvObjects", "Overflow"
math.NumbersToBase 10, 9
CheckError "too many numbers for memory", 7, "qvObjects", "Out of memory"
math.NumbersToBase 3, 10, False
CheckError "a number beyond a Long", 6, "qvObjects", "Overflow"
math.NumbersToBase "", 1
CheckErrorNumber "an empty text is no base", 13
math.NumbersToBase 2
CheckErrorNumber "no count of digits", 450
math.RoundDown 1.5, -2
CheckError "nothing left", 13, "qvObjects", "Type mismatch"
math.RoundDown 1.5, -3
CheckError "less than nothing left", 5, "qvObjects", "Invalid procedure call or argument"
math.RoundDown "", 1
CheckErrorNumber "an empty text is no number", 13
For Each wrong In Array("", "text", 5, none)
    math.CheckData wrong
    CheckError "no table to check", 13, "qvObjects", "Type mismatch"
    math.AvgDyn wrong, 1, 1
    CheckError "no table to smooth", 13, "qvObjects", "Type mismatch"
Next
math.CheckData fixed
CheckError "a fixed table", 10, "qvObjects", "This array is fixed or temporarily locked"
math.CheckData Array(1, 2)
CheckError "a list is no table", 9, "qvObjects", "Subscript out of range"
math.CheckData texts, matrix
CheckError "no objects", 13, "qvObjects", "Type mismatch"
math.MMult table, "x"
CheckError "a table times a text", 13, "qvObjects", "Type mismatch"
math.MMult matrix, 2
CheckError "texts that are no numbers", 13, "qvObjects", "Type mismatch"
math.MMult table, Array(1, 2)
CheckError "a table times a list", 9, "qvObjects", "Subscript out of range"
synopsis.CalcFocus Column(Array(8, 9)), spectra, Column(Array(1, 2)), 3, False, 0, 0
CheckError "a coefficient that is no list", 13, "qvObjects", "Type mismatch"
synopsis.CalcFocus none, none, none, none, False, 0, 0
CheckError "no spectra", 13, "qvObjects", "Type mismatch"
synopsis.CalcFocus spectra
CheckErrorNumber "too few arguments", 450
On Error GoTo 0
Check "nothing was lost", "Köln", matrix(0, 0)

Done
