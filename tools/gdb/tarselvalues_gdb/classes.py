"""What class of object is at an address: by the type information that its virtual table leads to,
which is there in stripped programs too."""

import collections
import re

import gdb

from . import limits
from .memory import Unreadable

# In the order in which the compilers lay them out: type information is its own virtual table, then
# the name, then what tells of the bases.
SINGLE_BASE = "N10__cxxabiv120__si_class_type_infoE"
SEVERAL_BASES = "N10__cxxabiv121__vmi_class_type_infoE"
VIRTUAL_BASE = 1
OFFSET_SHIFT = 8

MANGLED = re.compile(rb"\*?[0-9NSt][0-9A-Za-z_.$]+")  # A "*" before names of one file's classes.
VTABLE_SYMBOL = re.compile(r"vtable for (.+?)(?: \+ (\d+))? in section ")

# An object: the class's name as in C++; the address of the whole object; and, for the class and its
# bases, most derived first, where in it each begins, by name.
Found = collections.namedtuple("Found", "name address bases")


def symbol_at(address):
    """What gdb's symbols say about an address."""
    try:
        return gdb.execute(f"info symbol {address:#x}", to_string=True)
    except gdb.error:
        return ""


def demangle(name):
    """The name in type information as a name in C++."""
    try:
        shown = gdb.execute(f"demangle -l c++ -- _ZTI{name}", to_string=True).strip()
    except gdb.error:
        return name
    return shown.replace("typeinfo for ", "", 1)


class Classes:
    """Finds classes; remembers what it has found."""

    def __init__(self, memory):
        self._memory = memory
        self._of_table = {}  # by the address of the virtual table

    def find(self, address):
        """What object is there, of which `address` may be a part; None if there is none, as far as
        can be told. Raises Unreadable if there is no memory."""
        table = self._memory.pointer(address)
        if table not in self._of_table:
            self._of_table[table] = self._class_of(table)
        if self._of_table[table] is None:
            return None
        name, shift, bases = self._of_table[table]
        return Found(name, address + shift, bases)

    def _class_of(self, table):
        """For a virtual table: the class's name, how far the whole object is from the part that has
        this table, and its bases."""
        word = self._memory.word
        if table == 0 or table % word != 0:
            return None
        try:
            shift = self._memory.signed(table - 2 * word, word)
            information = self._memory.pointer(table - word)
            if information == 0:
                return self._class_by_symbol(table)
            bases = {}
            for name, place in self._walk(information, 0, 0):
                bases.setdefault(name, place)
        except Unreadable:
            return None
        return (next(iter(bases)), shift, bases) if bases else None

    def _class_by_symbol(self, table):
        """The same without type information (-fno-rtti); of the bases nothing is known."""
        match = VTABLE_SYMBOL.match(symbol_at(table))
        if match and int(match.group(2) or 0) == 2 * self._memory.word:
            return match.group(1), 0, {}
        return None

    def _walk(self, information, place, depth):
        """Yields (name, place) of a class and its bases, the class itself first."""
        name = self._name_of(information)
        if name is None or depth == limits.BASES:
            return
        yield demangle(name), place
        for base, base_place in self._bases_of(information):
            yield from self._walk(base, place + base_place, depth + 1)

    def _name_of(self, information):
        memory = self._memory
        name = memory.text(memory.pointer(information + memory.word), limits.NAME)
        return name.decode().lstrip("*") if MANGLED.fullmatch(name) else None

    def _bases_of(self, information):
        """Yields (type information, place) of each direct base."""
        memory, word = self._memory, self._memory.word
        kind = self._name_of(memory.pointer(memory.pointer(information) - word))
        bases = information + 2 * word
        if kind == SINGLE_BASE:
            yield memory.pointer(bases), 0
        elif kind == SEVERAL_BASES:
            count = memory.unsigned(bases + 4, 4)
            for i in range(min(count, limits.BASES)):
                base = bases + 8 + 2 * word * i
                flags = memory.signed(base + word, word)
                if not flags & VIRTUAL_BASE:
                    yield memory.pointer(base), flags >> OFFSET_SHIFT
