' Tells of the screen, its colours and fonts, and of a bitmap file. Run it with the 32-bit script host:
'     cscript //nologo screen.vbs [bitmap file]
Set screen = CreateObject("qvObjects.qvScreen")
Set metrics = CreateObject("qvObjects.qvSystemMetrics")
Set colours = CreateObject("qvObjects.qvSystemColors")
Set bitmap = CreateObject("qvObjects.qvBitmap")
Set common = CreateObject("qvObjects.qvCommon")
Set files = CreateObject("Scripting.FileSystemObject")

WScript.Echo common.Insert("The screen has |1 x |2 pixels, each |3 twips wide.", _
    screen.WidthPixel, screen.HeightPixel, screen.TwipsPerPixelX)
metrics.ScaleMode = 1    ' twips from here on
WScript.Echo common.Insert("A caption is |1 twips high, a vertical scroll bar |2 wide.", metrics.CaptionY, metrics.ScrollXV)
WScript.Echo "Windows are #" & Hex(colours.Window) & ", buttons #" & Hex(colours.BtnFace) & " (blue, green, red)."

fonts = screen.FontCount
WScript.Echo common.Insert("|1 font(s):", fonts)
For i = 0 To fonts - 1
    WScript.Echo "    " & screen.Fonts(i)
Next

If WScript.Arguments.Count > 0 Then
    file = WScript.Arguments(0)
    If Not files.FileExists(file) Then    ' GetBitmapSizeS would create it
        WScript.Echo file & " is not there."
    ElseIf bitmap.GetBitmapSizeS(file, width, height) Then
        WScript.Echo common.Insert("|1: |2 x |3 pixels.", file, width, Abs(height))
    Else
        WScript.Echo file & " can't be read."
    End If
End If
