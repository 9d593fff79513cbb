"""What the contract says of the classes, for those who read about them: names, signatures, help texts."""
import re
import sys
from dataclasses import dataclass, field
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
CONTRACT = ROOT / "build/release/interface/qvObjects_contract.idl"
VERSION = re.search(r"^project\(qvObjects VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text(encoding="ascii"), re.MULTILINE)[1]

LONGEST_LINE = 84  # that a page shows whole

# As the environments name them that the library's clients come from.
TYPES = {"short": "Integer", "long": "Long", "unsigned char": "Byte", "float": "Single", "double": "Double", "BSTR": "String",
         "VARIANT": "Variant", "VARIANT_BOOL": "Boolean", "IDispatch": "Object", "IUnknown": "Object", "DATE": "Date",
         "CURRENCY": "Currency"}


def load_tool(name):
    """A tool of ours, which has no ending, as a module."""
    sys.dont_write_bytecode = True
    loader = SourceFileLoader(name, str(ROOT / "tools" / name))
    module = module_from_spec(spec_from_loader(name, loader))
    sys.modules[name] = module
    loader.exec_module(module)
    return module


@dataclass
class Argument:
    name: str
    type: str
    optional: bool
    default: str  # "" where there is none
    by_reference: bool
    any_number: bool = False


@dataclass
class Member:
    """A method, an event, or a property with all its uses."""
    owner: str
    name: str
    uses: set  # of method, get, put, put_reference, event
    arguments: list
    result: str  # "" for none
    help: str
    is_default: bool = False


@dataclass
class Class:
    name: str
    kind: str  # global, creatable or given
    help: str
    members: dict = field(default_factory=dict)
    events: dict = field(default_factory=dict)


@dataclass
class Enumeration:
    name: str
    help: str
    values: dict


def plain(text):
    return text[1:-1].replace('\\"', '"') if isinstance(text, str) else ""


class Contents:
    def __init__(self, idl=CONTRACT):
        contract_tool = load_tool("contract")
        self.real_names = contract_tool.REAL_NAMES
        self.contract = contract_tool.Reader(idl.read_text(encoding="ascii")).read()
        self.enumerations = {}
        self.classes = {}
        self.read_classes()

    def type(self, type):
        name = TYPES.get(type.name, type.name.removeprefix("_"))
        return name + "()" if type.array else name

    def default(self, argument):
        value = argument.attributes.get("defaultvalue")
        if value is None:
            return ""
        value = value.replace("- ", "-")
        if argument.type.name == "VARIANT_BOOL":
            return "False" if value == "0" else "True"
        return value

    def argument(self, parameter, any_number):
        type = parameter.type
        is_object = type.name in ("IDispatch", "IUnknown") or type.name.startswith("_")
        pointers = type.pointers_to_array if type.array else type.pointers - is_object
        return Argument(parameter.name, self.type(type), "optional" in parameter.attributes, self.default(parameter),
                        pointers > 0 and "out" in parameter.attributes, any_number)

    def member(self, members, owner, function, use):
        name = self.real_names.get(function.name, function.name)
        given = [p for p in function.parameters if "retval" not in p.attributes]
        results = [p for p in function.parameters if "retval" in p.attributes]
        result = self.type(results[0].type) if results else ""
        if use in ("put", "put_reference"):
            value = given.pop()
            result = self.type(value.type)
        any_number = "vararg" in function.attributes
        arguments = [self.argument(p, any_number and p is given[-1]) for p in given]
        help = plain(function.attributes.get("helpstring"))
        found = members.setdefault(name, Member(owner, name, set(), arguments, result, help))
        found.uses.add(use)
        found.help = found.help or help
        found.is_default = found.is_default or function.attributes.get("id") in ("0", "DISPID_VALUE")

    def read_members(self, owner, functions, is_event=False):
        members = {}
        for function in functions:
            attributes = function.attributes
            if "hidden" in attributes or "restricted" in attributes or function.name.startswith("_"):
                continue
            use = ("event" if is_event else "get" if "propget" in attributes else "put" if "propput" in attributes
                   else "put_reference" if "propputref" in attributes else "method")
            self.member(members, owner, function, use)
        return members

    def read_classes(self):
        interfaces = {interface.name: interface for interface in self.contract.interfaces}
        events = {interface.name: interface for interface in self.contract.events}
        for entry in self.contract.classes:
            kind = "global" if "appobject" in entry.attributes else "given" if "noncreatable" in entry.attributes else "creatable"
            found = Class(entry.name, kind, plain(entry.attributes.get("helpstring")))
            if "_" + entry.name in interfaces:
                found.members = self.read_members(entry.name, interfaces["_" + entry.name].functions)
            if "__" + entry.name in events:
                found.events = self.read_members(entry.name, events["__" + entry.name].functions, True)
            self.classes[entry.name] = found
        for name, values in self.contract.enumerations.items():
            self.enumerations[name] = Enumeration(name, plain(self.contract.enumeration_attributes[name].get("helpstring")), values)


def syntax(member):
    """A member as it is declared."""
    arguments = []
    for argument in member.arguments:
        if argument.any_number:
            arguments.append(f"ParamArray {argument.name}()")
            continue
        text = f"{'ByRef ' if argument.by_reference else ''}{argument.name} As {argument.type}"
        default = f" = {argument.default}" if argument.default else ""
        arguments.append(f"[{text}{default}]" if argument.optional else text)
    is_property = not member.uses & {"method", "event"}
    result = f" As {member.result}" if member.result else ""
    if not arguments and is_property:
        return member.name + result
    in_one = f"{member.name}({', '.join(arguments)}){result}"
    if len(in_one) <= LONGEST_LINE:
        return in_one
    return f"{member.name}( _\n    " + ", _\n    ".join(arguments) + f"){result}"


def kind(member):
    if "event" in member.uses:
        return "Event"
    if "method" in member.uses:
        return "Method"
    writable = member.uses & {"put", "put_reference"}
    access = "read and write" if "get" in member.uses and writable else "write only" if writable else "read only"
    return ("Default property" if member.is_default else "Property") + f", {access}"
