"""What tools/docs does."""
import os
import re
import shutil
import subprocess

import constants
import links
import samples
from members import ROOT, Contents
from reference import Reference

TARGET = ROOT / "build/docs"
SOURCE = TARGET / "source"
RUNNER = ROOT / "build/release/tools/script_runner/script_runner.exe"


def write_sources(reference, target):
    shutil.rmtree(target, ignore_errors=True)
    shutil.copytree(ROOT / "docs", target, ignore=shutil.ignore_patterns("reference"))
    shutil.copytree(ROOT / "examples", target / "examples", ignore=shutil.ignore_patterns("CMakeLists.txt"))
    for page in target.rglob("*.md"):
        text = links.to_pages(page.read_text(encoding="utf-8"), ROOT / "docs" / page.relative_to(target), reference)
        # Among the pages the examples lie one folder nearer, for whoever reads the pages alone.
        text = re.sub(r"\[([^\]]*)\]\(\.\./((?:\.\./)*examples/[^)]*)\)", r"{download}`\1 <\2>`", text)
        # As in the reference; the name of a sample's language is known to the samples only.
        text = re.sub(r"^```vbs\b.*$", "```vbnet", re.sub(r"^```js\b.*$", "```js", text, flags=re.MULTILINE), flags=re.MULTILINE)
        page.write_text(text, encoding="utf-8")
    reference.write(target / "reference")


def run(*words, folder=ROOT):
    done = subprocess.run(words, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
    if done.returncode:
        raise SystemExit(f"docs: {words[0]} failed\n{done.stdout}")


def build(reference):
    if subprocess.run([ROOT / "tools/setup", "documents"]).returncode:
        raise SystemExit(1)
    shutil.rmtree(TARGET / "html", ignore_errors=True)
    shutil.rmtree(TARGET / "help", ignore_errors=True)
    write_sources(reference, SOURCE)
    run("sphinx-build", "-j", "auto", "-q", "-W", "--keep-going", "-b", "html", SOURCE, TARGET / "html")
    run("sphinx-build", "-j", "auto", "-q", "-t", "htmlhelp", "-b", "htmlhelp", SOURCE, TARGET / "help")
    index = TARGET / "help/qvObjects.hhk"
    index.write_bytes(index.read_bytes().replace(b'name="Keyword"', b'name="Name"'))  # which every viewer knows
    run("chmcmd", "qvObjects.hhp", folder=TARGET / "help")
    shutil.move(TARGET / "help/qvObjects.chm", TARGET / "qvObjects.chm")
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


def check_links(report, reference):
    """Links are seen as the sources lie in the repository, and in the pages before the long way to HTML."""
    checked = TARGET / "checked"
    write_sources(reference, checked)
    sources = [ROOT / f"{name}.md" for name in ("README", "CONTRIBUTING", "CHANGELOG")]
    sources += [*(ROOT / "docs").rglob("*.md"), *(ROOT / "examples").rglob("*.md")]
    pages = sorted(checked.rglob("*.md"))
    found = [*links.leading_nowhere([*sorted(sources), *pages]), *links.missing_contents(pages)]
    for path, target in found:
        report.check(False, f"{path.relative_to(ROOT)}: {target} leads somewhere")
    report.check(not found, "every link in the documents leads somewhere")


def check(reference, only):
    report = Report()
    faults = [fault for fault in reference.faults() if not only or fault.startswith(tuple(only))]
    for fault in faults:
        report.check(False, fault)
    report.check(not faults, "every member of the type library has its entry in the reference")
    for path in constants.outdated(reference.contents):
        report.check(False, f"{path.relative_to(ROOT)} is what tools/docs --constants writes")
    check_links(report, reference)
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
