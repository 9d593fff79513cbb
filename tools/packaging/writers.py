"""What is made from a list of registry entries: macros for the installer, and files that reg.exe imports."""
from registration import DLL, FOLDER

CONTAINERS = {"appid", "clsid", "interface", "typelib"}  # keys that belong to everybody


def keys_of(entries):
    """The keys that the entries make, each behind those that it is in, with their views."""
    found = {}
    for entry in entries:
        parts = entry.key.split("\\")
        first = 2 if parts[0].lower() in CONTAINERS else 1
        for depth in range(first, len(parts) + 1):
            found["\\".join(parts[:depth]), entry.view] = None
    return list(found)


# ---- For the installer ------------------------------------------------------------------------------------------------------

def nsis_text(text):
    escaped = text.replace("$", "$$").replace('"', '$\\"')
    return f'"{placed(escaped, "$INSTDIR")}"'


def in_views(steps):
    """The instructions of pairs of a view and an instruction. What belongs to the view of 64 bits is for 64-bit Windows only,
    because others would write it to the one view that they have."""
    lines, current = ["SetRegView 32"], "32"
    for view, instruction in steps:
        wanted = "64" if view == "64" else "32"
        if wanted != current:
            lines += ["${If} ${RunningX64}", "SetRegView 64"] if wanted == "64" else ["SetRegView 32", "${EndIf}"]
            current = wanted
        lines.append(instruction)
    return lines + (["SetRegView 32", "${EndIf}"] if current == "64" else [])


def nsis_macros(name, entries):
    """Two macros: <name>_write, and <name>_remove, which removes that and leaves what others wrote beside it. Both work on
    the user's entries or on everybody's, as the shell context says; the error flag tells of what could not be written."""
    def key(text):
        return nsis_text("Software\\Classes\\" + text)

    def writing(entry):
        kind, data = ("DWORD", entry.data) if isinstance(entry.data, int) else ("Str", nsis_text(entry.data))
        return f"WriteReg{kind} SHCTX {key(entry.key)} {nsis_text(entry.name)} {data}"

    write = [(e.view, writing(e)) for e in entries]
    remove = [(e.view, f"DeleteRegValue SHCTX {key(e.key)} {nsis_text(e.name)}") for e in reversed(entries)]
    keys = keys_of(entries)
    # A user may not have had any classes before.
    containers = dict.fromkeys((path.split("\\")[0], view) for path, view in keys if path.split("\\")[0].lower() in CONTAINERS)
    remove += [(view, f"DeleteRegKey /ifempty SHCTX {key(path)}") for path, view in keys[::-1] + list(containers)]
    lines = []
    for suffix, steps in (("write", write), ("remove", remove)):
        lines += [f"!macro {name}_{suffix}", *("  " + line for line in in_views(steps)), "!macroend"]
    return "\n".join(lines) + "\n"


# ---- For scripts ------------------------------------------------------------------------------------------------------------

HEADER = "Windows Registry Editor Version 5.00"
USER = "HKEY_CURRENT_USER\\Software\\Classes\\"


def depends_on_place(entry):
    return any(stand_in in str(entry.data) for stand_in in (DLL, FOLDER))


def placed(data, folder):
    """The data of an entry for a library in that folder."""
    return data if isinstance(data, int) else data.replace(DLL, folder + "\\qvObjects.dll").replace(FOLDER, folder)


def reg_text(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def reg_data(data):
    return f"dword:{data:08x}" if isinstance(data, int) else reg_text(data)


def reg_file(entries):
    """Writes for the user the entries that are the same wherever the library lies."""
    values = {}
    for entry in entries:
        if not depends_on_place(entry):
            values.setdefault(entry.key, []).append(f"{reg_text(entry.name) if entry.name else '@'}={reg_data(entry.data)}")
    lines = [HEADER]
    for key, assignments in values.items():
        lines += ["", f"[{USER}{key}]", *assignments]
    return "\n".join(lines) + "\n"


def removing_reg_file(entries):
    """Removes from the user's keys those that belong to the library as a whole."""
    keys = [key for key, _ in keys_of(entries)]
    outermost = [key for key in keys if not any(key.startswith(other + "\\") for other in keys)]
    return "\n".join([HEADER, "", *(f"[-{USER}{key}]" for key in outermost)]) + "\n"


def placed_entries(entries):
    """Lines of a command file that write for the user what names the place of the library."""
    for entry in entries:
        if depends_on_place(entry):
            yield f'call :write "{entry.key}" "{placed(entry.data, "%folder%")}"'
