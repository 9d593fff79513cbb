' The values of the library's enumerations. A script takes them in with
'     ExecuteGlobal CreateObject("Scripting.FileSystemObject").OpenTextFile("constants.vbs").ReadAll
' Written by tools/docs --constants.

' EErrorSharedString: The number of the first error of shared memory.
Const eeBaseSharedString = 13200

' qvDataType: The types of the elements of a matrix in a QVB file.
Const qvByte = 0
Const qvInt = 1
Const qvLng = 2
Const qvSng = 3
Const qvDbl = 4

' qvECSIDL: The system's special folders.
Const qvCSIDL_DESKTOP = 0
Const qvCSIDL_PROGRAMS = 2
Const qvCSIDL_CONTROLS = 3
Const qvCSIDL_PRINTERS = 4
Const qvCSIDL_PERSONAL = 5
Const qvCSIDL_FAVORITES = 6
Const qvCSIDL_STARTUP = 7
Const qvCSIDL_RECENT = 8
Const qvCSIDL_SENDTO = 9
Const qvCSIDL_BITBUCKET = 10
Const qvCSIDL_STARTMENU = 11
Const qvCSIDL_DESKTOPDIRECTORY = 16
Const qvCSIDL_DRIVES = 17
Const qvCSIDL_NETWORK = 18
Const qvCSIDL_NETHOOD = 19
Const qvCSIDL_FONTS = 20
Const qvCSIDL_TEMPLATES = 21
Const qvCSIDL_COMMON_STARTMENU = 22
Const qvCSIDL_COMMON_PROGRAMS = 23
Const qvCSIDL_COMMON_STARTUP = 24
Const qvCSIDL_COMMON_DESKTOPDIRECTORY = 25
Const qvCSIDL_APPDATA = 26
Const qvCSIDL_PRINTHOOD = 27

' qvGetCharType: What a character may stand for in a path.
Const qvGCT_INVALID = 0
Const qvGCT_LFNCHAR = 1
Const qvGCT_SHORTCHAR = 2
Const qvGCT_WILD = 4
Const qvGCT_SEPARATOR = 8

' qvMinMax: The rows of a result of MinMax.
Const MINI = 0
Const MAXI = 1

' qvPathSeparator: The character between the parts of a shortened path.
Const qvPS_BACKSLASH = 92
Const qvPS_SLASH = 47

' WalkDirConsts: What WalkDirTree reports and where it goes.
Const dwWalkDirNormal = 0
Const dwWalkCurDirOnly = 1
Const dwDirectoriesOnly = 2
