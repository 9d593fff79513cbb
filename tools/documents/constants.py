"""The enumerations as constants for scripts, which see nothing of the type library."""
from members import ROOT

EXAMPLES = ROOT / "examples"


# Of a language: how it comments, takes the file in, and says what a name stands for.
LANGUAGES = {
    "vbs": ("'", 'ExecuteGlobal CreateObject("Scripting.FileSystemObject").OpenTextFile("constants.vbs").ReadAll',
            "Const {} = {}"),
    "js": ("//", 'eval(new ActiveXObject("Scripting.FileSystemObject").OpenTextFile("constants.js").ReadAll());',
           "var {} = {};"),
}


def lines_of(enumerations, language):
    comment, taken_in, constant = LANGUAGES[language]
    lines = [f"{comment} The values of the library's enumerations. A script takes them in with",
             f"{comment}     {taken_in}",
             f"{comment} Written by tools/docs --constants."]
    for enumeration in enumerations:
        lines += ["", f"{comment} {enumeration.name}: {enumeration.help}"]
        lines += [constant.format(name, value) for name, value in enumeration.values.items()]
    return lines


def files(contents):
    """The files with their texts, as script hosts read them."""
    enumerations = sorted(contents.enumerations.values(), key=lambda enumeration: enumeration.name.lower())
    return {EXAMPLES / f"constants.{language}": lines_of(enumerations, language) for language in LANGUAGES}


def write(contents):
    for path, lines in files(contents).items():
        path.write_text("\n".join(lines) + "\n", encoding="ascii")


def outdated(contents):
    return [path for path, lines in files(contents).items()
            if not path.exists() or path.read_text(encoding="ascii") != "\n".join(lines) + "\n"]
