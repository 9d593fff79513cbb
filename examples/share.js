// Shares a text with another script. Run it with the 32-bit script host:
//     cscript //nologo share.js
// It starts itself once more, with the name of the block: that one reads the
// text and writes an answer.
var memory = new ActiveXObject("qvObjects.qvSharedMemory");

if (WScript.Arguments.length > 0) {
    // It is there, with the size that it has.
    memory.Create(WScript.Arguments.Item(0), 4);
    memory.Str = memory.Str + " 21 degrees";
    WScript.Quit();
}

var api = new ActiveXObject("qvObjects.qvAPI");
// A name that no other program has.
var name = "qvObjects example " + api.CreateGUID();
memory.Create(name, 1000);
memory.Str = "How warm is it?";

// The same script host, and so one of 32 bits. Run waits for the other one's end.
var self = WScript.ScriptFullName;
var script = "\"" + WScript.FullName + "\" //nologo \"" + self + "\"";
new ActiveXObject("WScript.Shell").Run(script + " \"" + name + "\"", 0, true);
WScript.Echo(memory.Str);
