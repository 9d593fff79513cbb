' Classes that other scripts leave out, and what is different where a surrogate process serves a script of 64 bits.
Dim shell, printer, colours, dialog, watcher, tips, memory
Set shell = CreateObject("WScript.Shell")
Check "this is a process of 64 bits", "AMD64", shell.Environment("Process")("PROCESSOR_ARCHITECTURE")

Set printer = CreateObject("qvObjects.qvPrinter")
On Error Resume Next
printer.Fonts -1
CheckTrue "no font of a printer", Err.Number <> 0
On Error GoTo 0
Set colours = CreateObject("qvObjects.qvSystemColors")
Check "a colour", vbLong, VarType(colours.Window)
Set dialog = CreateObject("qvObjects.qvPathDialog")
dialog.Caption = "Ordner wählen"
Check "a caption", "Ordner wählen", dialog.Caption
Set memory = CreateObject("qvObjects.qvSharedMemory")
memory.CreateForString "qvObjects " & Timer, "Größe"
Check "a text in shared memory", "Größe", memory.Str

' Windows of another process can't be watched, and say so.
Set watcher = CreateObject("qvObjects.qvWindowProc")
watcher.hwnd = 65568
watcher.Enabled = True
Check "a window of another process is not watched", 0, watcher.OriginalWindowProc
Set tips = CreateObject("qvObjects.qvToolTip")
tips.Init
CheckTrue "a tooltip window", tips.hwnd <> 0

Done
