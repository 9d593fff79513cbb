' The checks of the script tests. Each prints one line; Done prints how many there were.
Option Explicit

Dim checkCount
checkCount = 0

Sub Check(what, expected, actual)
    Dim same
    same = (Kind(expected) = Kind(actual))
    If same Then same = (expected = actual)
    Report same, what, "expected " & Shown(expected) & ", got " & Shown(actual)
End Sub

' A script does not choose the type of a number.
Function Kind(value)
    Kind = VarType(value)
    If Kind = vbInteger Or Kind = vbLong Then Kind = vbDouble
End Function

Sub CheckTrue(what, condition)
    Report CBool(condition), what, "expected it to be true"
End Sub

' Call it right after the statement that fails, under On Error Resume Next.
Sub CheckError(what, number, source, description)
    Dim actual
    actual = Err.Number & " / " & Err.Source & " / " & Err.Description
    Err.Clear
    Report actual = number & " / " & source & " / " & description, what, _
        "expected " & number & " / " & source & " / " & description & ", got " & actual
End Sub

' Where the number alone is the library's: source and description come from the script engine.
Sub CheckErrorNumber(what, number)
    Dim actual
    actual = Err.Number
    Err.Clear
    Report actual = number, what, "expected error " & number & ", got " & actual
End Sub

Sub Report(passed, what, difference)
    checkCount = checkCount + 1
    If passed Then
        WScript.Echo "ok - " & what
    Else
        WScript.Echo "not ok - " & what & ": " & difference
    End If
End Sub

Function Shown(value)
    If VarType(value) = vbString Then
        Shown = """" & value & """"
    Else
        Shown = value & " (type " & VarType(value) & ")"
    End If
End Function

' The full path for a file of this test: the library may be in a process with a current folder of its own.
Function TestFile(name)
    TestFile = CreateObject("Scripting.FileSystemObject").GetAbsolutePathName("build\clients\" & name)
End Function

Sub WriteFile(name, text)
    With CreateObject("Scripting.FileSystemObject").CreateTextFile(name, True)
        .Write text
        .Close
    End With
End Sub

Function ReadFile(name)
    With CreateObject("Scripting.FileSystemObject").OpenTextFile(name)
        ReadFile = .ReadAll
        .Close
    End With
End Function

' The last statement of every script: a script that breaks off before it has failed.
Sub Done
    WScript.Echo "1.." & checkCount
End Sub

