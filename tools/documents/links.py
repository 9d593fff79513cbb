"""The links in the documents. In the sources they lead to what lies in the repository: a member is a heading of a file in
docs/reference. The pages have one for each member, and links to it are rewritten."""
import functools
import os
import re
from urllib.parse import unquote

from members import ROOT

FOLDER = ROOT / "docs/reference"
INDEX = "README.md"  # where the sources are read, a folder shows it
FENCE = re.compile(r"^(`{3,}).*?^\1$", re.MULTILINE | re.DOTALL)
TARGET = re.compile(r"\]\((?!\w+:)([^()\s]+)\)|\{download\}`[^`<]*<([^>]+)>`")
LINK = re.compile(r"\[([^][]+)\]\(([^()\s#:]+\.md)(?:#([^()\s]+))?\)")


def slug(heading):
    """The anchor of a heading, as the usual viewers of such files make it."""
    return re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")


@functools.cache
def headings(path):
    """The headings of a file by their anchors; those that are there again have a number."""
    found, seen = {}, {}
    for heading in re.findall(r"^#+ +(.+)$", FENCE.sub("", path.read_text(encoding="utf-8")), re.MULTILINE):
        anchor = slug(heading)
        seen[anchor] = seen.get(anchor, -1) + 1
        found[f"{anchor}-{seen[anchor]}" if seen[anchor] else anchor] = heading.strip()
    return found


def to_pages(text, source, reference):
    """The text of a document, whose links to docs/reference lead to the pages that are made of it. A class has one page, whatever
    its files: a link to a further one is no link there."""
    def rewritten(match):
        shown, place, anchor = match.groups()
        target = (source.parent / place).resolve()
        if target.parent != FOLDER or not target.is_file():
            return match[0]
        name, _, part = target.stem.partition(".")
        up = os.path.relpath(FOLDER, source.parent)
        if target.name == INDEX:
            return f"[{shown}]({up}/index.md)"
        if name not in reference.contents.classes:
            return match[0]
        if anchor:
            return f"[{shown}]({up}/{name}/{reference.file_of(headings(target).get(anchor, 'index'))}.md)"
        return shown if part else f"[{shown}]({up}/{name}/index.md)"
    return LINK.sub(rewritten, text)


def in_toctrees(text):
    """The pages that a page has as its contents, but for the index, which is made last."""
    return [re.sub(r".*<(.*)>", r"\1", entry) for block in re.findall(r"^```\{toctree\}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
            for entry in block.split("\n") if entry and not entry.startswith(":") and entry != "genindex"]


def missing_contents(pages):
    """What the contents of pages list, and is not there."""
    for path in pages:
        entries = in_toctrees(path.read_text(encoding="utf-8"))
        yield from ((path, entry) for entry in entries if not (path.parent / f"{entry}.md").is_file())


def leading_nowhere(files):
    for path in files:
        for match in TARGET.finditer(FENCE.sub("", path.read_text(encoding="utf-8"))):
            place, _, anchor = unquote(match[1] or match[2]).partition("#")
            target = path if not place else path.parent / place
            if not os.path.exists(target) or (anchor and anchor not in headings(target.resolve())):
                yield path, match[1] or match[2]
