' Reads spectra from a QVB file, computes one value from each, smoothed as well, and writes the result to another QVB file.
' Run it with the 32-bit script host:
'     cscript //nologo focus.vbs [QVB file with spectra [QVB file for the result]]
Option Explicit

Dim fso, temporary, source, target
Set fso = CreateObject("Scripting.FileSystemObject")
temporary = fso.GetSpecialFolder(2).Path ' 2: the folder for temporary files
source = fso.BuildPath(temporary, "spectra.qvb")
target = fso.BuildPath(temporary, "focus.qvb")
If WScript.Arguments.Count > 0 Then source = WScript.Arguments(0)
If WScript.Arguments.Count > 1 Then target = WScript.Arguments(1)
If Not fso.FileExists(source) Then MakeSpectra source

' A row for each spectrum, a column for each frequency. The rows count from 1, as smoothing has it.
Dim file, spectra, rows, frequencies, i, factors, seconds
Set file = CreateObject("qvObjects.qvFile_qvb")
file.File = source
file.LBoundAll = 1
file.ReadFile spectra
rows = file.FileQVBHeader.MCount
frequencies = file.FileQVBHeader.x * file.FileQVBHeader.y * file.FileQVBHeader.Planes
WScript.Echo rows & " spectra of " & frequencies & " frequencies from " & source

' The weights of the frequencies: the first column for the lower half, the second one for the upper half.
ReDim factors(frequencies - 1, 1)
For i = 0 To frequencies - 1
    If 2 * i < frequencies Then factors(i, 0) = 1 Else factors(i, 1) = 2
Next

' When each spectrum was measured; the row 0 of a script's table is not used. This comes before the values.
ReDim seconds(rows, 0)
For i = 1 To rows
    seconds(i, 0) = i / 2
Next

' One coefficient, used for each half; coefficients count from 1 as well.
Dim synthesis, coefficients, plain, smooth
Set synthesis = CreateObject("qvObjects.qvSyno")
coefficients = Array(0, 0.25)
plain = synthesis.CalcFocus(seconds, spectra, factors, coefficients, True, 0, 0)
smooth = synthesis.CalcFocus(seconds, spectra, factors, coefficients, True, 1, 3) ' 1: over spans that widen logarithmically

WScript.Echo "second: focus, smoothed"
For i = 1 To rows
    WScript.Echo plain(i, 0) & ": " & FormatNumber(plain(i, 1), 2) & ", " & FormatNumber(smooth(i, 1), 2)
Next
file.File = target
file.WriteFile smooth
WScript.Echo "The smoothed values are in " & target

' Twelve spectra whose peak wanders from the low to the high frequencies, with some noise.
Sub MakeSpectra(path)
    Dim measured(11, 7), spectrum, frequency, newFile
    For spectrum = 0 To 11
        For frequency = 0 To 7
            measured(spectrum, frequency) = 10 / (1 + (frequency - spectrum * 0.6) ^ 2) + Sin(7 * spectrum + 3 * frequency) ^ 2
        Next
    Next
    Set newFile = CreateObject("qvObjects.qvFile_qvb")
    newFile.File = path
    newFile.WriteFile measured
    WScript.Echo "Made " & path
End Sub
