' Message templates: Insert and its short name Ins, with values one by one and in arrays.
Dim common, quote
Set common = CreateObject("qvObjects.qvCommon")
quote = Chr(34)

Check "one value", "Datei " & quote & "abc" & quote & " fehlt" & vbCrLf, common.Insert("Datei |a|1|a fehlt|n", "abc")
Check "the short name", "Datei " & quote & "abc" & quote & " fehlt" & vbCrLf, common.Ins("Datei |a|1|a fehlt|n", "abc")
Check "no value", quote & vbTab & vbCr & vbCrLf & "|1", common.Insert("|a|t|r|n|1")
Check "placeholders in capitals", quote & vbTab & vbCr & vbCrLf, common.Insert("|A|T|R|N")
Check "several values of several types", "x 1 " & CStr(True), common.Insert("|1 |2 |3", "x", 1, True)
Check "a value used twice, and one not at all", "b b", common.Insert("|2 |2", "a", "b")
Check "a placeholder without a value stays", "a |2", common.Insert("|1 |2", "a")
Check "values as variables", "Müller: 3", insertVariables()
Check "an array", "a b", common.Insert("|1 |2", Array("a", "b"))
Check "an array among other values is not their list", "b", common.Insert("|1", "b", "c")
Check "an empty array", "|1" & quote, common.Insert("|1|a", Array())
Check "a value with a placeholder is filled in turn", "y and y", common.Insert("|1 and |2", "|2", "y")
Check "a line end within a value stays", "a|nb", common.Insert("|1", "a|nb")
Check "ten values: the first one and a nought", "a0 b", common.Insert("|10 |2", "a", "b", "c", "d", "e", "f", "g", "h", "i", "j")
Check "umlauts", "Größe: Übergröße", common.Insert("Größe: |1", "Übergröße")
Check "an empty value", "a  c", common.Insert("|1 |2 |3", Array("a", "", "c"))
Check "a number has the user's decimal separator", CStr(1.5), common.Insert("|1", 1.5)

Function insertVariables()
    Dim template, name, count
    template = "|1: |2"
    name = "Müller"
    count = 3
    insertVariables = common.Insert(template, name, count)
End Function

Dim values(2)
values(0) = "a"
values(1) = 2
values(2) = Now > 0
Check "an array variable", "a 2 " & CStr(True), common.Insert("|1 |2 |3", values)

' The first value must be text; a later one that can't be gives the text of the one before it.
On Error Resume Next
Dim answer
answer = common.Insert("|1", Null)
CheckError "Null as the first value", 94, "qvObjects", "Invalid use of Null"
answer = common.Insert("|1", common)
CheckTrue "an object without a value", Err.Number <> 0
Err.Clear
On Error GoTo 0
Check "Null as the second value", "a a c", common.Insert("|1 |2 |3", "a", Null, "c")

' Too many and too few
On Error Resume Next
answer = common.Insert()
CheckErrorNumber "no template", 450
On Error GoTo 0

Done
