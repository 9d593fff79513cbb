' INI files: loading and saving, nested sections, comments, umlauts.
Dim ini, file
file = TestFile("ini_files.ini")

Function Loaded(text)
    WriteFile file, text
    Set Loaded = CreateObject("qvObjects.qvIniFile")
    Loaded.Load file
End Function

Function Lines(list)
    Dim line
    For Each line In list
        Lines = Lines & line & vbCrLf
    Next
End Function

' Loading
Set ini = Loaded(Lines(Array("Top = 1", "[ Main ]", "Größe = groß ", ";note", "key = a;b", "alone", "[Main", "", " = x")))
Check "the file name is kept", file, ini.FileName
Check "a parameter before all sections", "1", ini.qvIniSection_Parameter("Top").Value
Check "umlauts in a name and a value", "groß", ini("Main")("größe").Value
Check "found in the file", True, ini("Main")("Größe").FoundInFile
Check "not found in the file", False, ini("Main")("other").FoundInFile
Check "a comment is a parameter", True, ini("Main").Parameter.Exists(";note")
Check "a comment behind a value is kept", "a;b", ini("Main")("key").Value
Check "a name alone has an empty value", "", ini("Main")("alone").Value
Check "a header that is not closed is a parameter", True, ini("Main").Parameter.Exists("[Main")
Check "a value without a name", "x", ini("Main")("").Value

Set ini = CreateObject("qvObjects.qvIniFile")
ini.Load2 file, True
Check "comments left out", False, ini("Main").Parameter.Exists(";note")
Check "a comment behind a value left out", "a", ini("Main")("key").Value

' Duplicates and loading twice
Set ini = Loaded(Lines(Array("[A]", "x=1", "y=1", "[B]", "[a]", "X=2", "z=1")))
Check "sections of one name are one", 2, ini.Section.Count
Check "the later value counts", "2", ini("A")("x").Value
Check "at its first place", "x", ini("A").Parameter.Item(1).Name
Check "the section is continued", 3, ini("A").Parameter.Count
ini("A").Parameter("x") = "changed"
ini("C").Parameter("new") = "kept"
ini.Load
Check "loading again reads again", "2", ini("A")("x").Value
Check "loading again keeps what is not in the file", "kept", ini("C")("new").Value
Check "loading again doubles nothing", 3, ini("A").Parameter.Count

' Nesting, and what saving writes
Set ini = Loaded(Lines(Array("[Outer] {", "[Inner]", "k=v", "}")))
Check "a sub-section", "v", ini("Outer").Section("Inner")("k").Value
ini.Save TestFile("saved.ini")
Check "a saved nested section", Lines(Array("[Outer]", "{", "", vbTab & "[Inner]", vbTab & "k=v", "", "", "}", "")), ReadFile(TestFile("saved.ini"))

Set ini = CreateObject("qvObjects.qvIniFile")
ini("Straße").Parameter("Länge") = "5 km"
ini("Straße").Parameter("Breite") = ""
ini.Save TestFile("umlauts.ini")
Check "a saved section", Lines(Array("[Straße]", "Länge=5 km", "Breite=", "", "")), ReadFile(TestFile("umlauts.ini"))
Check "saving sets the file name", TestFile("umlauts.ini"), ini.FileName
ini("Straße").Parameter("Länge") = "6 km"
ini.Save
Check "saving again overwrites", Lines(Array("[Straße]", "Länge=6 km", "Breite=", "", "")), ReadFile(ini.FileName)
ini.Save TestFile("Größe.ini")
Set ini = Loaded("")
ini.Load TestFile("größe.ini")
Check "a file name with umlauts, in any case", "6 km", ini("straße")("länge").Value

' What was loaded is what is saved and loaded again
Dim tree, again
Set tree = Loaded(Lines(Array("a=1", "[S] {", "p=q", "[T] {", "[U]", "u=ü", "}", "[V]", "v=", "}", "[W]", "w=x=y")))
tree.Save TestFile("once.ini")
Set again = CreateObject("qvObjects.qvIniFile")
again.Load TestFile("once.ini")
Check "a sub-section of a sub-section", "ü", again("S").Section("T").Section("U")("u").Value
Check "a value with an equals sign", "x=y", again("W")("w").Value
again.Save TestFile("twice.ini")
Check "saved twice", ReadFile(TestFile("once.ini")), ReadFile(TestFile("twice.ini"))

' Without a file name
Set ini = CreateObject("qvObjects.qvIniFile")
ini.Load
ini.Save
Check "without a file name nothing happens", 0, ini.Section.Count

' Automatic loading
WriteFile file, Lines(Array("Top=1", "[Main]", "Path=C:\"))
Set ini = CreateObject("qvObjects.qvIniFile")
ini.FileName = file
Check "nothing is loaded unasked", 0, ini.Section.Count
ini.AutoLoad = True
Check "the parameters don't load", 0, ini.qvIniSection_Parameter.Count
Check "the first use of the sections does", "C:\", ini("Main")("Path").Value
ini("Main").Parameter("Path") = "D:\"
Check "the second does not", "D:\", ini("Main")("Path").Value

' What goes wrong leaves all as it was
On Error Resume Next
ini.Load TestFile("missing.ini")
CheckErrorNumber "a missing file", 53
ini.Load2 "", True
CheckErrorNumber "the file name is that of the missing file", 53
ini.Save "build"
CheckTrue "a folder can't be written over", Err.Number = 70 Or Err.Number = 75
Err.Clear
On Error GoTo 0
Check "the tree is kept", "D:\", ini("Main")("Path").Value

Done
