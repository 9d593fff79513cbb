"""What is written of the classes, in docs/reference: a file for each class, with a section for each member.

A file, Class.md or Class.part.md, begins with a heading, the name of the class, and with what is to be said of the class as a whole. Each member has a heading of
the second level, its name; events stand behind the members. Under it come the remarks, and then, each under a heading of the
third level and only where there is something to say:

    Arguments    a list: - `sFile`: what it is, its bounds
    Result       what it gives
    Errors       a table: number | when; the text of runtime errors is put in
    Example      code in fences: vbs and js, and behind them a fence "text" with what they print. Where a language can't do it, a
                 line that begins with "VBScript: " or "JScript: " says why. A fence whose info has "not-run" is not run by
                 the tests; the line that follows says why.
    See also     other members, as `Class.Member` or `Member`
"""
import re
from dataclasses import dataclass, field

SECTIONS = ("Arguments", "Result", "Errors", "Example", "See also")


@dataclass
class Entry:
    name: str
    remarks: str = ""
    sections: dict = field(default_factory=dict)

    def arguments(self):
        """What is said of each argument, by name; those that are the same stand in one line."""
        said = {}
        for names, text in re.findall(r"^- ((?:`[^`]+`(?:, )?)+): (.*(?:\n  .*)*)", self.sections.get("Arguments", ""), re.MULTILINE):
            for name in re.findall(r"`([^`]+)`", names):
                said[name] = re.sub(r"\s+", " ", text)
        return said

    def errors(self):
        """Pairs of number and reason."""
        rows = re.findall(r"^\| *([^|]+?) *\| *(.+?) *\|$", self.sections.get("Errors", ""), re.MULTILINE)
        return [row for row in rows if row[0] != "Number" and not row[0].startswith("---")]

    def see_also(self):
        return re.findall(r"`([^`]+)`", self.sections.get("See also", ""))


@dataclass
class Page:
    name: str
    introduction: str
    entries: dict


def parts(text, level):
    """What stands before the first heading of a level, and (heading, text) of each; fences hide what looks like headings."""
    mark = "#" * level + " "
    before, found, fenced = [], [], False
    for line in text.split("\n"):
        if line.startswith("```"):
            fenced = not fenced
        if line.startswith(mark) and not fenced:
            found.append((line[len(mark):].strip(), []))
        else:
            (found[-1][1] if found else before).append(line)
    return "\n".join(before).strip(), [(heading, "\n".join(lines).strip()) for heading, lines in found]


def read(path):
    text = path.read_text(encoding="utf-8")
    _, titles = parts(text, 1)
    name, body = titles[0]
    introduction, members = parts(body, 2)
    entries = {}
    for heading, content in members:
        remarks, sections = parts(content, 3)
        unknown = [title for title, _ in sections if title not in SECTIONS]
        if unknown:
            raise SystemExit(f"{path.name}: {heading} has a section {unknown[0]}")
        if heading in entries:
            raise SystemExit(f"{path.name}: {heading} is there twice")
        entries[heading] = Entry(heading, remarks, dict(sections))
    return Page(name, introduction, entries)
