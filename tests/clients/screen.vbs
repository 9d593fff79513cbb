' The screen, the system and bitmap files as a script reads them.
Dim screen, metrics, bitmap, form, file, x, y
Set screen = CreateObject("qvObjects.qvScreen")
Set metrics = CreateObject("qvObjects.qvSystemMetrics")
Set bitmap = CreateObject("qvObjects.qvBitmap")
Set form = CreateObject("qvObjects.qvForm")

Check "an Integer", vbInteger, VarType(screen.WidthPixel)
Check "the screen as the system measures it", metrics.ScreenX, CLng(screen.WidthPixel)
metrics.ScaleMode = 1
Check "the screen in twips", metrics.ScreenX, CLng(screen.WidthPixel) * screen.TwipsPerPixelX
CheckTrue "a font", Len(screen.Fonts(screen.FontCount - 1)) > 0
Check "twips as pixels", 10, CInt(screen.TwipX(10 * screen.TwipsPerPixelX))

file = TestFile("screen.bmp")
WriteFile file, "BM" & String(16, ".") & "@" & Chr(1) & Chr(0) & Chr(0) & "0" & Chr(0) & Chr(0) & Chr(0)
Check "a bitmap file", True, bitmap.GetBitmapSizeS(file, x, y)
Check "its width and height", "320 48", x & " " & y

On Error Resume Next
x = form.Box_Sel(metrics)
CheckErrorNumber "what is no list box", 438
x = screen.Fonts(-1)
CheckErrorNumber "no such font", 381
metrics.ScaleMode = 2
CheckErrorNumber "no such unit", -2147221503
On Error GoTo 0

Done
