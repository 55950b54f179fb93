"""Where the fields of the library's classes lie.

The fields stand here in their order, by the names that the headers give them; their places follow
from the rules that C++ compilers have for all of the library's targets. Tests compare places and tags
with the compiler's.
"""

import collections

# Kinds of fields: unsigned numbers of 1, 2 and 4 bytes, a signed one of 4, and
U8, U16, U32, I32 = "U8", "U16", "U32", "I32"
WORD = "WORD"    # a pointer, or a number as wide;
MUTEX = "MUTEX"  # a pthread_mutex_t;
CELL = "lvArg"   # a cell.

# Class: its first base, and its fields. What comes behind those that are read may be left out.
CLASSES = {
    "lvArg": (None, {"tagWord_": U32, "payload_": WORD}),
    "lvReferencable": (None, {
        "(virtual table)": WORD, "typeByte_": U8, "ownNumber_": U16, "count_": I32,
        "mutex_": MUTEX}),
    "lvrString": ("lvReferencable", {
        "text_": WORD, "length_": U16, "flags_": U16, "cachedHash_": U32}),
    "lvString::StringEntry": ("lvrString", {"next_": WORD}),
    "lvString::HashTable": (None, {"bucketCount_": U32, "buckets_": WORD}),  # the first of them
    "lvrHashMap": ("lvReferencable", {
        "(interface)": WORD, "count": I32, "hashSize": U32, "buckets": WORD, "spareEntry": WORD,
        "hashSum": U32}),
    "lvrHashMap::HashEntry": (None, {"key": CELL, "value": CELL, "next": WORD}),
    "lvrTupleSet": ("lvReferencable", {
        "(interface)": WORD, "entries": WORD, "count": I32, "allocated": I32, "increment": U32}),
    "lvrTupleSet::Pair": (None, {"key": CELL, "value": CELL}),
    "lvrVector": ("lvReferencable", {
        "(interface)": WORD, "elements": WORD, "alloced": U16, "start": U16, "count": U16,
        "flags": U16, "hashCache": U32}),
    "lvrStack": ("lvReferencable", {
        "(interface)": WORD, "elements": WORD, "alloced": U16, "count": U16, "flags": U16,
        "hashCache": U32}),
    "lvrDLList": ("lvReferencable", {
        "(interface)": WORD, "count": I32, "head": WORD, "tail": WORD}),
    "lvrDLList::lvrDLListNode": (None, {"value": CELL, "next": WORD, "prev": WORD}),
    "lvrSortedArrayList": ("lvReferencable", {
        "array": WORD, "count": I32, "capacity": I32, "growStep": U32}),
    "lvrClass": ("lvReferencable", {
        "defaultCtor_": WORD, "superClass_": CELL, "className_": CELL, "reflection_": WORD}),
    "lvrClass::GenericMemberOffsetTable": (None, {
        "count": U16, "entryWidth": U8, "entries": WORD, "names": CELL}),
    "lvtClassRegistry": (None, {"(virtual table)": WORD, "classes_": CELL}),
    "lvtStringArgDest": (None, {
        "(virtual table)": WORD, "buffer_": WORD, "capacity_": I32, "length_": I32, "flags_": U16,
        "depth_": U8, "levelKinds_": U32}),
    "lvtStringArgSource": (None, {
        "(virtual table)": WORD, "length_": I32, "offset_": I32, "text_": WORD,
        "sourceString_": CELL, "state_": I32, "flags_": U8, "errorCount_": U16,
        "tokenValue_": CELL, "pendingClassName_": CELL, "lastToken_": I32}),
}

# The first word of a cell: its low bits are the tag, the others its holder's own.
TAG_MASK = 31
TAGS = {
    "NilType": 0, "IntType": 5, "PointerType": 12, "ObjectType": 18, "StringType": 19, "MapType": 24,
    "ListType": 25, "ClassType": 27,
}
REFERENCE_FLAG = 16

# The upper bits of an object's type byte are the tag of cells that hold it, less REFERENCE_FLAG.
KIND_SHIFT = 4

# The length of a string that is so long or longer: to be counted in the text.
UNCOUNTED_LENGTH = 65535

# The tables of a class, by their index.
TABLES = ("Fields", "Functions1", "Methods2", "Functions3", "Methods4", "Functions5", "Fields6",
          "Functions7", "Methods8", "Functions9")

NUMBER_SIZES = {U8: 1, U16: 2, U32: 4, I32: 4}
SMALL_MUTEX = 24            # where pointers have 4 bytes,
LARGE_MUTEX = 40            # where they have 8,
ARM64_MUTEX = 48            # and there on ARM
ARM64_NAME = "aarch64"

Field = collections.namedtuple("Field", "offset size signed")


class Struct:
    """A class: its size, and its fields by name."""

    def __init__(self, base, kinds, size_of, word):
        self.fields = dict(base.fields) if base else {}
        self.alignment = base.alignment if base else 1
        end = base.size if base else 0
        for name, kind in kinds.items():
            size = size_of(kind)
            alignment = min(size, word)  # A cell's and a mutex's is a pointer's.
            offset = round_up(end, alignment)
            self.fields[name] = Field(offset, size, kind == I32)
            self.alignment = max(self.alignment, alignment)
            end = offset + size
        self.size = round_up(end, self.alignment)


def round_up(number, unit):
    return (number + unit - 1) // unit * unit


class Layout:
    """The layout on one target; layout["lvArg"] is a Struct."""

    def __init__(self, word, architecture):
        self._structs = {}
        sizes = dict(NUMBER_SIZES)
        sizes[WORD] = word
        large = ARM64_MUTEX if architecture == ARM64_NAME else LARGE_MUTEX
        sizes[MUTEX] = SMALL_MUTEX if word == 4 else large
        for name, (base, kinds) in CLASSES.items():
            self._structs[name] = Struct(base and self[base], kinds, sizes.get, word)
            sizes[name] = self[name].size

    def __getitem__(self, name):
        return self._structs[name]
