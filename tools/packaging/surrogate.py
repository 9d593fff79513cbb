#!/usr/bin/env python3
"""Lets 64-bit programs use the 32-bit library: the platform's surrogate process loads it and passes their calls on.

usage: surrogate.py on|off machine|user FILE

Writes a registry file that switches this on or off for a library that is registered, for all users or for the current one. It
is for the registry editors of 64 bits; those of 32 bits see another registry."""
import sys
from pathlib import Path

from registration import Entry, Registration, identity

APPLICATION = "{31B35E55-109C-4A04-B19A-D9067DB4878C}"  # names the surrogate process; never to be changed, nor used for another library

SERVER_OF_32_BITS = 2

ROOTS = {"machine": "HKEY_LOCAL_MACHINE", "user": "HKEY_CURRENT_USER"}


def entries(registration):
    """What switching on writes. Classes and interfaces have a key in each view, and 64-bit programs see only one."""
    application = f"AppID\\{APPLICATION}"
    yield Entry(application, "", registration.contract.library, "shared")
    yield Entry(application, "DllSurrogate", "", "shared")  # empty: the platform's own
    # The classes have a key in the view of 64 bits, where there is no library to load.
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


def is_ours_alone(entry):
    """Whether nothing else writes to the entry's key, so that switching off removes all of it."""
    return entry.view == "64" or entry.key.startswith("AppID\\")


def whole_keys(found):
    """View and name of the outermost keys that go as a whole."""
    return dict.fromkeys((entry.view, "\\".join(entry.key.split("\\")[:2])) for entry in found if is_ours_alone(entry))


def path(view, key):
    return ("Wow6432Node\\" if view == "32" else "") + key


def switched_on(found, classes):
    for entry in found:
        name = f'"{entry.name}"' if entry.name else "@"
        data = f"dword:{entry.data:08x}" if isinstance(entry.data, int) else f'"{entry.data}"'
        yield f"[{classes}\\{path(entry.view, entry.key)}]"
        yield f"{name}={data}"


def switched_off(found, classes):
    for view, key in whole_keys(found):
        yield f"[-{classes}\\{path(view, key)}]"
    for entry in found:
        if not is_ours_alone(entry):
            yield f"[{classes}\\{path(entry.view, entry.key)}]"
            yield f'"{entry.name}"=-'


def main():
    switch, root, file = sys.argv[1:]
    lines = {"on": switched_on, "off": switched_off}[switch](list(entries(Registration())), ROOTS[root] + r"\Software\Classes")
    text = "Windows Registry Editor Version 5.00\n\n" + "\n".join(lines) + "\n"
    Path(file).write_text(text, encoding="utf-16", newline="\r\n")


if __name__ == "__main__":
    main()
