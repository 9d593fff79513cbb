' Objects, trees and texts are given back: the memory of this process does not grow while they come and go.
Dim status, file, common, i
status = "Z:\proc\" & WScript.Arguments(0) & "\status"
file = TestFile("memory.ini")
Set common = CreateObject("qvObjects.qvCommon")

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

Sub Once(what)
    Dim ini, section, text
    Set ini = CreateObject("qvObjects.qvIniFile")
    Select Case what
        Case "creating objects"
            Set text = CreateObject("qvObjects.qvCommon")
        Case "loading, walking and saving trees"
            ini.Load file
            For Each section In ini.Section
                text = section.Section("nested").Parameter("Parameter 1").Value("default")
            Next
            ini("More").Parameter("x" & i) = "y"
            ini.Save TestFile("memory-saved.ini")
            ini.Section.Remove "More"
        Case "expanding templates"
            text = common.Insert("|a|1|a |2 |3", String(1000, "x"), i, True)
            text = common.Insert("|1 |2", Array("a", String(1000, "y")))
            text = common.qvTrim(common.StringCut(text, "a"))
        Case "failing calls"
            On Error Resume Next
            ini.Section.Remove String(1000, "x")
            ini.Load "build\missing.ini"
            ini.NoSuchMember
            ini.Load2 1, 2, 3, 4
            ini.AutoLoad = "perhaps"
            Err.Clear
    End Select
End Sub

' The first round fills caches and pools of the platform; the rounds after it must live in what the first one took.
Sub CheckMemory(what, times, limit)
    Dim before, growth
    For i = 1 To 3 * times
        If i = times + 1 Then before = Memory()
        Once what
    Next
    growth = Memory() - before
    Report growth < limit, what, "the process has grown by " & growth & " KB"
End Sub

MakeFile
' Wine leaves some bytes behind for every object that a script creates, whosever it is: here 4000 times.
CheckMemory "creating objects", 1000, 300
CheckMemory "loading, walking and saving trees", 30, 500
CheckMemory "expanding templates", 1500, 500
CheckMemory "failing calls", 1500, 500

Done
