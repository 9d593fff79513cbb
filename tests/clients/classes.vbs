' Which classes a script can create, and which it only gets from other objects.
Const creatable = "qvScreen qvPrinter qvMath qvForm qvCommon qvAPI qvSyno qvFile qvBitmap qvSystemColors qvSystemMetrics qvSave qvPathDialog qvFile_qvb qvSharedMemory qvWindowProc qvToolTip qvIniFile qvFile_Nif"
Const notCreatable = "CFileQVBHeader CFile_sNames CFileInfoHeader qvIniSections qvIniSection qvIniParameters qvIniParameter CLanguage"

Dim name, object

' Windows tells the class, Wine its default interface.
Function ClassOf(object)
    ClassOf = TypeName(object)
    If Left(ClassOf, 1) = "_" Then ClassOf = Mid(ClassOf, 2)
End Function

For Each name In Split(creatable)
    Set object = CreateObject("qvObjects." & name)
    Check "the type of " & name, name, ClassOf(object)
Next

On Error Resume Next
For Each name In Split(notCreatable)
    Set object = CreateObject("qvObjects." & name)
    CheckErrorNumber name & " can't be created", 429
Next
On Error GoTo 0

Set object = CreateObject("QVOBJECTS.qvinifile")
Check "a class name in another case", "qvIniFile", ClassOf(object)

' Two objects of a class are two objects, also of a class whose members can be called without one.
Dim first, second
Set first = CreateObject("qvObjects.qvIniFile")
Set second = CreateObject("qvObjects.qvIniFile")
first.FileName = "a"
Check "another object of the class keeps its own state", "", second.FileName
CheckTrue "two objects of a global class differ", Not (CreateObject("qvObjects.qvCommon") Is CreateObject("qvObjects.qvCommon"))

Done
