// Makes an INI file, reads it back and tells what is in it. Run it with the 32-bit script host:
//     cscript //nologo first.js
var fso = new ActiveXObject("Scripting.FileSystemObject");
var file = fso.BuildPath(fso.GetSpecialFolder(2).Path, "first.ini"); // 2: the user's folder for temporary files

var ini = new ActiveXObject("qvObjects.qvIniFile");
ini("Main")("Path").Value = "C:\\Data";
ini("Main")("Language").Value = "English";
ini.Save(file);

var readBack = new ActiveXObject("qvObjects.qvIniFile");
readBack.Load(file);
var common = new ActiveXObject("qvObjects.qvCommon");
WScript.Echo(common.Insert("|a|1|a has |2 section.", readBack.FileName, readBack.Section.Count));
for (var all = new Enumerator(readBack("Main").Parameter); !all.atEnd(); all.moveNext())
    WScript.Echo(all.item().Name + " = " + all.item().Value);
