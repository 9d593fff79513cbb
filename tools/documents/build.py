"""What tools/docs does."""
import os
import re
import shutil
import subprocess

import constants
import samples
from members import ROOT, VERSION, Contents
from reference import REFERENCE, Reference

TARGET = ROOT / "build/docs"
SOURCE = TARGET / "source"
RUNNER = ROOT / "build/release/tools/script_runner/script_runner.exe"


def write_sources(reference):
    shutil.rmtree(SOURCE, ignore_errors=True)
    shutil.copytree(ROOT / "docs", SOURCE, ignore=shutil.ignore_patterns("reference"))
    shutil.copytree(ROOT / "examples", SOURCE / "examples", ignore=shutil.ignore_patterns("CMakeLists.txt"))
    for page in SOURCE.rglob("*.md"):
        # Among the pages the examples lie one folder nearer, for whoever reads the pages alone.
        text = re.sub(r"\[([^\]]*)\]\(\.\./((?:\.\./)*examples/[^)]*)\)", r"{download}`\1 <\2>`", page.read_text(encoding="utf-8"))
        # As in the reference; the name of a sample's language is known to the samples only.
        text = re.sub(r"^```vbs\b.*$", "```vbnet", re.sub(r"^```js\b.*$", "```js", text, flags=re.MULTILINE), flags=re.MULTILINE)
        page.write_text(text, encoding="utf-8")
    reference.write(SOURCE / "reference")


def run(*words, folder=ROOT):
    done = subprocess.run(words, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
    if done.returncode:
        raise SystemExit(f"docs: {words[0]} failed\n{done.stdout}")


def without_time(help_file):
    """A compiled help file without the two times that the compiler writes into it: in its header, and behind its own name in the
    table of its properties."""
    data = bytearray(help_file)
    compiled = re.search(rb"CHMCmd [\d.]+\x03\0\0\0\x0a\0\x04\0(.{4})", data, re.DOTALL)
    if data[:4] != b"ITSF" or not compiled:
        raise SystemExit("docs: the help file says nowhere when it was compiled")
    data[16:20] = data[compiled.start(1):compiled.end(1)] = bytes(4)
    return bytes(data)


def build(reference):
    if subprocess.run([ROOT / "tools/setup", "documents"]).returncode:
        raise SystemExit(1)
    for folder in ("html", "help", "read", "read_for_help"):
        shutil.rmtree(TARGET / folder, ignore_errors=True)
    write_sources(reference)
    sphinx = ("sphinx-build", "-q", "-D", f"html_title=qvObjects {VERSION}")
    run(*sphinx, "-W", "--keep-going", "-b", "html", "-d", TARGET / "read", SOURCE, TARGET / "html")
    run(*sphinx, "-t", "htmlhelp", "-b", "htmlhelp", "-d", TARGET / "read_for_help", SOURCE, TARGET / "help")
    run("chmcmd", "qvObjects.hhp", folder=TARGET / "help")
    (TARGET / "qvObjects.chm").write_bytes(without_time((TARGET / "help/qvObjects.chm").read_bytes()))
    print(f"docs: {(TARGET / 'html/index.html').relative_to(ROOT)} and {(TARGET / 'qvObjects.chm').relative_to(ROOT)}")


# ---- Checking ---------------------------------------------------------------------------------------------------------------

class Report:
    def __init__(self):
        self.count = 0
        self.bad = 0

    def check(self, good, what):
        self.count += 1
        self.bad += not good
        print(("ok - " if good else "not ok - ") + what)

    def end(self):
        print(f"1..{self.count}")
        return 1 if self.bad else 0


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def run_samples(found):
    """Runs each in a folder of its own; gives what they print. What is there is UTF-16, which every script engine reads."""
    if not found:
        return []
    folder = TARGET / "samples"
    shutil.rmtree(folder, ignore_errors=True)
    paths = []
    for number, sample in enumerate(found):
        path = folder / f"{number:04}" / f"sample.{sample.language}"
        path.parent.mkdir(parents=True)
        path.write_bytes(b"\xff\xfe" + sample.code.replace("\n", "\r\n").encode("utf-16-le"))
        paths.append(path)
    list = folder / "list"
    list.write_text("".join(windows_path(path) + "\r\n" for path in paths), encoding="ascii")
    command = ["wine", str(RUNNER), "/each", windows_path(list)]
    if os.environ.get("WINEPREFIX") != str(ROOT / "build/prefix") or "DISPLAY" not in os.environ:
        script = '. tools/environment && one_at_a_time && tools/prefix >&2 && start_windows && "$@"'
        command = ["bash", "-c", script, "docs", *command]
    try:
        subprocess.run(command, cwd=ROOT, stdin=subprocess.DEVNULL, timeout=400)
    except subprocess.TimeoutExpired:
        print("# the samples did not come to their end")
    outputs = [path.with_name(path.name + ".out") for path in paths]
    return [output.read_text(encoding="utf-8") if output.exists() else "(it was not run)\n" for output in outputs]


def check_samples(report, found):
    runnable = [sample for sample in found if sample.runs]
    for sample, printed in zip(runnable, run_samples(runnable)):
        place = f"{sample.file.relative_to(ROOT)}:{sample.line}"
        good = printed == (sample.expected or "")
        report.check(good, f"{place} prints what stands behind it")
        if not good:
            print("".join(f"#   {line}\n" for line in printed.splitlines()), end="")


def check(reference, only):
    report = Report()
    faults = [fault for fault in reference.faults() if not only or fault.startswith(tuple(only))]
    for fault in faults:
        report.check(False, fault)
    report.check(not faults, "every member of the type library has its entry in the reference")
    for path in constants.outdated(reference.contents):
        report.check(False, f"{path.relative_to(ROOT)} is what tools/docs --constants writes")
    wanted = [sample for sample in samples.in_documents(ROOT) if not only or sample.file.stem.startswith(tuple(only))]
    check_samples(report, wanted)
    return report.end()


def main(words):
    reference = Reference(Contents())
    if words == ["--constants"]:
        constants.write(reference.contents)
        return 0
    if words[:1] == ["--check"]:
        return check(reference, words[1:])
    build(reference)
    return 0
