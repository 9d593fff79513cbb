"""The manifest with which programs use the library without registration."""
from xml.sax.saxutils import quoteattr

from registration import identity

# Not the name of the DLL: Windows would look into qvObjects.dll itself for the manifest of an assembly of that name.
ASSEMBLY = "qvObjects.Library"


def element(tag, *children, **attributes):
    text = "".join(f" {key}={quoteattr(value)}" for key, value in attributes.items())
    if not children:
        return [f"<{tag}{text}/>"]
    return [f"<{tag}{text}>", *("  " + line for child in children for line in child), f"</{tag}>"]


def manifest(registration, version):
    """All classes that clients create, the type library, and how the platform marshals the interfaces by it."""
    library = registration.contract.library
    classes = [element("comClass", description=registration.program_of(entry), clsid=identity(entry.attributes["uuid"]),
                       threadingModel="Apartment", tlbid=registration.library, progid=registration.program_of(entry))
               for entry in registration.creatable_classes()]
    type_library = element("typelib", tlbid=registration.library, version=registration.version, helpdir="")
    interfaces = [element("comInterfaceExternalProxyStub", name=name, iid=iid, proxyStubClsid32=proxy, tlbid=registration.library)
                  for iid, name, proxy in registration.marshalled_interfaces()]
    identified = element("assemblyIdentity", type="win32", name=ASSEMBLY, version=f"{version}.0", processorArchitecture="x86")
    file = element("file", *classes, type_library, name=f"{library}.dll")
    assembly = element("assembly", identified, file, *interfaces,
                       xmlns="urn:schemas-microsoft-com:asm.v1", manifestVersion="1.0")
    return "\n".join(['<?xml version="1.0" encoding="UTF-8" standalone="yes"?>', *assembly]) + "\n"
