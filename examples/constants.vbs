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

' qvListviewMessages: Messages of list views.
Const LVM_FIRST = 4096
Const LVM_SETEXTENDEDLISTVIEWSTYLE = 4150
Const LVM_GETEXTENDEDLISTVIEWSTYLE = 4151
Const LVM_GETHEADER = 4127

' qvListviewStyles: Extended styles of list views.
Const LVS_EX_GRIDLINES = 1
Const LVS_EX_TRACKSELECT = 8
Const LVS_EX_HEADERDRAGDROP = 16
Const LVS_EX_FULLROWSELECT = 32
Const LVS_EX_ONECLICKACTIVATE = 64
Const LVS_EX_TWOCLICKACTIVATE = 128

' qvMinMax: The rows of a result of MinMax.
Const MINI = 0
Const MAXI = 1

' qvPathDialogMode: What the folder that is asked for is to be.
Const qvPDSource = 0
Const qvPDDestination = 1

' qvPathSeparator: The character between the parts of a shortened path.
Const qvPS_BACKSLASH = 92
Const qvPS_SLASH = 47

' TT_Flags: How a tool shows its tooltip.
Const TTF_IDISHWND = 1
Const TTF_CENTERTIP = 2
Const TTF_RTLREADING = 4
Const TTF_SUBCLASS = 16
Const TTF_TRACK = 32
Const TTF_ABSOLUTE = 128
Const TTF_TRANSPARENT = 256
Const TTF_DI_SETITEM = -32768

' TT_STYLE: How a tooltip window looks and behaves.
Const TTS_ALWAYSTIP = 1
Const TTS_NOPREFIX = 2
Const TTS_NOANIMATE = 16
Const TTS_NOFADE = 32
Const TTS_BALLOON = 64

' TT_Timing: Which of a tooltip's times.
Const TTDT_AUTOMATIC = 0
Const TTDT_RESHOW = 1
Const TTDT_AUTOPOP = 2
Const TTDT_INITIAL = 3

' TT_TITELICON: The icon beside a tooltip's title.
Const TTI_NOICON = 0
Const TTI_INFOICON = 1
Const TTI_WARNINGICON = 2
Const TTI_ERRORICON = 3

' WalkDirConsts: What WalkDirTree reports and where it goes.
Const dwWalkDirNormal = 0
Const dwWalkCurDirOnly = 1
Const dwDirectoriesOnly = 2
