// Reads options from a plain INI file, one value at a time, and keeps settings in the user's registry. Run it with the 32-bit
// script host:
//     cscript //nologo settings.js
var common = new ActiveXObject("qvObjects.qvCommon");
var api = new ActiveXObject("qvObjects.qvAPI");
var fso = new ActiveXObject("Scripting.FileSystemObject");
var file = fso.BuildPath(fso.GetSpecialFolder(2).Path, "options.ini"); // a whole path; 2: the user's folder for temporary files

api.WritePPs("Main", "Path", "D:\\Data", file);
api.WritePPs("Main", "Unit", "cm", file);
WScript.Echo(api.GetPPs2("Main", "Path", "C:\\Temp", file) + ", " + api.GetPPs2("Main", "Colour", "blue", file));

var entries = new ActiveXObject("Scripting.Dictionary");
var count = api.GetPPSectionDic("Main", entries, file);
WScript.Echo(count + " entries");
for (var names = new Enumerator(entries); !names.atEnd(); names.moveNext())
    WScript.Echo(names.item() + " = " + entries.Item(names.item()));

common.WriteKey("qvObjects example", "Station", "Pegel West");
common.WriteKey("qvObjects example", "ShowGrid", "Wahr"); // as a German program writes it
WScript.Echo("Last station: " + common.ReadKey("qvObjects example", "Station"));
if (common.ReadKeyF("qvObjects example", "ShowGrid", false)) WScript.Echo("with a grid");
WScript.Echo("Printer: " + common.ReadKey("qvObjects example", "Printer", "none"));
