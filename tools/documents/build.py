"""What tools/docs does."""
import os
import re
import shlex
import shutil
import subprocess

import constants
import links
import samples
from members import ROOT, VERSION, Contents
from reference import Reference

TARGET = ROOT / "build/docs"
SOURCE = TARGET / "source"
EXAMPLES = ROOT / "examples"
RUNNER = ROOT / "build/release/tools/script_runner/script_runner.exe"
SHOWN_AS = {"vbs": "vbnet", "js": "js"}


def with_program(match):
    """The line that shows a program of examples/, for the pages: what leads to it, and the program itself."""
    if not match["shown"]:
        return match[0]
    language = SHOWN_AS[match["shown"].rpartition(".")[2]]
    return f"{match[0]}\n\n```{{literalinclude}} {match['path'].removeprefix('../')}\n:language: {language}\n```"


def write_sources(reference, target):
    shutil.rmtree(target, ignore_errors=True)
    shutil.copytree(ROOT / "docs", target, ignore=shutil.ignore_patterns("reference"))
    shutil.copytree(ROOT / "examples", target / "examples", ignore=shutil.ignore_patterns("CMakeLists.txt"))
    for page in target.rglob("*.md"):
        text = samples.SAMPLE.sub(with_program, page.read_text(encoding="utf-8"))
        text = links.to_pages(text, ROOT / "docs" / page.relative_to(target), reference)
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
    write_sources(reference, SOURCE)
    # Not with several processes: the index of the search would have its words in any order.
    sphinx = ("sphinx-build", "-q", "-D", f"html_title=qvObjects {VERSION}")
    run(*sphinx, "-W", "--keep-going", "-b", "html", "-d", TARGET / "read", SOURCE, TARGET / "html")
    run(*sphinx, "-t", "htmlhelp", "-b", "htmlhelp", "-d", TARGET / "read_for_help", SOURCE, TARGET / "help")
    index = TARGET / "help/qvObjects.hhk"
    index.write_bytes(index.read_bytes().replace(b'name="Keyword"', b'name="Name"'))  # which every viewer knows
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


def place_samples(found, folder):
    """Puts each script of a document into a folder of its own; gives the paths of all that is to be run. What stands in documents
    is written as UTF-16, which every script engine reads."""
    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(EXAMPLES, folder / "examples")
    for number, sample in enumerate(found):
        if sample.program:
            yield folder / sample.program.relative_to(ROOT)
            continue
        path = folder / f"{number:04}" / f"sample.{sample.language}"
        path.parent.mkdir(parents=True)
        path.write_bytes(b"\xff\xfe" + sample.code.replace("\n", "\r\n").encode("utf-16-le"))
        yield path


def quote(word):
    return shlex.quote(str(word))


def run_samples(found):
    """Gives what each of them prints, with C:\\Temp for the folder of its temporary files."""
    if not found:
        return []
    folder = TARGET / "samples"
    paths = list(place_samples(found, folder))
    scripts = folder / "list"
    scripts.write_text("".join(windows_path(path) + "\r\n" for path in paths if path.suffix != ".cpp"), encoding="ascii")
    commands = [f"(cd {quote(path.parent)} && wine {quote(built(path))} >{quote(output_of(path))}) & programs+=($!)"
                for path in paths if path.suffix == ".cpp"]
    commands += [f"wine {quote(RUNNER)} /each {quote(windows_path(scripts))}", 'wait "${programs[@]}"']
    if os.environ.get("WINEPREFIX") != str(ROOT / "build/prefix") or "DISPLAY" not in os.environ:
        commands.insert(0, ". tools/environment && one_at_a_time && tools/prefix >&2 && start_windows || exit")
    try:
        subprocess.run(["bash", "-c", "\n".join(commands), "docs"], cwd=ROOT, stdin=subprocess.DEVNULL, timeout=400)
    except subprocess.TimeoutExpired:
        print("# the samples did not come to their end")
    return [printed_by(path) for path in paths]


def built(program):
    return ROOT / f"build/release/examples/example_{program.stem}.exe"


def output_of(path):
    """A program in C++ has its folder for itself."""
    named = path.parent if path.suffix == ".cpp" else path
    return named.with_name(named.name + ".out")


def printed_by(path):
    output = output_of(path)
    if not output.exists():
        return "(it was not run)\n"
    text = output.read_text(encoding="utf-8").replace("\r\n", "\n")
    return text.replace(windows_path(path) + ".temp", r"C:\Temp")


def is_in_program(sample):
    """Whether what a document shows of a program stands there, each part up to an empty line, however deep."""
    program, shown = (re.sub("^ +", "", text, flags=re.MULTILINE) for text in (sample.program.read_text(encoding="utf-8"), sample.code))
    return all(part.strip("\n") in program for part in shown.split("\n\n"))


def check_samples(report, found):
    for sample in found:
        if sample.program and sample.code:
            report.check(is_in_program(sample), f"{sample.place} stands in {sample.program.name}")
    runnable = [sample for sample in found if sample.runs]
    for sample, printed in zip(runnable, run_samples(runnable)):
        if sample.expected is samples.ANYTHING:
            good = not re.search(rf"^{sample.program.name}\(\d+, \d+\).*: error |^\(it was not run", printed, re.MULTILINE)
            report.check(good, f"{sample.place} comes to its end without an error")
        else:
            good = printed == (sample.expected or "")
            report.check(good, f"{sample.place} prints what stands behind it")
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
    wanted = [sample for sample in samples.everywhere() if not only or sample.file.stem.startswith(tuple(only))]
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
