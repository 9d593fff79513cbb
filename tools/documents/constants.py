"""The enumerations as constants for scripts, which see nothing of the type library."""
from members import ROOT

EXAMPLES = ROOT / "examples"


def vbscript(enumerations):
    lines = ["' The values of the library's enumerations. A script takes them in with",
             "'     ExecuteGlobal CreateObject(\"Scripting.FileSystemObject\").OpenTextFile(\"constants.vbs\").ReadAll",
             "' Written by tools/docs --constants."]
    for enumeration in enumerations:
        lines += ["", f"' {enumeration.name}: {enumeration.help}"]
        lines += [f"Const {name} = {value}" for name, value in enumeration.values.items()]
    return lines


def jscript(enumerations):
    lines = ["// The values of the library's enumerations. A script takes them in with",
             "//     eval(new ActiveXObject(\"Scripting.FileSystemObject\").OpenTextFile(\"constants.js\").ReadAll());",
             "// Written by tools/docs --constants."]
    for enumeration in enumerations:
        lines += ["", f"// {enumeration.name}: {enumeration.help}"]
        lines += [f"var {name} = {value};" for name, value in enumeration.values.items()]
    return lines


def files(contents):
    """The files with their texts, as script hosts read them."""
    enumerations = sorted(contents.enumerations.values(), key=lambda enumeration: enumeration.name.lower())
    return {EXAMPLES / "constants.vbs": vbscript(enumerations), EXAMPLES / "constants.js": jscript(enumerations)}


def write(contents):
    for path, lines in files(contents).items():
        path.write_text("\n".join(lines) + "\n", encoding="ascii")


def outdated(contents):
    return [path for path, lines in files(contents).items()
            if not path.exists() or path.read_text(encoding="ascii") != "\n".join(lines) + "\n"]
