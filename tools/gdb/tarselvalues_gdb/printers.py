"""What gdb's `print` shows for the types of the library."""

import re

import gdb
import gdb.printing

from .memory import Unreadable
from .reader import Reader
from .text import Text
from .values import Atom, Container

CELLS = ("lvArg", "lvString", "lvValue", "lvClass", "lvHashMap", "lvVector", "lvSortedList")
OBJECTS = ("lvReferencable", "lvrString", "lvString::StringEntry", "lvrHashMap", "lvrTupleSet",
           "lvrVector", "lvrStack", "lvrDLList", "lvrSortedArrayList", "lvrClass",
           "lvrCommonSerializer", "lviMap", "lviList", "lviStack", "lviSortedList",
           "lvtClassRegistry", "lvArgDest", "lvArgSource", "lvtStringArgDest",
           "lvtStringArgSource")


NUMBERS = (gdb.TYPE_CODE_PTR, gdb.TYPE_CODE_INT, gdb.TYPE_CODE_ENUM, gdb.TYPE_CODE_CHAR)


def read(value):
    """What a gdb.Value holds: one of a class of the library, or a pointer to one, or an address."""
    kind = value.type.strip_typedefs()
    if kind.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        value = value.referenced_value()
        kind = value.type.strip_typedefs()
    reader = Reader()
    if kind.code in NUMBERS:
        return reader.at(int(value) % (1 << 8 * reader.memory.word))
    if value.address is None:
        return reader.content(int(value["tagWord_"]), int(value["payload_"]))
    is_cell = any(base.name in CELLS for base in with_bases(kind))
    address = int(value.address)
    return reader.cell(address) if is_cell else reader.at(address)


def with_bases(kind):
    """The type of a value, and the classes that it is derived from."""
    yield kind
    for field in kind.fields() if kind.code == gdb.TYPE_CODE_STRUCT else ():
        if field.is_base_class:
            yield from with_bases(field.type.strip_typedefs())


class Printer:
    """Shows a value: on one level with its parts, and below that as text."""

    def __init__(self, value):
        try:
            self._shown = read(value)
        except (gdb.error, Unreadable, OverflowError) as error:
            self._shown = Atom(f"<{error}>")
        self._text = Text()

    def to_string(self):
        if isinstance(self._shown, Container):
            return self._shown.summary()
        return self._text.of_whole(self._shown)

    def children(self):
        if isinstance(self._shown, Container):
            yield from self._parts(self._shown)

    def _parts(self, container):
        above = (container.address,)
        for number, part in enumerate(container.parts()):
            if self._text.left <= 0:
                yield "...", "..."
                if container.is_map:
                    yield "...", "..."
                return
            self._text.left -= 1
            name = part.name or f"[{number}]"
            if container.is_map and len(part.values) == 1:
                yield name, "..."  # What comes now says why there are no more.
            for value in part.values:
                yield name, self._text.of(value, above)

    def display_hint(self):
        if not isinstance(self._shown, Container) or self._shown.is_object:
            return None
        return "map" if self._shown.is_map else "array"


def make_collection():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("tarselvalues")
    for name in CELLS + OBJECTS:
        collection.add_printer(name, f"^{re.escape(name)}$", Printer)
    return collection
