' INI files: loading and saving, nested sections, comments, umlauts, automatic loading.
Dim ini, file, again
file = TestFile("ini_files.ini")

Function Lines(list)
    Dim line
    For Each line In list
        Lines = Lines & line & vbCrLf
    Next
End Function

WriteFile file, Lines(Array("Top = 1", "[Straﬂe] {", "Grˆﬂe = groﬂ ", ";note", "key = a;b", "[Inner]", "k=v", "}"))
Set ini = CreateObject("qvObjects.qvIniFile")
ini.Load file
Check "the file name is kept", file, ini.FileName
Check "a parameter before all sections", "1", ini.qvIniSection_Parameter("Top").Value
Check "umlauts in a name and a value", "groﬂ", ini("straﬂe")("GR÷ﬂE").Value
Check "found in the file", True, ini("Straﬂe")("Grˆﬂe").FoundInFile
Check "a comment is a parameter", True, ini("Straﬂe").Parameter.Exists(";note")
Check "a sub-section", "v", ini("Straﬂe").Section("Inner")("k").Value
Check "not found in the file", False, ini("Straﬂe")("Grˆﬂe 2").FoundInFile
ini("Straﬂe").Parameter.Remove "Grˆﬂe 2"
ini("Straﬂe").Parameter("key") = "changed"
ini.Load
Check "loading again reads again", "a;b", ini("Straﬂe")("key").Value

ini.Save TestFile("Grˆﬂe.ini")
Check "saving sets the file name", TestFile("Grˆﬂe.ini"), ini.FileName
Check "what is saved", Lines(Array("Top=1", "", "[Straﬂe]", "{", vbTab & "Grˆﬂe=groﬂ", vbTab & ";note=", vbTab & "key=a;b", "", _
    vbTab & "[Inner]", vbTab & "k=v", "", "", "}", "")), ReadFile(ini.FileName)
Set again = CreateObject("qvObjects.qvIniFile")
again.Load2 TestFile("grˆﬂe.ini"), True
Check "a file name with umlauts in any case, comments left out", False, again("Straﬂe").Parameter.Exists(";note")
Check "a comment behind a value left out", "a", again("Straﬂe")("key").Value

' Without a file name nothing happens.
Set ini = CreateObject("qvObjects.qvIniFile")
ini.Load
ini.Save
Check "no sections", 0, ini.Section.Count

' Automatic loading
ini.FileName = file
ini.AutoLoad = True
Check "the first use of the sections loads", "groﬂ", ini("Straﬂe")("Grˆﬂe").Value

' What goes wrong leaves all as it was.
On Error Resume Next
ini.Load TestFile("missing.ini")
CheckErrorNumber "a missing file", 53
ini.Load2 "", True
CheckErrorNumber "the file name is that of the missing file", 53
On Error GoTo 0
Check "the tree is kept", "groﬂ", ini("Straﬂe")("Grˆﬂe").Value

Done
