' Calling members as a script does: names in any case, omitted arguments, script variables, wrong calls.
Dim common, ini
Set common = CreateObject("qvObjects.qvCommon")
Set ini = CreateObject("qvObjects.qvIniFile")

' Names
Check "a member in lower case", "x", common.qvtrim(" x ")
Check "a member in upper case", "x", common.QVTRIM(" x ")
ini.FILENAME = "a.ini"
Check "a property in another case", "a.ini", ini.filename
Check "a name with an umlaut", """x""", common.Anfü("x")
Check "a name with an umlaut in capitals", """x""", common.ANFÜ("x")

' Omitted arguments
Check "an argument left out at the end", "HellWorld", common.StringCut("Hello  World", "o")
Check "an argument given", "Hell World", common.StringCut("Hello  World", "o", 1)
Check "the only argument left out", """", common.Anfü
Check "the last two arguments left out", True, common.qvIsNumeric("1")
Check "an argument left out in the middle", True, common.qvIsNumeric("1", , "Title")

' Script variables, which come by reference
Dim text, cut, blanks, answer
text = "Hello  World"
cut = "o"
blanks = 1
answer = common.StringCut(text, cut, blanks)
Check "variables as arguments", "Hell World", answer
Check "a variable given by value stays as it is", "Hello  World", text
blanks = "1"
Check "a text variable for a number", "Hell World", common.StringCut(text, cut, blanks)
Check "a number for a text", "12", common.qvTrim(12)
Check "a variable that holds nothing, for a text", "", common.qvTrim(answerNotGiven())
Dim names(1)
names(0) = " first "
Check "an element of an array", "first", common.qvTrim(names(0))
Check "a call within a call", """x""", common.Anfü(common.qvTrim(" x "))

Function answerNotGiven()
    answerNotGiven = Empty
End Function

' Objects as arguments
Check "an object with a name", True, common.ObjTest(ini.Section("Main"))
Check "an object without a name", False, common.ObjTest(ini)
Check "no object", False, common.ObjTest(Nothing)
Check "an item that is there", True, common.ExistsInCol(ini.Section, 1)
Check "an item that is there, as an object", True, common.ExistsInCol(ini.Section, 1, True)
Check "an item that is not there", False, common.ExistsInCol(ini.Section, 2)

' Wrong calls: they fail, nothing has happened, and the next call works
On Error Resume Next
common.NoSuchMember
CheckErrorNumber "a member that does not exist", 438
common.NoSuchProperty = 1
CheckErrorNumber "a property that does not exist", 438
answer = common.qvTrim()
CheckErrorNumber "too few arguments", 450
answer = common.qvTrim("a", "b")
CheckErrorNumber "too many arguments", 450
answer = common.StringCut("Hello", "o", "many")
CheckErrorNumber "a text that is not a number", 13
answer = common.StringCut("Hello", "o", 40000)
CheckErrorNumber "a number too large for its argument", 6
answer = common.qvTrim(Array("a"))
CheckErrorNumber "an array for a text", 13
answer = common.GetNumbersFromStringCol("1", "no object")
CheckErrorNumber "a text for an object", 13
ini.AutoLoad = "perhaps"
CheckErrorNumber "a text that is not a truth value", 13
On Error GoTo 0
Check "the property has kept its value", False, ini.AutoLoad
Check "the next call works", "x", common.qvTrim(" x ")

Done
