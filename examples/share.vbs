' Shares a text with another script. Run it with the 32-bit script host:
'     cscript //nologo share.vbs
' It starts itself once more, with the name of the block: that one reads the text and writes an answer.
Set memory = CreateObject("qvObjects.qvSharedMemory")

If WScript.Arguments.Count > 0 Then
    memory.Create WScript.Arguments(0), 4                     ' it is there, with the size that it has
    memory.Str = memory.Str & " 21 degrees"
    WScript.Quit
End If

Set api = CreateObject("qvObjects.qvAPI")
name = "qvObjects example " & api.CreateGUID                  ' a name that no other program has
memory.Create name, 1000
memory.Str = "How warm is it?"

' The same script host, and so one of 32 bits. Run waits for the other one's end.
command = """" & WScript.FullName & """ //nologo """ & WScript.ScriptFullName & """ """ & name & """"
CreateObject("WScript.Shell").Run command, 0, True
WScript.Echo memory.Str
