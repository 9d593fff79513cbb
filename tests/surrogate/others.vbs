' Classes that other scripts leave out, and what is different where a surrogate process serves a script of 64 bits.
Dim shell, printer, colours, dialog, watcher, tips, memory, files, path, math, table(1, 0), bitmap, metrics, turned, x, y
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

Set files = CreateObject("qvObjects.qvFile")
path = "C:\no such folder"
files.WalkDirTree path, "*"
Check "a variable is filled", "C:\no such folder\", path
Set math = CreateObject("qvObjects.qvMath")
table(1, 0) = "x"
turned = math.Transpose(table)
Check "a table and its elements", "x", turned(0, 1)
Check "an array of Double", vbArray + vbDouble, VarType(math.MMult(math.NumbersToBase(2, 1), 2))
On Error Resume Next
CreateObject("qvObjects.qvSyno").CalcFocus x, x, x, x, False, 0, 0
CheckError "an error", 13, "qvObjects", "Type mismatch"
CreateObject("qvObjects.qvForm").Box_Sel math
CheckErrorNumber "an object that is no list box", 438
On Error GoTo 0
path = CreateObject("Scripting.FileSystemObject").GetAbsolutePathName(TestFile("surrogate.bmp"))
WriteFile path, "BM" & String(16, ".") & "@" & Chr(1) & Chr(0) & Chr(0) & "0" & Chr(0) & Chr(0) & Chr(0)
Set bitmap = CreateObject("qvObjects.qvBitmap")
Check "a bitmap file", True, bitmap.GetBitmapSizeS(path, x, y)
Check "its width and height", "320 48", x & " " & y
Set metrics = CreateObject("qvObjects.qvSystemMetrics")
Check "the screen", metrics.ScreenX, CLng(CreateObject("qvObjects.qvScreen").WidthPixel)

' Windows of another process can't be watched, and say so.
Set watcher = CreateObject("qvObjects.qvWindowProc")
watcher.hwnd = 65568
watcher.Enabled = True
Check "a window of another process is not watched", 0, watcher.OriginalWindowProc
Set tips = CreateObject("qvObjects.qvToolTip")
tips.Init
CheckTrue "a tooltip window", tips.hwnd <> 0

Done
