' Texts and message templates, with what scripts have in hand: variables, arrays, omitted values, numbers in their locale.
Dim common
Set common = CreateObject("qvObjects.qvCommon")

Check "one value", "Datei ""abc"" fehlt" & vbCrLf, common.Insert("Datei |a|1|a fehlt|n", "abc")
Check "the short name", "Größe: Übergröße", common.Ins("Größe: |1", "Übergröße")
Check "no value", """|1", common.Insert("|a|1")
Check "values of several types", "x 1 " & CStr(True) & " " & CStr(1.5), common.Insert("|1 |2 |3 |4", "x", 1, True, 1.5)
Check "an array", "a  c", common.Insert("|1 |2 |3", Array("a", "", "c"))
Check "an empty array", "|1""", common.Insert("|1|a", Array())
Check "Null as a later value", "a a c", common.Insert("|1 |2 |3", "a", Null, "c")
Dim template, name, values(1)
template = "|1: |2"
name = "Müller"
values(0) = name
values(1) = Now > 0
Check "values as variables", "Müller: " & CStr(True), common.Insert(template, name, values(1))
Check "an array variable", "Müller: " & CStr(True), common.Insert(template, values)

On Error Resume Next
template = common.Insert("|1", Null)
CheckError "Null as the first value", 94, "qvObjects", "Invalid use of Null"
template = common.Insert("|1", common)
CheckTrue "an object without a value", Err.Number <> 0
Err.Clear
template = common.Insert()
CheckErrorNumber "no template", 450
On Error GoTo 0

Check "cutting umlauts in any case", "GrßeX", common.StringCut("GrößeX", "Ö")
Check "trimming blanks and tabs", "a b", common.qvTrim(vbTab & " a b " & vbTab)
Check "a number at the start", -12.5, common.StrToNum(" -12,5 Stück")
Check "a Boolean as text", True, common.StrToBOOL(True)
Check "the user's number", True, common.qvIsNumeric(CStr(1234.5))
Check "no number", False, common.qvIsNumeric("12a")

Done
