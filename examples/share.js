// Shares a text with another script. Run it with the 32-bit script host:
//     cscript //nologo share.js
// It starts itself once more, with the name of the block: that one reads the text and writes an answer.
var memory = new ActiveXObject("qvObjects.qvSharedMemory");

if (WScript.Arguments.length > 0) {
    memory.Create(WScript.Arguments.Item(0), 4);              // it is there, with the size that it has
    memory.Str = memory.Str + " 21 degrees";
    WScript.Quit();
}

var api = new ActiveXObject("qvObjects.qvAPI");
var name = "qvObjects example " + api.CreateGUID();           // a name that no other program has
memory.Create(name, 1000);
memory.Str = "How warm is it?";

// The same script host, and so one of 32 bits. Run waits for the other one's end.
var command = "\"" + WScript.FullName + "\" //nologo \"" + WScript.ScriptFullName + "\" \"" + name + "\"";
new ActiveXObject("WScript.Shell").Run(command, 0, true);
WScript.Echo(memory.Str);
