' The tree of an INI file in memory: building, reading, changing, walking.
Dim ini, key
Set ini = CreateObject("qvObjects.qvIniFile")
Check "no automatic loading", False, ini.AutoLoad
Check "the file as a section has no name", "", ini.qvIniSection_Name
Check "and counts as found", True, ini.qvIniSection_FoundInFile

' Building by use, in every spelling
ini.Section("Main").Parameter("Path") = "x"
Check "set by the default member, read by short names", "x", "" & ini("Main")("Path")
ini("Main").Parameter("Path") = "y"
Check "set by short names, read in any case", "y", ini.SECTION("MAIN").parameter("path").VALUE
ini.Section.Item("Main").Parameter.Item("Path").Value = "z"
Check "set by full names", "z", "" & ini("Main")("Path")
Check "one section and one parameter came of it", 2, ini.Section.Count + ini("Main").Parameter.Count
Check "a section built by hand was not found in a file", False, ini("Main").FoundInFile
ini("Main").Parameter("Ratio") = 1.5
Check "a number is stored as text in the user's locale", CStr(1.5), ini("Main")("Ratio").Value
key = "Main"
Check "a variable as key", "z", ini.Section(key).Parameter("Path").Value
key = 1
Check "a variable as position", "Main", ini.Section(key).Name
key = "1"
Check "a text that looks like a position is a key", "1", ini.Section(key).Name
ini.Section.Remove "1"

' Values and defaults
Check "the default of an empty parameter", "d", ini("Main")("Empty").Value("d")
Check "a filled parameter needs none", "z", ini("Main")("Path").Value("d")
Check "the default was not stored", "", ini("Main")("Empty").Value
ini("Main")("Empty").Value("ignored") = "full"
Check "a default is ignored when storing", "full", ini("Main")("Empty").Value

' Collections
Dim sections, added
Set sections = ini.Section
Set added = sections.Add("Second")
CheckTrue "adding what is there gives what is there", added Is sections.Add("SECOND")
Check "does not exist", False, sections.Exists("third")
Check "reading creates it at the end", sections("third").Name, sections.Item(3).Name
sections.Remove 1
Check "removed by position", "Second", sections.Item(1).Name
added.Name = "Renamed"
Check "a renamed section is found by its new name", True, sections.Exists("renamed")
Check "and not by its old one", False, sections.Exists("Second")

' Walking, also while the list changes
Dim item, seen
For Each item In Array("a", "b", "c")
    ini("Walk").Parameter(item) = UCase(item)
Next
For Each item In ini("Walk").Parameter
    seen = seen & item.Name & "=" & item & ";"
Next
Check "walking over parameters", "a=A;b=B;c=C;", seen
For Each item In ini("Walk").Parameter
    ini("Walk").Parameter.Remove item.Name
Next
CheckTrue "removing while walking ends", ini("Walk").Parameter.Count < 3
For Each item In ini("Nothing").Parameter
    CheckTrue "walking over nothing", False
Next

' Replacing a collection, and objects without the tree they come from
Dim parameter
Set parameter = ini("Outer").Section("Inner").Parameter("k")
Set ini("Copy").Parameter = ini("Outer").Section("Inner").Parameter
ini("Copy").Parameter("k") = "w"
Check "a shared collection shows a change on both sides", "w", parameter.Value
Set ini("Copy").Parameter = Nothing
Check "a section without parameters gets new ones", 0, ini("Copy").Parameter.Count
Set ini = Nothing
Set sections = Nothing
Check "a parameter without its tree", "w", parameter.Value
Check "a section without its tree", "Renamed", added.Name

Done
