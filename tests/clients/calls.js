// What JScript does differently from VBScript: undefined and null, numbers that are always doubles, its own objects.
var common = new ActiveXObject("qvObjects.qvCommon");
var ini = new ActiveXObject("qvObjects.qvIniFile");

check("a name with an umlaut", "\"x\"", common.Anfü("x"));
check("an argument left out", "HellWorld", common.StringCut("Hello  World", "o"));
check("a double for a short integer", "Hell World", common.StringCut("Hello  World", "o", 1));
check("values of a template", "a 1 true", common.Insert("|1 |2 |3", "a", 1, "true"));

// The tree, in the spelling that JScript allows.
ini.Section("Main").Parameter("Path") = "x";
ini.Section.Item("Main").Parameter.Item("Path").Value = "y";
check("set by full names", "y", ini("Main")("Path").Value);
check("a position that is a double", "Main", ini.Section(1.0).Name);
check("the default of an empty value", "d", ini("Main")("Empty").Value("d"));

var seen = "";
for (var sections = new Enumerator(ini.Section); !sections.atEnd(); sections.moveNext())
    seen += sections.item().Name + ";";
check("walking over sections", "Main;", seen);

// A JScript object as a collection, and as an object to be looked at.
var count = 0;
var numbers = {
    all: "",
    Count: function () { return count; },
    Add: function (item) { this.all += item + " "; ++count; },
    Item: function (key) { if (key > count) throw new Error("no such item"); return key; }
};
check("a script's own collection is filled", 3, common.GetNumbersFromStringCol("a12b3,45", numbers));
check("what it was filled with", "12 3 45 ", numbers.all);
check("an item that is there", true, common.ExistsInCol(numbers, 1));
check("an item that is not there", false, common.ExistsInCol(numbers, 9));
check("an object with a name", true, common.ObjTest({ Name: function () { return "x"; } }));
check("an object without a name", false, common.ObjTest({}));

checkFails("too few arguments", function () { common.qvTrim(); });
checkError("null as a text", 94, "Invalid use of Null", function () { common.Insert("|1", null); });
checkError("a missing file", 53, "File not found", function () { ini.Load("build\\clients\\missing.ini"); });

done();
