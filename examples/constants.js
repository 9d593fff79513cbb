// The values of the library's enumerations. A script takes them in with
//     eval(new ActiveXObject("Scripting.FileSystemObject").OpenTextFile("constants.js").ReadAll());
// Written by tools/docs --constants.

// EErrorSharedString: The number of the first error of shared memory.
var eeBaseSharedString = 13200;

// qvDataType: The types of the elements of a matrix in a QVB file.
var qvByte = 0;
var qvInt = 1;
var qvLng = 2;
var qvSng = 3;
var qvDbl = 4;

// qvECSIDL: The system's special folders.
var qvCSIDL_DESKTOP = 0;
var qvCSIDL_PROGRAMS = 2;
var qvCSIDL_CONTROLS = 3;
var qvCSIDL_PRINTERS = 4;
var qvCSIDL_PERSONAL = 5;
var qvCSIDL_FAVORITES = 6;
var qvCSIDL_STARTUP = 7;
var qvCSIDL_RECENT = 8;
var qvCSIDL_SENDTO = 9;
var qvCSIDL_BITBUCKET = 10;
var qvCSIDL_STARTMENU = 11;
var qvCSIDL_DESKTOPDIRECTORY = 16;
var qvCSIDL_DRIVES = 17;
var qvCSIDL_NETWORK = 18;
var qvCSIDL_NETHOOD = 19;
var qvCSIDL_FONTS = 20;
var qvCSIDL_TEMPLATES = 21;
var qvCSIDL_COMMON_STARTMENU = 22;
var qvCSIDL_COMMON_PROGRAMS = 23;
var qvCSIDL_COMMON_STARTUP = 24;
var qvCSIDL_COMMON_DESKTOPDIRECTORY = 25;
var qvCSIDL_APPDATA = 26;
var qvCSIDL_PRINTHOOD = 27;

// qvGetCharType: What a character may stand for in a path.
var qvGCT_INVALID = 0;
var qvGCT_LFNCHAR = 1;
var qvGCT_SHORTCHAR = 2;
var qvGCT_WILD = 4;
var qvGCT_SEPARATOR = 8;

// qvListviewMessages: Messages of list views.
var LVM_FIRST = 4096;
var LVM_SETEXTENDEDLISTVIEWSTYLE = 4150;
var LVM_GETEXTENDEDLISTVIEWSTYLE = 4151;
var LVM_GETHEADER = 4127;

// qvListviewStyles: Extended styles of list views.
var LVS_EX_GRIDLINES = 1;
var LVS_EX_TRACKSELECT = 8;
var LVS_EX_HEADERDRAGDROP = 16;
var LVS_EX_FULLROWSELECT = 32;
var LVS_EX_ONECLICKACTIVATE = 64;
var LVS_EX_TWOCLICKACTIVATE = 128;

// qvMinMax: The rows of a result of MinMax.
var MINI = 0;
var MAXI = 1;

// qvPathDialogMode: What the folder that is asked for is to be.
var qvPDSource = 0;
var qvPDDestination = 1;

// qvPathSeparator: The character between the parts of a shortened path.
var qvPS_BACKSLASH = 92;
var qvPS_SLASH = 47;

// TT_Flags: How a tool shows its tooltip.
var TTF_IDISHWND = 1;
var TTF_CENTERTIP = 2;
var TTF_RTLREADING = 4;
var TTF_SUBCLASS = 16;
var TTF_TRACK = 32;
var TTF_ABSOLUTE = 128;
var TTF_TRANSPARENT = 256;
var TTF_DI_SETITEM = -32768;

// TT_STYLE: How a tooltip window looks and behaves.
var TTS_ALWAYSTIP = 1;
var TTS_NOPREFIX = 2;
var TTS_NOANIMATE = 16;
var TTS_NOFADE = 32;
var TTS_BALLOON = 64;

// TT_Timing: Which of a tooltip's times.
var TTDT_AUTOMATIC = 0;
var TTDT_RESHOW = 1;
var TTDT_AUTOPOP = 2;
var TTDT_INITIAL = 3;

// TT_TITELICON: The icon beside a tooltip's title.
var TTI_NOICON = 0;
var TTI_INFOICON = 1;
var TTI_WARNINGICON = 2;
var TTI_ERRORICON = 3;

// WalkDirConsts: What WalkDirTree reports and where it goes.
var dwWalkDirNormal = 0;
var dwWalkCurDirOnly = 1;
var dwDirectoriesOnly = 2;
