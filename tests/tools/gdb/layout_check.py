"""Runs in gdb, on the library: compares the layout that the printers go by with what the compiler says
in the library's debug information.

usage, in gdb: python import layout_check; layout_check.main()
"""

import gdb
from tarselvalues_gdb import layout

UNNAMED = ("(virtual table)", "(interface)")
SHORTENED = ("lvString::HashTable",)  # What comes last in it is not read.


def offsets_of(kind, start=0):
    """Where each field of a class and its bases begins."""
    result = {}
    for field in kind.fields():
        if field.is_base_class:
            for name, offset in offsets_of(field.type, start + field.bitpos // 8).items():
                result.setdefault(name, offset)
        elif hasattr(field, "bitpos"):
            result[field.name] = start + field.bitpos // 8
    return result


def compare_class(name, struct):
    """Yields what differs."""
    kind = gdb.lookup_type(name)
    compiled = offsets_of(kind)
    for field, (offset, _, _) in struct.fields.items():
        if field not in UNNAMED and compiled.get(field) != offset:
            yield f"{name}::{field}: {offset}, not {compiled.get(field)}"
    if name not in SHORTENED and kind.sizeof != struct.size:
        yield f"{name}: {struct.size} bytes, not {kind.sizeof}"


def enumerators(name):
    return {each.name.rpartition("::")[2]: each.enumval for each in gdb.lookup_type(name).fields()}


def compare(what, used, compiled):
    if used != compiled:
        yield f"{what}: {used}, not {compiled}"


def differences():
    word = gdb.lookup_type("void").pointer().sizeof
    used = layout.Layout(word, gdb.selected_inferior().architecture().name())
    for name in layout.CLASSES:
        yield from compare_class(name, used[name])
    yield from compare("tags", {**layout.TAGS, "ReferenceFlag": layout.REFERENCE_FLAG},
                       enumerators("lvArg::ValueType"))
    kinds = {value + layout.REFERENCE_FLAG for value in enumerators("lvReferencable::Kind").values()}
    yield from compare("tags of objects", set(tag for tag in layout.TAGS.values()
                                              if tag & layout.REFERENCE_FLAG), kinds)
    yield from compare("tables", dict(zip(layout.TABLES, range(len(layout.TABLES)))),
                       enumerators("lvrClass::OffsetTableType"))


def main():
    """Ends gdb, with status 1 when anything differs."""
    found = list(differences())
    print("\n".join(found) if found else f"{len(layout.CLASSES)} classes as compiled")
    gdb.execute(f"quit {1 if found else 0}")
