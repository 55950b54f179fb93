"""Makes values of what is in memory."""

import gdb

from . import layout, streams
from .classes import Classes
from .memory import Memory, Unreadable
from .registry import Described, Registry
from .values import Array, Atom, HashMap, LinkedList, Object, String

TAG_NAMES = {tag: name for name, tag in layout.TAGS.items()}

# What cells of these tags refer to.
NOUNS = {
    layout.TAGS["ObjectType"]: "object",
    layout.TAGS["StringType"]: "string",
    layout.TAGS["MapType"]: "map",
    layout.TAGS["ListType"]: "list",
    layout.TAGS["ClassType"]: "class",
}


class Reader:
    """Good for one command: the program may run on then."""

    def __init__(self):
        self.memory = Memory()
        architecture = gdb.selected_inferior().architecture().name()
        self.layout = layout.Layout(self.memory.word, architecture)
        self.classes = Classes(self.memory)
        self._registry = Registry(self)

    def field(self, address, struct, name):
        """A number or a pointer in the object there."""
        offset, size, signed = self.layout[struct].fields[name]
        content = self.memory.bytes(address + offset, size)
        return int.from_bytes(content, "little", signed=signed)

    def at(self, address):
        """What is at an address: an object if there is one, or else a cell."""
        try:
            found = self.classes.find(address)
            return self._object(found) if found else self.cell(address)
        except Unreadable as unreadable:
            return Atom(str(unreadable))

    def object(self, address):
        """The object there, or of which a part is there."""
        try:
            found = self.classes.find(address)
            return self._object(found) if found else Atom(f"<no object at {address:#x}>")
        except Unreadable as unreadable:
            return Atom(str(unreadable))

    def cell(self, address):
        """What the cell there holds."""
        try:
            value = self.content(self.field(address, "lvArg", "tagWord_"),
                                 self.field(address, "lvArg", "payload_"))
        except Unreadable as unreadable:
            return Atom(str(unreadable))
        value.cell = address
        return value

    def content(self, tag_word, payload):
        """What a cell of these two words holds."""
        tag = tag_word & layout.TAG_MASK
        name = TAG_NAMES.get(tag)
        if name == "NilType":
            return Atom("#nil")
        if name == "IntType":
            return Atom(str((payload + 0x80000000) % 0x100000000 - 0x80000000))
        if name == "PointerType":
            return Atom(f"<address {payload:#x}>")
        if tag not in NOUNS:
            return Atom(f"<unknown tag {tag}>")
        if payload == 0:
            return Atom(f"<no {NOUNS[tag]}>")
        try:
            return self._referenced(tag, payload)
        except Unreadable as unreadable:
            return Atom(str(unreadable))

    def _referenced(self, tag, address):
        """What a cell of this tag refers to. As it holds a reference, the object must be alive."""
        found = self.classes.find(address)
        if found is None:
            return Atom(f"<no object at {address:#x}>")
        kind = self.field(address, "lvReferencable", "typeByte_") >> layout.KIND_SHIFT
        if kind + layout.REFERENCE_FLAG != tag:
            return Atom(f"<no {NOUNS[tag]} but {found.name} at {address:#x}>")
        # An interned string may be found again while it is let go.
        is_held = self.field(address, "lvReferencable", "count_") > 0
        if not is_held and NOUNS[tag] != "string":
            return Atom(f"<released {found.name} at {address:#x}>")
        return self._object(found)

    def _object(self, found):
        """The value of an object: as the class of the library reads it that it is derived from, or
        else by its fields."""
        for name, place in found.bases.items():
            if name in OBJECTS:
                value = OBJECTS[name](self, found.address + place)
                if name != found.name and hasattr(value, "noun"):
                    value.noun = f"{found.name}, {value.noun}"
                return value
        description = self._registry.find(found)
        if description:
            return Object(self, found.address + found.bases.get("lvReferencable", 0), description)
        return Atom(f"<{found.name} at {found.address:#x}>")


def string(struct):
    def read(reader, address):
        value = String(reader, address, reader.layout[struct].size)
        return value if value.has_text() else Atom("<string without text>")
    return read


def tuple_set(reader, address):
    fields = ("entries", "allocated", "count")
    return Array(reader, address, "lvrTupleSet", "tuple set", fields).of_pairs()


def vector(reader, address):
    fields = ("elements", "alloced", "count", "start")
    return Array(reader, address, "lvrVector", "list", fields)


def stack(reader, address):
    return Array(reader, address, "lvrStack", "stack", ("elements", "alloced", "count"))


def sorted_list(reader, address):
    fields = ("array", "capacity", "count")
    return Array(reader, address, "lvrSortedArrayList", "sorted list", fields)


def registry(reader, address):
    """The classes by their names."""
    return reader.cell(address + reader.layout["lvtClassRegistry"].fields["classes_"].offset)


# How objects are read, by the class of the library that theirs is, or is derived from. A class stands
# before its bases.
OBJECTS = {
    "lvString::StringEntry": string("lvString::StringEntry"),
    "lvrString": string("lvrString"),
    "lvrHashMap": HashMap,
    "lvrTupleSet": tuple_set,
    "lvrVector": vector,
    "lvrDLList": LinkedList,
    "lvrSortedArrayList": sorted_list,
    "lvrStack": stack,
    "lvrClass": Described,
    "lvtClassRegistry": registry,
    "lvtStringArgDest": streams.writer,
    "lvtStringArgSource": streams.parser,
}
