"""The samples in the documents: scripts in fences, and what they print."""
import re
from dataclasses import dataclass
from pathlib import Path

FENCE = re.compile(r"^```(\S*)([^\n]*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
LANGUAGES = ("vbs", "js")


@dataclass
class Sample:
    file: Path
    line: int
    language: str
    code: str
    expected: str | None  # None: nothing is said of it
    runs: bool


def in_file(path):
    """The samples of a file. What stands behind one or more scripts in a fence "text" is what each of them prints."""
    text = path.read_text(encoding="utf-8")
    found, waiting = [], []
    for match in FENCE.finditer(text):
        language, info, code = match.groups()
        if language in LANGUAGES:
            line = text.count("\n", 0, match.start()) + 2
            waiting.append(Sample(path, line, language, code, None, "not-run" not in info))
            found.append(waiting[-1])
        else:
            if language == "text":
                for sample in waiting:
                    sample.expected = code
            waiting = []
    return found


def in_documents(root):
    for path in sorted([root / "README.md", *(root / "docs").rglob("*.md")]):
        yield from in_file(path)
