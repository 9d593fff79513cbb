"""Puts what the contract says and what is written of each member together, to pages of one shape."""
import re

import links
import prose
from members import ROOT, kind, syntax

LANGUAGE_NAMES = {"vbs": "VBScript", "js": "JScript"}


def runtime_texts():
    """The texts of the runtime's errors by number."""
    names = dict(re.findall(r"^\s*(\w+) = (\d+),", (ROOT / "src/automation/error.h").read_text(encoding="utf-8"), re.MULTILINE))
    texts = re.findall(r'Runtime::(\w+), L"([^"]*)"', (ROOT / "src/automation/error.cpp").read_text(encoding="utf-8"))
    return {names[name]: text for name, text in texts if name in names}


class Reference:
    def __init__(self, contents):
        self.contents = contents
        self.pages = {}
        for path in sorted(links.FOLDER.glob("*.md"), key=lambda path: path.stem):
            if path.stem.partition(".")[0] in contents.classes:
                self.add(prose.read(path))
        self.enumerations = prose.read(links.FOLDER / "enumerations.md")
        self.index = (links.FOLDER / links.INDEX).read_text(encoding="utf-8")
        self.texts = runtime_texts()

    def add(self, page):
        """A class with many members has more than one file: Class.md and Class.part.md."""
        whole = self.pages.setdefault(page.name, prose.Page(page.name, "", {}))
        whole.introduction = "\n\n".join(text for text in (whole.introduction, page.introduction) if text)
        twice = whole.entries.keys() & page.entries.keys()
        if twice:
            raise SystemExit(f"docs: {page.name} has two entries of {', '.join(twice)}")
        whole.entries |= page.entries

    # ---- What is missing -----------------------------------------------------------------------------------------------

    def faults(self):
        for name, found in self.contents.classes.items():
            page = self.pages.get(name)
            if not page:
                yield f"{name} has no page"
                continue
            members = {**found.members, **found.events}
            for member in members.values():
                yield from self.faults_of(page, member)
            yield from (f"{name}.{entry} is no member" for entry in page.entries if entry not in members)
        yield from (f"{name} is not in the index" for name in self.contents.classes if name not in self.classes_in(self.index))
        yield from self.faults_of_enumerations()

    def faults_of(self, page, member):
        name = f"{member.owner}.{member.name}"
        entry = page.entries.get(member.name)
        if not entry:
            yield f"{name} has no entry"
            return
        said, given = entry.arguments(), {argument.name for argument in member.arguments}
        yield from (f"{name}: nothing is said of {argument.name}" for argument in member.arguments if argument.name not in said)
        yield from (f"{name} has no argument {argument}" for argument in said if argument not in given)
        example = entry.sections.get("Example", "")
        for language, title in LANGUAGE_NAMES.items():
            if f"```{language}" not in example and not re.search(rf"^{title}: ", example, re.MULTILINE):
                yield f"{name} has no example in {title}"
        yield from (f"{name}: nobody knows {other}" for other in entry.see_also() if not self.place_of(other, member.owner))

    def faults_of_enumerations(self):
        for enumeration in self.contents.enumerations.values():
            entry = self.enumerations.entries.get(enumeration.name)
            if not entry:
                yield f"{enumeration.name} has no entry"
                continue
            said = self.values_of(entry)
            yield from (f"{enumeration.name}: nothing is said of {value}" for value in enumeration.values if value not in said)

    @staticmethod
    def values_of(entry):
        return dict(re.findall(r"^- `(\w+)`: (.*(?:\n  .*)*)", entry.remarks, re.MULTILINE))

    @staticmethod
    def file_of(member):
        """The help compiler knows ASCII names only."""
        return member.replace("ü", "ue")

    def place_of(self, name, owner):
        """The document of `Class.Member`, `Class`, or a member of `owner`."""
        if name in self.contents.classes:
            return f"{name}/index"
        if name in self.contents.enumerations:
            return "enumerations"
        owner, _, member = name.rpartition(".") if "." in name else (owner, "", name)
        found = self.contents.classes.get(owner)
        return f"{owner}/{self.file_of(member)}" if found and (member in found.members or member in found.events) else None

    # ---- Pages ---------------------------------------------------------------------------------------------------------

    def write(self, target):
        for name, found in self.contents.classes.items():
            folder = target / name
            folder.mkdir(parents=True, exist_ok=True)
            (folder / "index.md").write_text(self.class_page(found), encoding="utf-8")
            page = self.pages.get(name)
            for member in {**found.members, **found.events}.values():
                entry = page and page.entries.get(member.name) or prose.Entry(member.name)
                (folder / f"{self.file_of(member.name)}.md").write_text(self.member_page(member, entry), encoding="utf-8")
        (target / "enumerations.md").write_text(self.enumeration_page(), encoding="utf-8")
        (target / "index.md").write_text(self.index_page(), encoding="utf-8")

    def index_page(self):
        """Each section with its classes as its contents, as the help file shows them."""
        introduction, *sections = re.split(r"^(?=## )", self.index, flags=re.MULTILINE)
        text = introduction + self.contents_of(["enumerations"])
        for section in sections:
            text += section + self.contents_of([f"{name}/index" for name in self.classes_in(section)])
        return links.to_pages(text, links.FOLDER / links.INDEX, self)

    @staticmethod
    def contents_of(pages):
        return "\n".join(["", "```{toctree}", ":hidden:", "", *pages, "```", "", ""])

    @staticmethod
    def classes_in(text):
        return re.findall(r"^\| \[(\w+)\]", text, re.MULTILINE)

    def class_page(self, found):
        how = {"global": "Global class; scripts create it with", "creatable": "Created with",
               "given": "Other objects hand it out; it can't be created."}[found.kind]
        created = "" if found.kind == "given" else f' `CreateObject("qvObjects.{found.name}")`.'
        lines = [*self.index_entries(found.name), f"# {found.name}", "", found.help, "", how + created, ""]
        page = self.pages.get(found.name)
        lines += [self.linked(page.introduction, found.name, "../")] if page else []
        for title, members in (("Members", found.members), ("Events", found.events)):
            if members:
                lines += ["", f"## {title}", "", "| Name | What it does |", "|---|---|"]
                lines += [f"| [{m.name}]({self.file_of(m.name)}.md) | {self.cell(m.help)} |" for m in members.values()]
                lines += [self.contents_of([f"{name} <{self.file_of(name)}>" for name in members])]
        return "\n".join(lines)

    @staticmethod
    def index_entries(*names):
        return [line for name in names for line in (f"```{{index}} single: {name}", "```", "")]

    @staticmethod
    def cell(text):
        return text.replace("|", "\\|")

    def member_page(self, member, entry):
        owner = member.owner
        lines = [*self.index_entries(f"{member.name} ({owner})", f"{owner}; {member.name}"),
                 f"# {owner}.{member.name}", "", f"{member.help}", "", f"*{kind(member)} of [{owner}](index.md).*", "", "## Syntax", "",
                 "```vbnet", syntax(member), "```", ""]
        lines += self.arguments(member, entry)
        for title in ("Result",):
            if title in entry.sections:
                lines += [f"## {title}", "", self.linked(entry.sections[title], owner, "../"), ""]
        lines += self.errors(entry, owner)
        if entry.remarks:
            lines += ["## Remarks", "", self.linked(entry.remarks, owner, "../"), ""]
        lines += self.example(entry)
        if entry.see_also():
            links = [f"[{name}](../{self.place_of(name, owner)}.md)" for name in entry.see_also() if self.place_of(name, owner)]
            lines += ["## See also", "", ", ".join(links), ""]
        return "\n".join(lines)

    def arguments(self, member, entry):
        if not member.arguments:
            return []
        said = entry.arguments()
        rows = []
        for a in member.arguments:
            type = f"[{a.type}](../enumerations.md)" if a.type in self.contents.enumerations else a.type
            optional = "any number" if a.any_number else f"`{a.default}`" if a.default else "yes" if a.optional else ""
            rows.append((f"`{a.name}`", self.linked(said.get(a.name, ""), member.owner, "../"), type, optional,
                         "yes" if a.by_reference else ""))
        titles = ("Name", "What it is", "Type", "Optional", "By reference")
        shown = [place for place in range(len(titles)) if any(row[place] for row in rows)]
        lines = [titles, ["---"] * len(titles), *rows]
        return ["## Arguments", "", *("| " + " | ".join(line[place] for place in shown) + " |" for line in lines), ""]

    def errors(self, entry, owner):
        rows = entry.errors()
        if "Errors" not in entry.sections:
            return ["## Errors", "", "None of its own.", ""]
        if not rows:
            return ["## Errors", "", self.linked(entry.sections["Errors"], owner, "../"), ""]
        lines = ["## Errors", "", "| Number | Text | When |", "|---|---|---|"]
        lines += [f"| {number} | {self.texts.get(number, '')} | {self.linked(when, owner, '../')} |" for number, when in rows]
        rest = re.sub(r"^\|.*\|$\n?", "", entry.sections["Errors"], flags=re.MULTILINE).strip()
        return lines + [""] + ([self.linked(rest, owner, "../"), ""] if rest else [])

    @staticmethod
    def example(entry):
        text = entry.sections.get("Example")
        if not text:
            return []
        def fence(match):
            language = match[1]
            title = {"vbs": "In VBScript:", "js": "In JScript:", "text": "It prints"}.get(language)
            shown = {"vbs": "vbnet", "js": "js"}.get(language, language)
            return (f"{title}\n\n" if title else "") + f"```{shown}\n"
        return ["## Example", "", re.sub(r"^```(\w+)[^\n]*\n", fence, text, flags=re.MULTILINE), ""]

    def linked(self, text, owner, up):
        """The text with the members that it names in code quotes made links, but for those in fences; what lies beside the reference
        is found from a page that lies `up` deeper. Examples lie one folder nearer there."""
        text = re.sub(r"\]\(\.\./(?!\.\.)", f"]({up}../", text)

        def link(match):
            place = self.place_of(match[1], owner)
            return f"[`{match[1]}`]({up}{place}.md)" if place else match[0]
        pieces = re.split(r"(^```.*?^```$)", text, flags=re.MULTILINE | re.DOTALL)
        return "".join(p if p.startswith("```") else re.sub(r"(?<!\[)`([\w.ü]+)`(?!\])", link, p) for p in pieces)

    def enumeration_page(self):
        lines = ["# Enumerations", "", self.enumerations.introduction, ""]
        for enumeration in sorted(self.contents.enumerations.values(), key=lambda e: e.name.lower()):
            entry = self.enumerations.entries.get(enumeration.name) or prose.Entry(enumeration.name)
            said = self.values_of(entry)
            rest = re.sub(r"^- `\w+`: .*(?:\n  .*)*\n?", "", entry.remarks, flags=re.MULTILINE).strip()
            lines += [*self.index_entries(enumeration.name), f"## {enumeration.name}", "", enumeration.help, "", rest, "",
                      "| Name | Value | What it is |", "|---|---|---|"]
            lines += [f"| `{name}` | {value} | {said.get(name, '')} |" for name, value in enumeration.values.items()] + [""]
        return "\n".join(lines)
