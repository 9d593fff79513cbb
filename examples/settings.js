// Keeps a count in an INI file. Run it with the 32-bit script host:
//     cscript //nologo settings.js [INI file]
var ini = new ActiveXObject("qvObjects.qvIniFile");
var files = new ActiveXObject("Scripting.FileSystemObject");

ini.FileName = WScript.Arguments.length > 0
    ? WScript.Arguments.Item(0)
    : files.BuildPath(files.GetSpecialFolder(2).Path, "settings.ini"); // 2: the folder for temporary files
if (files.FileExists(ini.FileName))
    ini.Load();

var runs = ini.Section("Statistics").Parameter("Runs");
runs.Value = Number(runs.Value("0")) + 1;
ini.Save();

var common = new ActiveXObject("qvObjects.qvCommon");
WScript.Echo(common.Insert("Run |1, counted in |a|2|a.", runs.Value(), ini.FileName));
