' Smooths a noisy spectrum and draws it, before and after, with characters. Run it with the 32-bit script host:
'     cscript //nologo smooth.vbs
Dim spectrum(14, 1) ' row 0 is not used
For i = 1 To 14
    spectrum(i, 0) = i * 100 ' the frequency
    spectrum(i, 1) = 20 / (1 + ((i - 7) / 2) ^ 2) + 4 * (i Mod 2)
Next

Set math = CreateObject("qvObjects.qvMath")
Set smooth = CreateObject("qvObjects.qvFile_Nif")
smooth.SetValues math.AvgDyn(spectrum, 2, 1) ' 2: every column from 1 on, here averaged over 1 row to both sides
For i = 1 To 14
    WScript.Echo Bar(spectrum(i, 1)) & Bar(smooth.Value(i, 1)) & "|"
Next

Function Bar(length)
    Bar = "|" & Left(String(Round(length), "#") & Space(26), 26)
End Function
