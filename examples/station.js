// Makes an INI file with sections in sections, changes it and lists it. Run it with the 32-bit script host:
//     cscript //nologo station.js
var fso = new ActiveXObject("Scripting.FileSystemObject");
var file = fso.BuildPath(fso.GetSpecialFolder(2).Path, "station.ini"); // 2: the user's folder for temporary files

var ini = new ActiveXObject("qvObjects.qvIniFile");
ini("Display")("Title").Value = "Pegel Nord";
ini("Display")("FontSize").Value = 10;
ini("Sensors")("Interval").Value = 60;
ini("Sensors").Section("Water")("Unit").Value = "m";
ini("Sensors").Section("Air")("Unit").Value = "ft";
ini.Save(file);

var station = new ActiveXObject("qvObjects.qvIniFile");
station.Load(file);
station("Display")("FontSize").Value = 12;
WScript.Echo("Language: " + station("Display")("Language").Value("German")); // what is empty has a default
station.Save();

function list(sections, indent) {
    for (var s = new Enumerator(sections); !s.atEnd(); s.moveNext()) {
        WScript.Echo(indent + "[" + s.item().Name + "]");
        for (var p = new Enumerator(s.item().Parameter); !p.atEnd(); p.moveNext())
            WScript.Echo(indent + "  " + p.item().Name + "=" + p.item().Value);
        list(s.item().Section, indent + "  ");
    }
}
list(station.Section, "");
