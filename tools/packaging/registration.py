"""What registering the library writes into the registry, as a list that installers and scripts are made from.

It is what DllRegisterServer writes: the platform's share for the type library and its interfaces, and the library's own."""
import sys
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tools/documents"))
from members import CONTRACT, load_tool

# Stand-ins in the data, which whoever writes the entries replaces.
DLL = "<DLL>"  # the full path of the library
FOLDER = "<FOLDER>"  # the folder that it is in, without a backslash at the end

PROGRAMMABLE = "{40FC6ED5-2438-11CF-A3DB-080036F12502}"  # the category "Programmable"
DUAL_PROXY = "{00020424-0000-0000-C000-000000000046}"  # the platform's marshaller by type library
DISPATCH_PROXY = "{00020420-0000-0000-C000-000000000046}"  # the platform's marshaller of IDispatch
ON_DISK = 8  # LIBFLAG_FHASDISKIMAGE


@dataclass(frozen=True)
class Entry:
    """A value of a key: a text, or a number of 32 bits."""
    key: str  # below Software\\Classes
    name: str  # "" for the key's own value
    data: str | int
    view: str = "32"  # of 64-bit Windows: "32" or "64" where each view has a key of its own, "shared" where both have one


def identity(uuid):
    return "{" + uuid.replace(" ", "").upper() + "}"


class Registration:
    def __init__(self, idl=CONTRACT):
        reader = load_tool("contract").Reader
        self.contract = reader(idl.read_text(encoding="ascii")).read()
        imported = {}
        for name in self.contract.imports:
            source = (ROOT / "interface" / f"{name}.idl").read_text(encoding="ascii")
            lines = (line for line in source.splitlines() if not line.startswith("//"))
            imported |= {face.name: face for face in reader("\n".join(lines)).read().interfaces}
        own = {face.name: face for face in self.contract.interfaces}
        self.interfaces = own | {name: imported[name] for name in self.contract.announced if name not in own}
        self.library = identity(self.contract.attributes["uuid"])
        major, minor = (int(part) for part in self.contract.attributes["version"].replace(" ", "").split("."))
        self.version = f"{major}.{minor}"
        self.version_of_keys = f"{major:x}.{minor:x}"
        self.locale = f"{int(self.contract.attributes['lcid'], 0):x}"

    def creatable_classes(self):
        return [entry for entry in self.contract.classes if "noncreatable" not in entry.attributes]

    def program_of(self, entry):
        """The programmatic identifier of a class."""
        return f"{self.contract.library}.{entry.name}"

    def marshalled_interfaces(self):
        """Triples: identity, name, marshaller."""
        for face in self.interfaces.values():
            yield identity(face.attributes["uuid"]), face.name, DUAL_PROXY
        for events in self.contract.events:
            yield identity(events.attributes["uuid"]), events.name, DISPATCH_PROXY

    def entries(self):
        """All entries, each key's own before those of the keys in it."""
        found = list(self.of_library())
        for face in self.marshalled_interfaces():
            found += self.of_interface(*face)
        for entry in self.creatable_classes():
            found += self.of_class(entry)
        for attributes, name in self.contract.aliases:
            found += self.of_alias(identity(attributes["uuid"]), self.interfaces[name])
        return found

    def of_library(self):
        key = f"TypeLib\\{self.library}\\{self.version_of_keys}"
        yield Entry(key, "", self.contract.attributes["helpstring"].strip('"'), "shared")
        for locale in ("0", self.locale):
            yield Entry(f"{key}\\{locale}\\win32", "", DLL, "shared")
        yield Entry(f"{key}\\FLAGS", "", str(ON_DISK), "shared")
        yield Entry(f"{key}\\HELPDIR", "", FOLDER, "shared")

    def of_interface(self, iid, name, proxy):
        key = f"Interface\\{iid}"
        yield Entry(key, "", name)
        yield Entry(f"{key}\\ProxyStubClsid", "", proxy)
        yield Entry(f"{key}\\ProxyStubClsid32", "", proxy)
        yield Entry(f"{key}\\TypeLib", "", self.library)
        yield Entry(f"{key}\\TypeLib", "Version", self.version_of_keys)

    def of_class(self, entry):
        clsid, program = identity(entry.attributes["uuid"]), self.program_of(entry)
        key = f"CLSID\\{clsid}"
        yield Entry(key, "", program)
        yield Entry(f"{key}\\InprocServer32", "", DLL)
        yield Entry(f"{key}\\InprocServer32", "ThreadingModel", "Apartment")
        yield Entry(f"{key}\\ProgID", "", program)
        yield Entry(f"{key}\\TypeLib", "", self.library)
        yield Entry(f"{key}\\VERSION", "", self.version)
        yield Entry(f"{key}\\Programmable", "", "")
        yield Entry(f"{key}\\Implemented Categories", "", "")
        yield Entry(f"{key}\\Implemented Categories\\{PROGRAMMABLE}", "", "")
        yield Entry(program, "", program, "shared")
        yield Entry(f"{program}\\Clsid", "", clsid, "shared")

    @staticmethod
    def of_alias(former, face):
        yield Entry(f"Interface\\{former}", "", face.name)
        yield Entry(f"Interface\\{former}\\Forward", "", identity(face.attributes["uuid"]))
