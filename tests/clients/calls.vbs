' Calling classes and members as a script does: names in any case, omitted arguments, script variables, wrong calls.
Dim common, ini, other
Set common = CreateObject("qvObjects.qvCommon")
Set ini = CreateObject("QVOBJECTS.qvinifile")

' Classes: Windows tells a script the class, Wine its default interface.
CheckTrue "the type of an object", TypeName(ini) = "qvIniFile" Or TypeName(ini) = "_qvIniFile"
CheckTrue "two objects of a global class differ", Not (CreateObject("qvObjects.qvCommon") Is common)

' Names
Check "a member in lower case", "x", common.qvtrim(" x ")
ini.FILENAME = "a.ini"
Check "a property in another case", "a.ini", ini.filename
Check "another object keeps its own state", "", CreateObject("qvObjects.qvIniFile").FileName
Check "a name with an umlaut in capitals", """x""", common.ANFÜ("x")

' Omitted arguments
Check "an argument left out at the end", "HellWorld", common.StringCut("Hello  World", "o")
Check "the only argument left out", """", common.Anfü
Check "an argument left out in the middle", True, common.qvIsNumeric("1", , "Title")

' Script variables, which come by reference
Dim text, blanks, names(1), nothingYet, answer
text = "Hello  World"
blanks = 1
answer = common.StringCut(text, "o", blanks)
Check "variables as arguments", "Hell World", answer
Check "a variable given by value stays as it is", "Hello  World", text
blanks = "1"
Check "a text variable for a number", "Hell World", common.StringCut(text, "o", blanks)
Check "a number for a text", "12", common.qvTrim(12)
Check "a variable that holds nothing, for a text", "", common.qvTrim(nothingYet)
names(0) = " first "
Check "an element of an array, and a call within a call", """first""", common.Anfü(common.qvTrim(names(0)))

' Objects as arguments
Check "an object with a name", True, common.ObjTest(ini.Section("Main"))
Check "an object without a name", False, common.ObjTest(ini)
Check "no object", False, common.ObjTest(Nothing)
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
Set other = CreateObject("qvObjects.qvIniSection")
CheckErrorNumber "a class that only other objects give", 429
On Error GoTo 0
Check "the property has kept its value", False, ini.AutoLoad
Check "the next call works", "x", common.qvTrim(" x ")

Done
