#!/usr/bin/env python3
"""Lets 64-bit programs use the 32-bit library: the platform's surrogate process loads it and passes their calls on.

usage: surrogate.py on|off everybody|me FILE

Writes a file that switches this on or off where the library is registered, for everybody or for the user. It is for the
reg.exe of 64 bits: that of 32 bits sees another registry."""
import sys
from pathlib import Path

from registration import Entry, Registration, identity
from writers import HEADER, keys_of, reg_data, reg_text

APPLICATION = "{31B35E55-109C-4A04-B19A-D9067DB4878C}"  # the surrogate process; never to be changed, nor used for another library

SERVER_OF_32_BITS = 2

ROOTS = {"everybody": "HKEY_LOCAL_MACHINE", "me": "HKEY_CURRENT_USER"}


def entries(registration):
    """What switching on writes. Classes and interfaces have a key in each view, and 64-bit programs see only one."""
    application = f"AppID\\{APPLICATION}"
    yield Entry(application, "", registration.contract.library, "shared")
    yield Entry(application, "DllSurrogate", "", "shared")  # empty: the platform's own
    # The classes have a key in the view of 64 bits, too, but no library there.
    yield Entry(application, "PreferredServerBitness", SERVER_OF_32_BITS, "shared")
    for entry in registration.creatable_classes():
        key = f"CLSID\\{identity(entry.attributes['uuid'])}"
        program = registration.program_of(entry)
        yield Entry(key, "AppID", APPLICATION, "32")
        yield Entry(key, "", program, "64")
        yield Entry(key, "AppID", APPLICATION, "64")
        yield Entry(f"{key}\\ProgID", "", program, "64")
        yield Entry(f"{key}\\TypeLib", "", registration.library, "64")
    for face in registration.marshalled_interfaces():
        for entry in registration.of_interface(*face):
            yield Entry(entry.key, entry.name, entry.data, "64")


def is_all_of_its_key(entry):
    """Whether nothing but the entries writes to the key, so that switching off removes it as a whole."""
    return entry.view == "64" or entry.key.startswith("AppID\\")


def key_line(root, view, key, remove=""):
    return f"[{remove}{ROOTS[root]}\\Software\\Classes\\{'Wow6432Node' + chr(92) if view == '32' else ''}{key}]"


def switched_on(found, root):
    for entry in found:
        yield key_line(root, entry.view, entry.key)
        yield f"{reg_text(entry.name) if entry.name else '@'}={reg_data(entry.data)}"


def switched_off(found, root):
    for key, view in keys_of([entry for entry in found if is_all_of_its_key(entry)]):
        if key.count("\\") == 1:
            yield key_line(root, view, key, "-")
    for entry in found:
        if not is_all_of_its_key(entry):
            yield key_line(root, entry.view, entry.key)
            yield f"{reg_text(entry.name)}=-"


def reg_file(registration, switch, root):
    lines = {"on": switched_on, "off": switched_off}[switch](list(entries(registration)), root)
    return "\n".join([HEADER, "", *lines]) + "\n"


if __name__ == "__main__":
    switch, root, file = sys.argv[1:]
    Path(file).write_text(reg_file(Registration(), switch, root), encoding="ascii", newline="\r\n")
