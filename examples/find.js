// Finds the files of a folder, and of all below it, that a pattern matches. Run it with the 32-bit script host:
//     cscript //nologo find.js [FOLDER [PATTERN]]
var files = WScript.CreateObject("qvObjects.qvFile", "files_"); // its events call what begins with files_
var fso = new ActiveXObject("Scripting.FileSystemObject");
var pattern = WScript.Arguments.length > 1 ? WScript.Arguments.Item(1) : "*.nif";
var top;
if (WScript.Arguments.length > 0) {
    top = WScript.Arguments.Item(0);
} else {
    top = fso.BuildPath(fso.GetSpecialFolder(2).Path, "stations"); // 2: the user's folder for temporary files
    files.qvMkDirMulti(top + "\\north\\2026"); // with all folders above it
    fso.CreateTextFile(top + "\\list.txt").Close();
    fso.CreateTextFile(top + "\\north\\levels.nif").Close();
    fso.CreateTextFile(top + "\\north\\2026\\march.nif").Close();
}

var count = 0;
function files_ItemFound(path, name) {
    ++count;
    WScript.Echo(path + name);
}
files.WalkDirTree(top, pattern);
WScript.Echo(count + " files");
