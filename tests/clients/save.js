// Windows whose placement is kept, as objects of a script. Every run has a section of its own: the store keeps the others.
var save = new ActiveXObject("qvObjects.qvSave");
var shell = new ActiveXObject("WScript.Shell");
var notSet = "Object variable or With block variable not set";
checkError("no form", 91, notSet, function () { save.WritePosition(); });
save.Application = "qvObjects script tests";
save.Section = "Run " + new Date().getTime();

function stored(key) {
    return shell.RegRead(["HKCU\\Software\\VB and VBA Program Settings", save.Application, save.Section, key].join("\\"));
}
function Form(state) {
    this.Left = 1500.5;
    this.Top = -30;
    this.Width = 6000;
    this.Height = 4500;
    this.BorderStyle = 2;
    this.WindowState = state;
    this.MaxButton = this.MinButton = true;
}

var form = new Form(2);
save.Form = form;
check("a form is kept", true, save.Form === form);
check("never saved, it is read", true, save.ReadPosition());
check("and centred, with its size and its state", "true 6000 2", [form.Left > 0 && form.Top > 0, form.Width, form.WindowState].join(" "));
form.Left = 1500.5;
form.Top = -30;
form.WindowState = 0;
save.WritePosition();
form.WindowState = 1;
save.WritePosition();
check("its place and its state lie in the registry", "-30 1", stored("Top") + " " + stored("WindowState"));
form.Left = form.Top = form.Width = 0;
save.ReadPosition();
check("saved minimised, it comes back normal, where it was", "1500.5 -30 6000 0",
    [form.Left, form.Top, form.Width, form.WindowState].join(" "));
delete form.MinButton;
checkError("a form without a member", 438, "Object doesn't support this property or method", function () { save.ReadPosition(); });

// A list view whose headers are a collection of the script.
function ListView(widths, sortKey) {
    this.Name = "list";
    this.ColumnHeaders = { all: [], Count: widths.length, Item: function (position) { return this.all[position - 1]; } };
    for (var i = 0; i < widths.length; ++i)
        this.ColumnHeaders.all[i] = { Width: widths[i] };
    this.SortKey = sortKey;
}
save.WriteListView(new ListView([1440, 800.5], 1));
var list = new ListView([5, 6, 7], 0), headers = list.ColumnHeaders.all;
save.ReadListView(list);
check("columns and order come back", "1440 800.5 7 1", [headers[0].Width, headers[1].Width, headers[2].Width, list.SortKey].join(" "));

function Bar(width, size, state) {
    this.Name = "tools";
    this.Align = 3;
    this.Width = width;
    this.Height = 9000;
    this.WindowState = state;
    this.NormalSize = size;
    this.UndockedBar = { Left: size, Top: 2, Width: 3, Height: 4, DockedWindowState: 1 };
    this.Parent = { ScaleWidth: 2000, ScaleHeight: 1000 };
    this.LimitLeft = 0;
    this.MinSize = 500;
    this.Refresh = function () { this.refreshed = true; };
}
save.WriteQvBar(new Bar(3000, 2500, 0));
var bar = new Bar(0, 0, 1);
save.ReadQvBar(bar, 100, 0, true);
check("the bar comes back, as wide as there is room", "2000 2500 2500 0 true",
    [bar.Width, bar.NormalSize, bar.UndockedBar.Left, bar.WindowState, bar.refreshed].join(" "));

save.WriteS("Flag", true);
check("a truth value is read in any language", true, save.ReadF("Flag"));
check("and so is a default", true, save.ReadF("None", true));

done();
