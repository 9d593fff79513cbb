// Keeps the placement of a window in the user's settings: every run finds it where the one before left it. Run it with the
// 32-bit script host:
//     cscript //nologo placement.js
// A script has no windows of its own. An object with the members of a form stands for one here.
function Form() {
    this.Left = this.Top = 0;
    this.Width = 6000;
    this.Height = 4500;
    this.BorderStyle = 2; // can be sized
    this.WindowState = 0; // neither minimised nor maximised
    this.MaxButton = this.MinButton = true;
}

var save = new ActiveXObject("qvObjects.qvSave");
var common = new ActiveXObject("qvObjects.qvCommon");
var form = new Form();
save.Application = "qvObjects examples";
save.Section = "Placement";
save.Form = form;

save.ReadPosition(); // in the middle of the screen when nothing was saved yet
WScript.Echo(common.Insert("The window is at |1, |2 and is |3 wide.", form.Left, form.Top, form.Width));

// Its user moves it and makes it wider.
form.Left += 150;
form.Top += 100;
form.Width += 500;
save.WritePosition();
save.WriteS("Moved by", "placement.js");
WScript.Echo("Next time it will be at " + form.Left + ", " + form.Top + ", moved by " + save.ReadS("Moved by") + ".");
