' Shares a text with another script. Run it with the 32-bit script host:
'     cscript //nologo share.vbs
' It starts itself once more, with the name of the block: that one reads the text and writes an answer.
Set memory = CreateObject("qvObjects.qvSharedMemory")

If WScript.Arguments.Count > 0 Then
    memory.Create WScript.Arguments(0), 4                     ' it is there, with the size that it has
    memory.Str = memory.Str & " is answered."
    WScript.Quit
End If

Set api = CreateObject("qvObjects.qvAPI")
name = "qvObjects example " & api.CreateGUID                  ' a name that no other program has
memory.Create name, 1000
memory.Str = "What one script asks"

' The same script host, and so one of 32 bits.
command = """" & WScript.FullName & """ //nologo """ & WScript.ScriptFullName & """ """ & name & """"
CreateObject("WScript.Shell").Run command, 0, True
WScript.Echo memory.Str
