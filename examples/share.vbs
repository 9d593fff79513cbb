' Shares a text with another script. Run it with the 32-bit script host:
'     cscript //nologo share.vbs
' It starts itself once more, with the name of the block: that one reads the
' text and writes an answer.
Set memory = CreateObject("qvObjects.qvSharedMemory")

If WScript.Arguments.Count > 0 Then
    ' It is there, with the size that it has.
    memory.Create WScript.Arguments(0), 4
    memory.Str = memory.Str & " 21 degrees"
    WScript.Quit
End If

Set api = CreateObject("qvObjects.qvAPI")
' A name that no other program has.
name = "qvObjects example " & api.CreateGUID
memory.Create name, 1000
memory.Str = "How warm is it?"

' The same script host, and so one of 32 bits. Run waits for the other one's end.
script = """" & WScript.FullName & """ //nologo """ & WScript.ScriptFullName & """"
CreateObject("WScript.Shell").Run script & " """ & name & """", 0, True
WScript.Echo memory.Str
