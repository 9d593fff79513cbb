' Objects, trees and texts are given back: the memory of this process does not grow while they come and go.
Dim status
status = "Z:\proc\" & WScript.Arguments(0) & "\status"

' In kilobytes, from a line such as "VmRSS:   12400 kB".
Function Memory()
    Dim lines, line
    Set lines = CreateObject("Scripting.FileSystemObject").OpenTextFile(status)
    Do
        line = lines.ReadLine
    Loop Until Left(line, 6) = "VmRSS:"
    lines.Close
    Memory = CLng(Mid(line, 7, Len(line) - 8))
End Function

Dim file, i
file = TestFile("memory.ini")

Sub MakeFile()
    Dim ini, s, p
    Set ini = CreateObject("qvObjects.qvIniFile")
    For s = 1 To 20
        For p = 1 To 20
            ini("Section " & s).Section("Nested").Parameter("Parameter " & p) = String(50, "x")
        Next
    Next
    ini.Save file
End Sub

Sub CreateObjects(times)
    Dim object
    For i = 1 To times
        Set object = CreateObject("qvObjects.qvIniFile")
        Set object = CreateObject("qvObjects.qvCommon")
    Next
End Sub

Sub LoadTrees(times)
    Dim ini
    For i = 1 To times
        Set ini = CreateObject("qvObjects.qvIniFile")
        ini.Load file
        ini("Section 1").Parameter("x") = i
        ini.Save TestFile("memory-saved.ini")
    Next
End Sub

Sub WalkTree(times)
    Dim ini, section, text
    Set ini = CreateObject("qvObjects.qvIniFile")
    ini.Load file
    For i = 1 To times
        For Each section In ini.Section
            text = section.Section("nested").Parameter("Parameter 1").Value("default")
        Next
        ini("More").Parameter("x" & i) = "y"
        ini.Section.Remove "More"
    Next
End Sub

Sub ExpandTemplates(times)
    Dim common, text
    Set common = CreateObject("qvObjects.qvCommon")
    For i = 1 To times
        text = common.Insert("|a|1|a |2 |3", String(1000, "x"), i, True)
        text = common.Insert("|1 |2", Array("a", String(1000, "y")))
        text = common.qvTrim(common.StringCut(text, "a"))
    Next
End Sub

Sub FailCalls(times)
    Dim ini
    Set ini = CreateObject("qvObjects.qvIniFile")
    On Error Resume Next
    For i = 1 To times
        ini.Section.Remove String(1000, "x")
        ini.Load "build\missing.ini"
        ini.NoSuchMember
        ini.Load2 1, 2, 3, 4
        ini.AutoLoad = "perhaps"
    Next
    Err.Clear
End Sub

Sub Run(what, times)
    Select Case what
        Case "creating objects": CreateObjects times
        Case "loading and saving trees": LoadTrees times
        Case "walking and changing a tree": WalkTree times
        Case "expanding templates": ExpandTemplates times
        Case "failing calls": FailCalls times
    End Select
End Sub

' The first round fills caches and pools of the platform; the rounds after it must live in what the first one took.
Sub CheckMemory(what, times, limit)
    Dim before, growth
    Run what, times
    before = Memory()
    Run what, times
    Run what, times
    growth = Memory() - before
    Report growth < limit, what, "the process has grown by " & growth & " KB"
End Sub

MakeFile
' Wine leaves some bytes behind for every object that a script creates, whosever it is: here 16000 times.
CheckMemory "creating objects", 4000, 800
CheckMemory "loading and saving trees", 100, 1000
CheckMemory "walking and changing a tree", 500, 1000
CheckMemory "expanding templates", 5000, 1000
CheckMemory "failing calls", 3000, 1000

Done
