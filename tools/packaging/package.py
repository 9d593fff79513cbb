"""Makes what users take home from what has been built: a package, an installer, and the symbols of the library.

usage: package.py [--core] [--time SECONDS] FOLDER

FOLDER receives qvObjects-<version>.zip, qvObjects-<version>-setup.exe and qvObjects-<version>-symbols.zip. The time, in seconds
since 1970, is that of all files in them; the same input gives the same bytes."""
import argparse
import atexit
import os
import shutil
import subprocess
import sys
import tempfile
import time
import zipfile
from pathlib import Path

sys.dont_write_bytecode = True

import manifest
import surrogate
import writers
from registration import DLL, FOLDER, ROOT, Registration, identity
from members import VERSION

BUILT = ROOT / "build/release"
PAGES = ROOT / "build/docs"
OWN = ROOT / "tools/packaging"
WORK = Path(tempfile.mkdtemp(prefix="package-", dir=ROOT / "build"))
atexit.register(shutil.rmtree, WORK)
# Files that Windows' own editor shows; before Windows 10 it knows no other ends of lines.
TEXTS = {".cmd", ".cpp", ".h", ".ini", ".js", ".manifest", ".md", ".reg", ".txt", ".vbs"}

README = """qvObjects {version}

Installing, using and removing it: {help}
What has changed: CHANGELOG.md
For everybody, in a console of an administrator: register_for_everybody.cmd
For one user, without rights: register_for_me.cmd
Then, to use it by 64-bit programs as well: 64_bit_on.cmd
"""

SWITCH_OFF = r"""rem What 64_bit_on wrote is seen by the reg.exe of 64 bits.
set "registry64=%SystemRoot%\System32\reg.exe"
if exist "%SystemRoot%\Sysnative\reg.exe" set "registry64=%SystemRoot%\Sysnative\reg.exe"
if exist "%SystemRoot%\SysWOW64\reg.exe" "%registry64%" import "%~dp0registration\64_bit_off_for_@USERS@.reg" >nul 2>&1
"""


def with_text(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="utf-8", newline="\n")


def copied(source, target):
    target.parent.mkdir(parents=True, exist_ok=True)
    if source.is_dir():
        shutil.copytree(source, target, ignore=shutil.ignore_patterns("CMakeLists.txt", ".buildinfo"))
    else:
        shutil.copyfile(source, target)


def finish(folder, when):
    """Gives all files of a folder the ends of lines that users expect, and their time."""
    for path in sorted(folder.rglob("*"), reverse=True):
        if path.suffix in TEXTS:
            path.write_bytes(path.read_bytes().replace(b"\r\n", b"\n").replace(b"\n", b"\r\n"))
        os.utime(path, (when, when))


def parts_of(registration):
    """What may be written into the registry: lists of entries by name. Serving 64-bit programs is an option."""
    return {"registration": registration.entries(), "surrogate": list(surrogate.entries(registration))}


def fill_common(folder, registration, version, pages):
    """What the package and the installer both bring."""
    copied(BUILT / "qvObjects.dll", folder / "qvObjects.dll")
    copied(BUILT / "interface/qvObjects.tlb", folder / "qvObjects.tlb")
    for header in ("qvObjects.h", "collection.h"):
        copied(BUILT / "interface" / header, folder / "include" / header)
    with_text(folder / f"{manifest.ASSEMBLY}.manifest", manifest.manifest(registration, version))
    copied(ROOT / "examples", folder / "examples")
    copied(ROOT / "CHANGELOG.md", folder / "CHANGELOG.md")
    if pages:
        copied(PAGES / "qvObjects.chm", folder / "qvObjects.chm")


def switched_off(users):
    """Lines of a command file that take back what 64_bit_on wrote."""
    return SWITCH_OFF.replace("@USERS@", users)


def fill_switches(folder, registration):
    """The scripts that let 64-bit programs use the library, and those that no longer do."""
    script = (OWN / "serve_64_bit.cmd").read_text(encoding="ascii")
    any_class = identity(registration.creatable_classes()[0].attributes["uuid"])
    for switch, can in (("on", "can"), ("off", "cannot")):
        text = script.replace("@SWITCH@", switch).replace("@CAN@", can).replace("@CLASS@", any_class)
        with_text(folder / f"64_bit_{switch}.cmd", text)
        for users in surrogate.ROOTS:
            with_text(folder / f"registration/64_bit_{switch}_for_{users}.reg", surrogate.reg_file(registration, switch, users))


