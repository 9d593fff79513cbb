// Sections of a profile file in an object of the script that is used like a collection.
var api = new ActiveXObject("qvObjects.qvAPI");
var file = new ActiveXObject("Scripting.FileSystemObject").GetAbsolutePathName("build\\clients\\profile_js.ini");
check("writing", 0, api.WritePPs("Main", "Path", "C:\\x", file));
api.WritePPs("Main", "Empty", "", file);
api.WritePPs("Two", "k", 1.5, file);

function Collection() {
    this.Count = 1;
    this.calls = "";
    this.Add = function (item, key) {
        this.Count++;
        this.calls += "Add " + item + (key === undefined ? "" : " as " + key) + "; ";
    };
    this.Remove = function (index) {
        this.Count--;
        this.calls += "Remove " + index + "; ";
    };
}

var entries = new Collection();
check("entries of a section", 2, api.GetPPSectionCol("Main", entries, file));
check("the first item goes before, keys come with their values", "Remove 1; Add C:\\x as Path; Add  as Empty; ", entries.calls);
var names = new Collection();
check("names of sections", 2, api.GetPPSectionNamesCol(names, file));
check("names without keys", "Remove 1; Add Main; Add Two; ", names.calls);
entries.Add = function () {
    throw new Error(5, "the collection's own");
};
checkFails("an error of the collection", function () { api.GetPPSectionCol("Main", entries, file); });
done();
