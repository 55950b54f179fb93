"""The descriptions of classes, and the registry of them."""

import re

import gdb

from . import layout, limits
from .classes import symbol_at
from .memory import Unreadable
from .values import Atom, Container, String, shown

REGISTRY = "lvtClassRegistry"
TABLE = "lvrClass::GenericMemberOffsetTable"

# A variable of the library that lies in its .bss, as does the pointer to the registry, which has no
# symbol of its own in a stripped library.
NEIGHBOUR = "lvString::hashTable_"
SECTION = re.compile(r"(0x[0-9a-f]+) - (0x[0-9a-f]+) is \.bss\b")


class Description:
    """An lvrClass: what a class is called, and what fields it has."""

    def __init__(self, reader, address):
        self._reader = reader
        self._address = address
        self.name_bytes = text_of(self._cell("className_")) or b"?"
        self.name = shown(self.name_bytes)

    def _cell(self, field):
        offset = self._reader.layout["lvrClass"].fields[field].offset
        return self._reader.cell(self._address + offset)

    def _table(self, index):
        """The address of a table, or 0."""
        tables = self._reader.field(self._address, "lvrClass", "reflection_")
        return self._reader.memory.pointer(tables + index * self._reader.memory.word) if tables else 0

    def count_fields(self):
        table = self._table(0)
        return self._reader.field(table, TABLE, "count") if table else 0

    def fields(self):
        """Yields the name, or None, and the offset of each field of the table that is written in
        texts."""
        table = self._table(0)
        names = self._names(table) if table else {}
        entries = self._reader.field(table, TABLE, "entries") if table else 0
        for i in range(self.count_fields()):
            word = self._reader.memory.word
            offset = self._reader.memory.bytes(entries + i * word, word)
            yield names.get(i), int.from_bytes(offset, "little", signed=True)

    def _names(self, table):
        """The names of a table's entries, by index."""
        place = table + self._reader.layout[TABLE].fields["names"].offset
        names = self._reader.cell(place)
        result = {}
        for part in names.parts() if isinstance(names, Container) else ():
            if len(part.values) == 2 and getattr(part.values[1], "shown", "").isdigit():
                result[int(part.values[1].shown)] = shown(text_of(part.values[0]) or b"?")
        return result

    def summary(self):
        """Name, superclass, and the names in each table that has any."""
        base = self._cell("superClass_")
        of_base = f" ({base.description.name})" if isinstance(base, Described) else ""
        tables = []
        for i, kind in enumerate(layout.TABLES):
            table = self._table(i)
            names = self._names(table) if table else {}
            if names:
                tables.append(f"{kind} {', '.join(names[i] for i in sorted(names))}")
        return self.name + of_base + (": " if tables else "") + "; ".join(tables)

    def constructor(self):
        """What gdb's symbols call the function that makes an object of the class."""
        return symbol_at(self._reader.field(self._address, "lvrClass", "defaultCtor_"))


class Described(Atom):
    """A class as a value."""

    def __init__(self, reader, address):
        self.address = address
        self.description = Description(reader, address)
        super().__init__(f"<class {self.description.name}>")

    def summary(self):
        """All about the class."""
        try:
            return f"<class {self.description.summary()}>"
        except Unreadable as unreadable:
            return f"<class {self.description.name}: {unreadable}>"


def text_of(value):
    """The bytes of a name; None if it is none."""
    return value.read(limits.NAME)[0] if isinstance(value, String) else None


class Registry:
    """Finds the description of an object's class."""

    def __init__(self, reader):
        self._reader = reader
        self._found = {}  # by the name in C++
        self._all = None

    def find(self, found):
        """The description for the class of an object, or of the nearest base that has one; or None.

        The program would ask the object for its key. Here it is the class whose default constructor
        is, by its symbol, a function of the object's class; or, in a stripped program, the one that
        is registered under the name of the object's class, without namespaces."""
        if found.name not in self._found:
            names = list(found.bases) or [found.name]
            matches = (self._match(name) for name in names)
            self._found[found.name] = next((match for match in matches if match), None)
        return self._found[found.name]

    def _match(self, name):
        descriptions = self._descriptions()
        makers = (f"lvClassBuilder<{name}>::", f"{name}::")
        for description in descriptions:
            if description.constructor().startswith(makers):
                return description
        plain = name.split("<")[0].rpartition("::")[2]
        return next((each for each in descriptions if each.name == plain), None)

    def _descriptions(self):
        """All classes that are registered."""
        if self._all is None:
            self._all = []
            try:
                self._all = list(self._read_all())
            except Unreadable:
                pass  # Objects are shown without their fields.
        return self._all

    def _read_all(self):
        registry = self._find_registry()
        if registry is None:
            return
        classes = self._reader.cell(
            registry + self._reader.layout[REGISTRY].fields["classes_"].offset)
        for part in classes.parts() if isinstance(classes, Container) else ():
            if len(part.values) == 2 and isinstance(part.values[1], Described):
                yield part.values[1].description

    def _find_registry(self):
        """The address of the program's registry, or None."""
        memory = self._reader.memory
        start, end = section_around(address_of(NEIGHBOUR))
        for place in range(start, end - memory.word + 1, memory.word):
            candidate = memory.pointer(place)
            if candidate != 0 and self._is_registry(candidate):
                return candidate
        return None

    def _is_registry(self, address):
        try:
            found = self._reader.classes.find(address)
        except Unreadable:
            return False
        return found is not None and REGISTRY in found.bases


def address_of(variable):
    """The address of a variable of the library; 0 where there is no library."""
    try:
        return int(gdb.parse_and_eval(f"(unsigned long) &'{variable}'"))
    except gdb.error:
        return 0


def section_around(address):
    """Where the .bss section that holds an address begins and ends."""
    for start, end in SECTION.findall(gdb.execute("info files", to_string=True)):
        if int(start, 16) <= address < int(end, 16):
            return int(start, 16), int(end, 16)
    return 0, 0
