"""What gdb's `print` shows for the types of the library."""

import itertools
import re

import gdb
import gdb.printing

from . import limits
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

REFERENCES = (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF)
ADDRESSES = (gdb.TYPE_CODE_PTR, gdb.TYPE_CODE_INT, gdb.TYPE_CODE_ENUM, gdb.TYPE_CODE_CHAR)


def read(value):
    """What a gdb.Value holds: a cell, an object, or the address of either."""
    kind = value.type.strip_typedefs()
    if kind.code in REFERENCES:
        value = value.referenced_value()
    elif kind.code == gdb.TYPE_CODE_PTR and is_class(kind.target()):
        value = value.dereference()
    kind = value.type.strip_typedefs()
    reader = Reader()
    if kind.code in ADDRESSES:
        return reader.at(int(value) % (1 << 8 * reader.memory.word))
    if not is_class(kind):
        raise gdb.GdbError("This is neither a value of the library nor an address.")
    if value.address is None:
        return reader.content(int(value["tagWord_"]), int(value["payload_"]))
    address = int(value.address)
    is_cell = any(base.name in CELLS for base in with_bases(kind))
    return reader.cell(address) if is_cell else reader.object(address)


def is_class(kind):
    return kind.strip_typedefs().code == gdb.TYPE_CODE_STRUCT


def with_bases(kind):
    """The type of a value, and the classes that it is derived from."""
    yield kind
    for field in kind.fields() if is_class(kind) else ():
        if field.is_base_class:
            yield from with_bases(field.type.strip_typedefs())


class AtomPrinter:
    """Shows a value that is not looked into."""

    def __init__(self, shown):
        self._shown = shown

    def to_string(self):
        return Text().of_whole(self._shown)


class ContainerPrinter:
    """Shows a container with its parts, which gdb and its front ends can look into in turn: cells,
    unless one is so large, or goes in such circles, that there would be no end of it. Then its text
    stands there."""

    def __init__(self, container, cell_type):
        self._container = container
        self._cell_type = cell_type  # as gdb knows it, or None
        self._text = Text()

    def to_string(self):
        return self._container.summary()

    def children(self):
        container = self._container
        names = (f"[{number}]" for number in itertools.count())
        for part in container.parts():
            if container.is_map and len(part.values) == 1:
                yield next(names), "..."  # What comes now says why there are no more.
            for value in part.values:
                yield part.name or next(names), self._child(value)

    def _child(self, value):
        is_fit = not isinstance(value, Container) or is_small(value)
        if is_fit and self._cell_type is not None and value.cell is not None:
            return gdb.Value(value.cell).cast(self._cell_type.pointer()).dereference()
        return self._text.of(value, (self._container.address,))

    def display_hint(self):
        if self._container.is_object:
            return None
        return "map" if self._container.is_map else "array"


def is_small(container):
    """Whether all that is in it, however deep, is not too much to be printed part by part."""
    left = limits.SMALL
    pending = [container]
    while pending:
        for part in pending.pop().parts():
            left -= len(part.values)
            if left < 0:
                return False
            pending += [value for value in part.values if isinstance(value, Container)]
    return True


def cell_type_for(kind):
    """The type of cells, which a type of the library that is printed may be derived from."""
    for base in with_bases(kind):
        if base.name == "lvArg":
            return base
    try:
        return gdb.lookup_type("lvArg")
    except gdb.error:
        return None


def make_printer(value):
    try:
        shown = read(value)
        if isinstance(shown, Container):
            return ContainerPrinter(shown, cell_type_for(value.type.strip_typedefs()))
    except (gdb.error, Unreadable, OverflowError) as error:
        shown = Atom(f"<{error}>")
    return AtomPrinter(shown)


def make_collection():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("tarselvalues")
    for name in CELLS + OBJECTS:
        collection.add_printer(name, f"^{re.escape(name)}$", make_printer)
    return collection
