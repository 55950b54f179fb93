"""What cells and objects hold, as far as it can be read.

An Atom shows as one piece of text, a String as its characters; a Container has parts, which are values
again and are read when they are asked for. What is damaged is an Atom in angle brackets, which begin
nothing in the text format. No count that is read is trusted: whatever memory holds, all loops end.
"""

import collections
import itertools

from . import layout, limits
from .memory import Unreadable

# A part of a container: a value, or a key and a value; an object's have the field's name.
Part = collections.namedtuple("Part", "name values")


def shown(text):
    """Bytes as they stand, but for what would disturb a terminal."""
    return "".join(chr(byte) if 32 <= byte < 127 else f"%{byte:02X}" for byte in text)


class Value:
    """Whatever a cell holds, or an object is."""

    cell = None  # the address of the cell, if it was read from one


class Atom(Value):
    """A value without parts."""

    def __init__(self, text):
        self.shown = text


class String(Value):
    """The text of a string object."""

    def __init__(self, reader, address, size):
        self.address = address
        self._memory = reader.memory
        self._size = size
        self._text = reader.field(address, "lvrString", "text_")
        self._length = reader.field(address, "lvrString", "length_")

    def has_text(self):
        return self._text != 0

    def read(self, most):
        """Returns up to so many bytes, and whether there are more. The text ends at its first NUL."""
        length = limits.TEXT if self._length == layout.UNCOUNTED_LENGTH else self._length
        text = self._memory.text(self._text, min(length, most + 1))
        return text[:most], len(text) > most

    def count_bytes(self):
        """How much memory it takes."""
        length = self._length
        if length == layout.UNCOUNTED_LENGTH:
            length = len(self._memory.text(self._text, limits.TEXT))
        return self._size + length + 1


class Container(Value):
    """A value with parts.

    address     of the object that holds them
    noun        what it is: "list", "map", an object's class
    size        how many parts it says it has
    is_map      whether these are keys and values
    is_object   whether they are the fields of an object
    """

    is_map = False
    is_object = False

    def __init__(self, reader, address, noun, size):
        self.reader = reader
        self.address = address
        self.noun = noun
        self.size = size

    def summary(self):
        return f"{self.noun} of {self.size}"

    def parts(self):
        """Yields the parts that can be read; if these are not all, an Atom in the end says why."""
        try:
            yield from itertools.islice(self.read_parts(), limits.PARTS)
        except Unreadable as unreadable:
            yield Part(None, [Atom(str(unreadable))])

    def longest_chain(self):
        """How many entries of a hash map hang together at most."""
        return 0

    def count_bytes(self):
        """How much memory it takes, without the values."""
        raise NotImplementedError


class Array(Container):
    """Cells side by side, or pairs of cells. In a ring the first may lie behind others.

    `names` says which fields of the class are the array, its room, the number of cells in it and,
    of a ring, where the first is."""

    def __init__(self, reader, address, struct, noun, names):
        values = [reader.field(address, struct, name) for name in names]
        super().__init__(reader, address, noun, values[2])
        self._cells, self._room = values[:2]
        self._start = values[3] if len(values) > 3 else 0
        self._struct = struct
        self._per_part = 1

    def of_pairs(self):
        self.is_map = True
        self._per_part = 2
        return self

    def read_parts(self):
        if not 0 <= self.size <= self._room:
            yield Part(None, [Atom(f"<{self.size} in room for {self._room}>")])
            return
        cell = self.reader.layout["lvArg"].size
        for i in range(self.size):
            place = self._cells + cell * self._per_part * ((self._start + i) % self._room)
            self.reader.memory.bytes(place, cell)  # Or else nothing behind it can be read either.
            yield Part(None, [self.reader.cell(place + cell * k) for k in range(self._per_part)])

    def count_bytes(self):
        room = max(self._room, 0) * self._per_part
        return self.reader.layout[self._struct].size + room * self.reader.layout["lvArg"].size


class Linked(Container):
    """What counts its parts, and reaches each through another: the count tells when to stop, and
    whether there are all."""

    def read_parts(self):
        found = 0
        for place in self.places():
            if found >= self.size:
                yield Part(None, [Atom(f"<more than {self.size}>")])
                return
            found += 1
            yield Part(None, self.values_at(place))
        if found != self.size:
            yield Part(None, [Atom(f"<{found} instead of {self.size}>")])

    def count_places(self):
        return sum(1 for _ in itertools.islice(self.places(), self.limit()))

    def limit(self):
        """How many are counted."""
        return max(0, min(self.size, limits.PARTS))


class LinkedList(Linked):
    """Nodes, each of which knows the next."""

    def __init__(self, reader, address):
        super().__init__(reader, address, "linked list", reader.field(address, "lvrDLList", "count"))

    def places(self):
        node = self.reader.field(self.address, "lvrDLList", "head")
        while node != 0:
            yield node
            node = self.reader.field(node, "lvrDLList::lvrDLListNode", "next")

    def values_at(self, place):
        return [self.reader.cell(place)]

    def count_bytes(self):
        node = self.reader.layout["lvrDLList::lvrDLListNode"]
        return self.reader.layout["lvrDLList"].size + self.count_places() * node.size


class HashMap(Linked):
    """Buckets, each with a chain of entries."""

    is_map = True

    def __init__(self, reader, address):
        super().__init__(reader, address, "map", reader.field(address, "lvrHashMap", "count"))
        self._buckets = reader.field(address, "lvrHashMap", "buckets")
        self._bucket_count = reader.field(address, "lvrHashMap", "hashSize")

    def _numbered_places(self):
        """Yields each entry, with its number in its chain. Looks no further than for the number of
        entries that there should be, unless one chain goes on."""
        left = self.size
        buckets = min(self._bucket_count, limits.BUCKETS) if self._buckets != 0 and left > 0 else 0
        for entry in self.reader.memory.pointers(self._buckets, buckets):
            number = 0
            while entry != 0:
                number += 1
                left -= 1
                yield entry, number
                entry = self.reader.field(entry, "lvrHashMap::HashEntry", "next")
            if left <= 0:
                return

    def places(self):
        return (entry for entry, _ in self._numbered_places())

    def values_at(self, place):
        fields = self.reader.layout["lvrHashMap::HashEntry"].fields
        return [self.reader.cell(place + fields[name].offset) for name in ("key", "value")]

    def longest_chain(self):
        numbered = itertools.islice(self._numbered_places(), self.limit())
        return max((number for _, number in numbered), default=0)

    def count_bytes(self):
        heads = self._bucket_count * self.reader.memory.word if self._buckets != 0 else 0
        entry = self.reader.layout["lvrHashMap::HashEntry"]
        return self.reader.layout["lvrHashMap"].size + heads + self.count_places() * entry.size


class Object(Container):
    """An object of a class of the program's, by the fields that its description lists."""

    is_object = True

    def __init__(self, reader, address, description):
        super().__init__(reader, address, description.name, description.count_fields())
        self.class_name = description.name_bytes
        self._description = description

    def summary(self):
        return self.noun

    def read_parts(self):
        for name, offset in self._description.fields():
            yield Part(name, [self.reader.cell(self.address + offset)])

    def count_bytes(self):
        """Of its base and its fields: nothing says what else is in it."""
        fields = self.size * self.reader.layout["lvArg"].size
        return self.reader.layout["lvReferencable"].size + fields
