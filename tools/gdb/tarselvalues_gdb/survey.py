"""Walks over a whole value: counts, and a graph; and over the table of interned strings."""

import collections

from . import limits
from .memory import Unreadable
from .registry import address_of
from .text import Text
from .values import Container, String

TABLE = "lvString::hashTable_"

# A value that a walk comes by. `owner` is the container that it is in, None for the first; `label`
# says where in it; `is_key` is so for keys of maps; `depth` counts the containers around it; `is_known`
# says that its object has been met before, `is_cycle` that it is one of those around it.
Visit = collections.namedtuple("Visit", "value owner label is_key depth is_known is_cycle")


class Walk:
    """Comes by each value once, and by each part of an object once, however often it is shared."""

    def __init__(self, root, most):
        self._root = root
        self._left = most
        self._known = set()
        self._around = []  # what is being walked: (container, its remaining parts),
        self._inside = set()  # and the addresses of these
        self.is_cut = False

    def __iter__(self):
        yield self._visit(self._root, None, False)
        while self._around:
            following = next(self._around[-1][1], None)
            if following is None:
                self._inside.remove(self._around.pop()[0].address)
            elif self._left == 0:
                self.is_cut = True
                return
            else:
                self._left -= 1
                yield self._visit(*following)

    def _visit(self, value, label, is_key):
        address = getattr(value, "address", None)
        owner = self._around[-1][0] if self._around else None
        visit = Visit(value, owner, label, is_key, len(self._around), address in self._known,
                      address in self._inside)
        if address is not None:
            self._known.add(address)
        if isinstance(value, Container) and not visit.is_known:
            self._around.append((value, labelled(value.parts())))
            self._inside.add(address)
        return visit


def labelled(parts):
    """Yields each value in these parts, with its label, and whether it is a key."""
    for number, part in enumerate(parts):
        if len(part.values) == 2:
            key, value = part.values
            yield key, f"key {number}", True
            is_plain = not isinstance(key, Container)
            yield value, Text(most_depth=0).of(key) if is_plain else f"value {number}", False
        else:
            yield part.values[0], part.name or str(number), False


def statistics(root):
    """Returns what is counted, and the counts; and whether that is all."""
    walk = Walk(root, limits.VALUES)
    counts = dict.fromkeys(("values", "objects", "shared", "cycles", "depth", "bytes", "chain"), 0)
    shared = set()
    for visit in walk:
        counts["values"] += 1
        counts["depth"] = max(counts["depth"], visit.depth)
        counts["cycles"] += visit.is_cycle
        if visit.is_known:
            shared.add(visit.value.address)
        elif isinstance(visit.value, (Container, String)):
            counts["objects"] += 1
            count_memory(visit.value, counts)
    counts["shared"] = len(shared)
    return counts, walk.is_cut


def count_memory(value, counts):
    """Adds what the object of a value takes; nothing if that cannot be read."""
    try:
        counts["bytes"] += value.count_bytes()
        if isinstance(value, Container):
            counts["chain"] = max(counts["chain"], value.longest_chain())
    except Unreadable:
        pass


class StringTable:
    """The table of interned strings."""

    def __init__(self, reader):
        self._reader = reader
        self.longest = 0  # chain, once all entries have been read
        place = address_of(TABLE)
        self._table = reader.memory.pointer(place) if place else 0

    def entries(self):
        """Yields how many hold an entry, and its text."""
        if self._table == 0:
            return
        reader = self._reader
        buckets = self._table + reader.layout["lvString::HashTable"].fields["buckets_"].offset
        seen = set()  # so that damaged chains end
        count = reader.field(self._table, "lvString::HashTable", "bucketCount_")
        for entry in reader.memory.pointers(buckets, min(count, limits.CHAINS)):
            length = 0
            while entry != 0 and entry not in seen and len(seen) < limits.VALUES:
                seen.add(entry)
                yield reader.field(entry, "lvReferencable", "count_"), reader.at(entry)
                length += 1
                entry = reader.field(entry, "lvString::StringEntry", "next_")
            self.longest = max(self.longest, length)


class Arrow:
    """From a box to another."""

    def __init__(self, start, end, label):
        self.start = start
        self.end = end
        self.label = label
        self.is_in_cycle = False


def mark_cycle(closing, entrances):
    """Marks the arrow that leads back, and those by which the walk came from there."""
    arrow = closing
    arrow.is_in_cycle = True
    while arrow.start != closing.end:
        arrow = entrances[arrow.start]
        arrow.is_in_cycle = True


def graph(root):
    """Yields the lines of a graph in the language of Graphviz: objects with parts are boxes, in which
    their plain values stand; arrows that lead round in a cycle are red."""
    boxes = {}   # by address: the lines in the box
    arrows = []
    entrances = {}  # by address: the first arrow to the box
    walk = Walk(root, limits.GRAPH)
    for visit in walk:
        if isinstance(visit.value, Container):
            boxes.setdefault(visit.value.address, [visit.value.summary()])
            if visit.owner is not None:
                arrows.append(Arrow(visit.owner.address, visit.value.address, visit.label))
                entrances.setdefault(visit.value.address, arrows[-1])
            if visit.is_cycle:
                mark_cycle(arrows[-1], entrances)
        elif visit.owner is None:
            boxes[None] = [Text().of(visit.value)]
        elif not visit.is_key:
            boxes[visit.owner.address].append(f"{visit.label}: {Text().of(visit.value)}")
    names = {address: f"n{number}" for number, address in enumerate(boxes, 1)}
    yield "digraph value {"
    yield '  node [shape=box, fontname="monospace"];'
    for address, lines in boxes.items():
        yield f'  {names[address]} [label="{label_of(lines)}"];'
    for arrow in arrows:
        color = ", color=red, fontcolor=red" if arrow.is_in_cycle else ""
        yield f'  {names[arrow.start]} -> {names[arrow.end]} [label="{quoted(arrow.label)}"{color}];'
    if walk.is_cut:
        yield '  more [label="... and more", shape=plaintext];'
    yield "}"


def label_of(lines):
    """The first line in the middle, the others to the left."""
    others = "".join(quoted(line) + "\\l" for line in lines[1:])
    return quoted(lines[0]) + ("\\n" if others else "") + others


def quoted(text):
    return text.replace("\\", "\\\\").replace('"', '\\"')
