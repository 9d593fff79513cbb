' Profile files and the user's settings: single values, sections and names into arrays and a dictionary.
Dim api, common, file, text, dictionary, items, names, shell, key
Set api = CreateObject("qvObjects.qvAPI")
Set common = CreateObject("qvObjects.qvCommon")
file = CreateObject("Scripting.FileSystemObject").GetAbsolutePathName(TestFile("profile.ini"))
WriteFile file, "[Main]" & vbCrLf & "Path = C:\x" & vbCrLf & "Empty=" & vbCrLf & "[ main ]" & vbCrLf & "Other=1" & vbCrLf

Check "a value read from the file itself", "C:\x", api.GetPPs2("Main", "Path", "default", file)
Check "an empty value", "default", api.GetPPs2("Main", "Empty", "default", file)
Check "a section with blanks in its brackets", "default", api.GetPPs2("main", "Other", "default", file)
Check "the same by its whole name", "1", api.GetPPs2(" main ", "Other", "default", file)
Check "a missing file", "default", api.GetPPs2("Main", "Path", "default", file & "x")

Check "the length of a value", 4, api.GetPrivateProfileString("main", "path", text, file)
Check "a value", "C:\x", text
text = 12
Check "the length of no value", 0, api.GetPPs("Main", "Nobody", text, file)
Check "no value is an empty text", "", text
Check "writing gives 0", 0, api.WritePPs("Straﬂe", "Grˆﬂe", "groﬂ", file)
Check "writing by the long name", 0, api.WritePrivateProfileString("Straﬂe", "Zahl", 12, file)
Check "the length of a value with umlauts", 4, api.GetPPs("Straﬂe", "Grˆﬂe", text, file)
Check "a value with umlauts", "groﬂ", text
Check "entries of a section into an array", 2, api.GetPPSectionStr("Straﬂe", items, file)
Check "an array of texts", vbArray + vbString, VarType(items)
Check "sections into an array", 3, api.GetPPSectionNamesStr(names, file)
Check "an array of names", vbArray + vbString, VarType(names)

Set dictionary = CreateObject("Scripting.Dictionary")
dictionary.Add "former", 1
Check "entries of a section into a dictionary", 2, api.GetPPSectionDic("Straﬂe", dictionary, file)
Check "a dictionary's value", "groﬂ", dictionary("Grˆﬂe")
Check "a dictionary's number as text", "12", dictionary("Zahl")
Check "what was there is gone", False, dictionary.Exists("former")
Check "sections into a dictionary", 3, api.GetPPSectionNamesDic(dictionary, file)
Check "a section's name without blanks", True, dictionary.Exists("main")

' Settings stay with the user, where other processes find them.
key = "HKCU\Software\VB and VBA Program Settings\qvObjects profile.vbs"
Set shell = CreateObject("WScript.Shell")
shell.Run "reg delete """ & key & """ /f", 0, True
Check "no setting", "", common.ReadKey("qvObjects profile.vbs", "Grˆﬂe")
Check "the default", "12", common.ReadKey("qvObjects profile.vbs", "Grˆﬂe", 12)
common.WriteKey "qvObjects profile.vbs", "Grˆﬂe", "groﬂ"
Check "a setting", "groﬂ", common.ReadKey("qvObjects profile.vbs", "Grˆﬂe", 12)
common.WriteKey "qvObjects profile.vbs", "Flag", True
Check "a Boolean in the user's words", True, common.ReadKeyF("qvObjects profile.vbs", "Flag")
common.WriteKey "qvObjects profile.vbs", "Flag", "Falsch"
Check "a Boolean in German", False, common.ReadKeyF("qvObjects profile.vbs", "Flag", True)
common.WriteKey "qvObjects profile.vbs", "Flag", "yes"
Check "no Boolean", True, common.ReadKeyF("qvObjects profile.vbs", "Flag", True)
Check "in the registry", "groﬂ", shell.RegRead(key & "\Settings\Grˆﬂe")
Check "another process finds it", 0, shell.Run("reg query """ & key & "\Settings"" /v Flag", 0, True)
Check "and not what is not there", 1, shell.Run("reg query """ & key & "\Settings"" /v Nobody", 0, True)
shell.Run "reg delete """ & key & """ /f", 0, True

On Error Resume Next
text = common.ReadKey("", "k")
CheckError "no application", 5, "qvObjects", "Invalid procedure call or argument"
text = api.GetPPSectionDic("Main", common, file)
CheckErrorNumber "no dictionary", 438
text = api.GetPPSectionCol("Main", Nothing, file)
CheckErrorNumber "no collection", 91
On Error GoTo 0

Done