def fill_package(folder, registration, version, pages):
    fill_common(folder, registration, version, pages)
    entries = registration.entries()
    with_text(folder / "registration/add.reg", writers.reg_file(entries))
    with_text(folder / "registration/remove.reg", writers.removing_reg_file(entries))
    for_all = (OWN / "register_for_everybody.cmd").read_text(encoding="ascii")
    for name, off, undo, done in (("register", "", "", "registered"),
                                  ("unregister", switched_off("everybody"), "/u ", "no longer registered")):
        text = for_all.replace("@OFF@", off).replace("@UNDO@", undo).replace("@DONE@", done)
        with_text(folder / f"{name}_for_everybody.cmd", text)
    for_me = (OWN / "register_for_me.cmd").read_text(encoding="ascii")
    with_text(folder / "register_for_me.cmd", for_me.replace("@PLACED@", "\n".join(writers.placed_entries(entries))))
    no_more_for_me = (OWN / "unregister_for_me.cmd").read_text(encoding="ascii")
    with_text(folder / "unregister_for_me.cmd", no_more_for_me.replace("@OFF@", switched_off("me")))
    fill_switches(folder, registration)
    help = "pages/installing.html, or qvObjects.chm" if pages else "installing.md"
    with_text(folder / "README.txt", README.format(version=version, help=help))
    if pages:
        copied(PAGES / "html", folder / "pages")
    else:
        copied(ROOT / "docs/installing.md", folder / "installing.md")


def write_zip(target, folder, name, when):
    """Packs a folder under a name, in the order of names."""
    moment = time.gmtime(when)[:6]
    with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for path in sorted(path for path in folder.rglob("*") if path.is_file()):
            entry = zipfile.ZipInfo(f"{name}/{path.relative_to(folder).as_posix()}", moment)
            entry.create_system = 0
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, path.read_bytes())


def files_macros(folder):
    """How the installer puts the files of a folder in place, but for the library itself, and removes them."""
    install, remove, folders = [], [], []
    for path in sorted(folder.rglob("*")):
        name = writers.nsis_text(f"{FOLDER}/{path.relative_to(folder).as_posix()}".replace("/", "\\"))
        if path.is_dir():
            folders.append(f"RMDir {name}")
        elif path.name != "qvObjects.dll":
            install += [f"SetOutPath {parent_of(name)}", f'File "{path}"']
            remove.append(f"Delete {name}")
    install.append('SetOutPath "$INSTDIR"')
    macros = (("payload_install", install), ("payload_remove", remove + folders[::-1]))
    return "".join(f"!macro {name}\n" + "".join(f"  {line}\n" for line in lines) + "!macroend\n" for name, lines in macros)


def parent_of(name):
    return name.rpartition("\\")[0] + '"'


def make_installer(target, payload, registration, version, pages, when):
    for name, entries in parts_of(registration).items():
        with_text(WORK / f"{name}.nsh", writers.nsis_macros(name, entries))
    path = next(entry.key for entry in registration.entries() if entry.data == DLL)
    with_text(WORK / "files.nsh", files_macros(payload) + f'!define TYPE_LIBRARY_PATH "{path}"\n' +
              ("!define HELP qvObjects.chm\n" if pages else ""))
    defines = {"VERSION": version, "PAYLOAD": payload, "GENERATED": WORK, "TARGET": target}
    words = ["makensis", "-V2", "-WX", "-INPUTCHARSET", "UTF8", *(f"-D{name}={value}" for name, value in defines.items()),
             str(OWN / "installer.nsi")]
    done = subprocess.run(words, env={**os.environ, "SOURCE_DATE_EPOCH": str(when)}, capture_output=True, text=True)
    if done.returncode:
        raise SystemExit(f"package: makensis failed\n{done.stdout}{done.stderr}")


def main():
    words = argparse.ArgumentParser()
    words.add_argument("--core", action="store_true", help="without the pages and the symbols")
    words.add_argument("--time", type=int, default=315532800) # the first that a zip file knows
    words.add_argument("folder", type=Path)
    given = words.parse_args()
    pages, version, when, target = not given.core, VERSION, given.time, given.folder.resolve()
    registration = Registration()
    target.mkdir(parents=True, exist_ok=True)
    name = f"qvObjects-{version}"

    fill_package(WORK / "package", registration, version, pages)
    finish(WORK / "package", when)
    write_zip(target / f"{name}.zip", WORK / "package", name, when)

    fill_common(WORK / "installed", registration, version, pages)
    finish(WORK / "installed", when)
    make_installer(target / f"{name}-setup.exe", WORK / "installed", registration, version, pages, when)

    if not given.core:
        copied(BUILT / "qvObjects.debug", WORK / "symbols/qvObjects.debug")
        write_zip(target / f"{name}-symbols.zip", WORK / "symbols", name, when)


if __name__ == "__main__":
    main()
