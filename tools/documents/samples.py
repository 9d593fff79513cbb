"""The samples in the documents: scripts in fences, programs of examples/, and what they print.

A program of examples/ is shown by a line that is nothing but the link to it. Of one in C++ a page shows the parts that matter,
in fences whose info names the file: ```cpp ../../examples/window/window.cpp. What stands behind one or more samples in a fence
"text" is what each of them prints; without one a script prints nothing, and a program of examples/ is not compared."""
import re
from dataclasses import dataclass
from pathlib import Path

from members import ROOT

SAMPLE = re.compile(r"^```(?P<language>\S*)(?P<info>[^\n]*)\n(?P<code>.*?)^```$"
                    r"|^\[examples/(?P<shown>[^\]]+)\]\((?P<path>(?:\.\./)*examples/(?P=shown))\)$", re.MULTILINE | re.DOTALL)
LANGUAGES = ("vbs", "js")
ANYTHING = "anything but an error"
WAITS_FOR_USER = "choose_folder.vbs"  # tools/pictures shows it


@dataclass
class Sample:
    file: Path
    line: int
    language: str
    code: str
    expected: str | None  # None: nothing is said of it
    runs: bool
    program: Path | None = None  # the file of examples/

    @property
    def place(self):
        return f"{self.file.relative_to(ROOT)}:{self.line}"


def in_file(path):
    text = path.read_text(encoding="utf-8")
    found, waiting = [], []
    for match in SAMPLE.finditer(text):
        language, info, code = match["language"], (match["info"] or "").strip(), match["code"]
        program = path.parent / match["path"] if match["path"] else path.parent / info if language == "cpp" and info else None
        if program or language in LANGUAGES:
            line = text.count("\n", 0, match.start()) + (1 if match["path"] else 2)
            language = language or program.suffix[1:]
            runs = not program and "not-run" not in info
            if program and code:  # the last part is followed by what the program prints
                waiting = []
            waiting.append(Sample(path, line, language, code or "", None, runs, program and program.resolve()))
            found.append(waiting[-1])
        else:
            if language == "text":
                for sample in waiting:
                    sample.expected = code
                    sample.runs = sample.runs or sample.program is not None
            waiting = []
    return found


def everywhere():
    """The samples of all documents, and the scripts in examples/ of which no document says what they print."""
    found = [sample for path in sorted([ROOT / "README.md", *(ROOT / "docs").rglob("*.md")]) for sample in in_file(path)]
    compared = {sample.program for sample in found if sample.runs}
    scripts = sorted(path for path in (ROOT / "examples").iterdir() if path.suffix[1:] in LANGUAGES)
    return found + [Sample(path, 1, path.suffix[1:], "", ANYTHING, True, path) for path in scripts
                    if path not in compared and path.name != WAITS_FOR_USER]
