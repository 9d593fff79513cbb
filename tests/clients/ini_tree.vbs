' The tree of an INI file in memory: building, reading, changing, walking.
Dim ini
Set ini = CreateObject("qvObjects.qvIniFile")

' A new file object
Check "no file name", "", ini.FileName
Check "no sections", 0, ini.Section.Count
Check "no automatic loading", False, ini.AutoLoad
Check "the file as a section has no name", "", ini.qvIniSection_Name
Check "and counts as found", True, ini.qvIniSection_FoundInFile

' Building by use
ini.Section("Main").Parameter("Path") = "x"
Check "set by the default member", "x", ini.Section("Main").Parameter("Path").Value
Check "read by short names", "x", "" & ini("Main")("Path")
Check "in any case", "x", ini.SECTION("MAIN").parameter("path").VALUE
ini("Main").Parameter("Path") = "y"
Check "set by short names", "y", ini.Section("Main").Parameter("Path").Value
ini.Section.Item("Main").Parameter.Item("Path").Value = "z"
Check "set by full names", "z", "" & ini("Main")("Path")
Check "one section came of it", 1, ini.Section.Count
Check "one parameter came of it", 1, ini("Main").Parameter.Count
Check "a section built by hand was not found in a file", False, ini("Main").FoundInFile
ini("Main").Parameter("Count") = 12
Check "a number is stored as text", "12", ini("Main")("Count").Value
ini("Main").Parameter("Ratio") = 1.5
Check "in the user's locale", CStr(1.5), ini("Main")("Ratio").Value

Dim key
key = "Main"
Check "a variable as key", "z", ini.Section(key).Parameter("Path").Value
key = 1
Check "a variable as position", "Main", ini.Section(key).Name
key = "1"
Check "a text that looks like a position is a key", "1", ini.Section(key).Name
ini.Section.Remove "1"

' Values and defaults
Check "an empty parameter", "", ini("Main")("Empty").Value
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
Check "and adds nothing", 2, sections.Count
Check "exists", True, sections.Exists("second")
Check "does not exist", False, sections.Exists("third")
Check "asking did not create it", 2, sections.Count
Check "reading it does", "third", sections("third").Name
Check "at the end", "third", sections.Item(3).Name
sections.Remove "THIRD"
Check "removed by key", False, sections.Exists("third")
sections.Remove 1
Check "removed by position", "Second", sections.Item(1).Name
Check "what is left", 1, sections.Count

added.Name = "Renamed"
Check "a renamed section is found by its new name", True, sections.Exists("renamed")
Check "and not by its old one", False, sections.Exists("Second")

' Sub-sections
ini("Outer").Section("Inner").Section("Core").Parameter("k") = "v"
Check "a nested parameter", "v", ini("Outer").Section("Inner").Section("Core").Parameter("k").Value
ini.qvIniSection_Parameter("Top") = "t"
Check "a parameter before all sections", "t", ini.qvIniSection_Parameter("top").Value

' Walking, also while the list changes
Dim each_, seen
For Each each_ In Array("a", "b", "c")
    ini("Walk").Parameter(each_) = UCase(each_)
Next
For Each each_ In ini("Walk").Parameter
    seen = seen & each_.Name & "=" & each_ & ";"
Next
Check "walking over parameters", "a=A;b=B;c=C;", seen
seen = ""
For Each each_ In ini.Section
    seen = seen & each_.Name & ";"
Next
Check "walking over sections", "Renamed;Outer;Walk;", seen
For Each each_ In ini("Walk").Parameter
    ini("Walk").Parameter.Remove each_.Name
Next
CheckTrue "removing while walking ends", ini("Walk").Parameter.Count < 3
For Each each_ In ini("Nothing").Parameter
    CheckTrue "walking over nothing", False
Next

' Replacing a collection
Set ini("Copy").Parameter = ini("Outer").Section("Inner").Section("Core").Parameter
Check "a shared collection", "v", ini("Copy")("k").Value
ini("Copy").Parameter("k") = "w"
Check "shows a change on both sides", "w", ini("Outer").Section("Inner").Section("Core")("k").Value
Set ini("Copy").Parameter = Nothing
Check "a section without parameters gets new ones", 0, ini("Copy").Parameter.Count

' Objects outlive the tree they come from
Dim parameter
Set parameter = ini("Outer").Section("Inner").Section("Core").Parameter("k")
Set ini = Nothing
Set sections = Nothing
Check "a parameter without its tree", "w", parameter.Value
Check "a section without its tree", "Renamed", added.Name

' Many
Dim many, i
Set many = CreateObject("qvObjects.qvIniFile")
For i = 1 To 5000
    many("Big").Parameter("key " & i) = i
Next
Check "5000 parameters", 5000, many("Big").Parameter.Count
Check "the last of them", "5000", many("Big")("KEY 5000").Value

Done
