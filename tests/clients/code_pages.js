// Calls by name with texts of several scripts, which no code page but UTF-8 has all of. `check` runs it in Japanese as well.
var common = new ActiveXObject("qvObjects.qvCommon");
var ini = new ActiveXObject("qvObjects.qvIniFile");
var text = "\u8868\u30BD \u65E5\u672C Gr\u00F6\u00DFe";

check("a name with an umlaut", "\"" + text + "\"", common["Anf\u00FC"](text));
check("in another case", "\"x\"", common["ANF\u00DC"]("x"));
check("a name before it", "1 " + text, common.Insert("|1 |2", 1, text));
check("a name behind it", text, common.qvTrim(" " + text + " "));

ini.Section(text).Parameter(text) = text;
check("a section", text, ini.Section(1).Name);
check("a parameter", text, ini(text)(text).Value);
check("a member of another class", "C:\\" + text, new ActiveXObject("qvObjects.qvFile").qvPathCombine("C:\\", text));

done();
