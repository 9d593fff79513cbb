' Conversions, shared texts and processes, called with what scripts have in hand.
Dim common, api, bytes, text, guid, again, memory, shell, partner, name, code
Set common = CreateObject("qvObjects.qvCommon")
Set api = CreateObject("qvObjects.qvAPI")
Set shell = CreateObject("WScript.Shell")

code = 15
Check "a bit is cleared in the variable", 14, common.SetBit2(code, 0, False)
Check "which has the new value", 14, code
Check "green", 2, CLng(common.GetGreen(&H030201))
common.BstrToByte "ABü", bytes
Check "an array of bytes", vbArray + vbByte, VarType(bytes)
Check "and back", "ABü", common.ByteToStr(bytes)
common.ByteToBstrV Array(65, "66", "no code", 0), text
Check "numbers of all kinds", "AB ", text

Check "a byte", vbByte, VarType(api.HexToByte("FF"))
text = api.CreateGUID(True)
api.GUIDFromString text, guid
Check "a GUID in braces", text, api.StringFromGUID(guid, True)
api.GUIDFromString api.StringFromGUID(guid), again
Check "a GUID without braces", text, api.StringFromGUID(again, True)

name = "qvObjects " & api.CreateGUID
Set memory = CreateObject("qvObjects.qvSharedMemory")
memory.Create name, 1000
memory.Str = "Größe"
partner = TestFile("partner.vbs")
WriteFile partner, "Set memory = CreateObject(""qvObjects.qvSharedMemory"")" & vbCrLf & _
    "memory.Create WScript.Arguments(0), 4" & vbCrLf & "memory.Str = memory.Str & "" zurück""" & vbCrLf
Check "another script comes to its end", 0, shell.Run("cscript //nologo " & partner & " """ & name & """", 0, True)
Check "its text", "Größe zurück", memory.Str
memory.CreateForString name & "2", "abc"
Check "a block for a text", 10, memory.Size

Check "a display mode that is not there", False, api.SetDisplayResolution(12345, 1, 7, 3)
Check "a function of a library", True, common.CheckLibFunction("kernel32.dll", "GetTempPathA")
Check "no process", 0, common.WaitOnProgram(0)

On Error Resume Next
code = common.WaitOnProgram(0, True)
CheckErrorNumber "a wait for no process", -1
code = api.HexToByte("f0")
CheckError "no hexadecimal digit", 6, "qvObjects", "Überlauf"
memory.Create "", 100
CheckErrorNumber "a block without a name", -2147192344
text = CreateObject("qvObjects.qvSharedMemory").Str
CheckError "no block", 13, "qvObjects.VBError", "Type mismatch"
On Error GoTo 0

Done
