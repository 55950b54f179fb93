"""Writes the tables of docs/memory-layout.md, or compares them with what stands there.

usage: layout.py DUMP TYPES PAGE [--update]

DUMP is what the compiler's -fdump-lang-class says of classes: sizes, bases, virtual tables. TYPES is
what abidw says of the fields. The tables are the rest of PAGE behind the marker. Without --update the
exit status is 1 when they are not what they would be now.
"""

import difflib
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

MARKER = "<!-- What follows is written by scripts/layout --update. -->\n"
POINTER_SIZE = 4
# Of the library's classes those with a name that can be written; of the nested ones also the base
# that some cursors share, for its fields.
OURS = re.compile(r"lv[airt]?[A-Z]\w*(::\w+(<\w+>)?)*")
SHARED_BASE = "::Cursor<"
# A table of a further base has these, which find the object from the base.
THUNK = "non-virtual thunk to "


class Class:
    """A class as the dump has it."""

    def __init__(self, name):
        self.name = name
        self.size = 0
        self.bases = []  # (name, offset, whether a pointer to a virtual table stands there)
        self.tables = []  # for each virtual table: (offset of the base in the object, functions)

    def has_own_shape(self, fields):
        """Whether it is more than its first base under another name, as most handles are."""
        own = [base for base, _, _ in self.bases if base == self.name or SHARED_BASE in base]
        return bool(self.tables or any(fields.get(base) for base in own))


def read_dump(text):
    classes = {}
    tables = {}
    for block in text.split("\n\n"):
        lines = block.splitlines()
        kind, _, name = lines[0].partition(" ") if lines else ("", "", "")
        name = name.removeprefix("for ")
        if not OURS.fullmatch(name):
            continue
        if kind == "Vtable":
            tables[name] = read_tables(lines[2:])
        elif kind == "Class":
            classes[name] = read_class(name, lines[1:])
    for name, found in tables.items():
        classes[name].tables = found
    return classes


def read_class(name, lines):
    result = Class(name)
    result.size = int(re.search(r"size=(\d+)", lines[0])[1])
    for line in lines[2:]:
        base = re.match(r"(\S+) \(0x\w+\) (\d+)", line)
        if base:
            result.bases.append([base[1], int(base[2]), False])
        elif line.strip().startswith("vptr="):
            result.bases[-1][2] = True
    return result


def read_tables(lines):
    """Splits the one table of a class at the heads: an offset, and then the type information."""
    tables = []
    entries = [line.split(maxsplit=1)[1].removeprefix("(int (*)(...))") for line in lines]
    for entry, following in zip(entries, entries[1:] + [""]):
        if following.startswith("(& _ZTI"):
            tables.append((-int(entry), []))
        elif not entry.startswith("(& _ZTI"):
            tables[-1][1].append(entry)
    return tables


def behind_thunks(functions):
    """The functions that thunks lead to, by thunk."""
    names = [function.split("::")[-1] for function in functions]
    readable = subprocess.run(["c++filt"], input="\n".join(names), text=True,
                              capture_output=True, check=True).stdout.splitlines()
    return {function: name.removeprefix(THUNK).partition("(")[0]
            for function, name in zip(functions, readable) if name.startswith(THUNK)}


class Types:
    """The fields of classes, and the names and sizes of their types, as abidw has them."""

    def __init__(self, root):
        self.by_id = {}
        self.fields = {}
        self.virtuals = {}  # by class: names by slot, counted from 0
        self.walk(root, "")

    def walk(self, element, scope):
        for child in element:
            name = scope
            if "id" in child.attrib and child.tag.endswith(("-decl", "-def", "-type")):
                if child.get("is-declaration-only") is None or child.get("id") not in self.by_id:
                    self.by_id[child.get("id")] = (child, scope)
            if child.tag in ("class-decl", "namespace-decl"):
                name = f"{scope}::{child.get('name')}".removeprefix("::")
            if child.tag == "class-decl" and not child.get("is-declaration-only"):
                self.fields[name] = [
                    (int(member.get("layout-offset-in-bits")) // 8, member.find("var-decl"))
                    for member in child.findall("data-member") if member.get("static") is None]
                self.virtuals[name] = {
                    int(member.get("vtable-offset")): member.find("function-decl").get("name")
                    for member in child.findall("member-function") if member.get("vtable-offset")}
            self.walk(child, name)

    def name(self, type_id):
        element, scope = self.by_id[type_id]
        if element.tag == "pointer-type-def":
            return self.name(element.get("type-id")) + "*"
        if element.tag == "qualified-type-def":
            return self.name(element.get("type-id")) + " const"
        if element.tag == "array-type-def":
            return f"{self.name(element.get('type-id'))}[{element.find('subrange').get('length')}]"
        if element.tag == "function-type":
            return "function"
        name = element.get("name")
        if scope and not scope.startswith("std"):
            return f"{scope}::{name}"
        return f"std::{name}" if scope else name

    def size(self, type_id):
        element, _ = self.by_id[type_id]
        if element.tag == "pointer-type-def":
            return POINTER_SIZE
        if element.get("size-in-bits"):
            return int(element.get("size-in-bits")) // 8
        return self.size((element if element.get("type-id") else
                          element.find("underlying-type")).get("type-id"))


def summary(classes):
    yield "## All classes\n\n| class | bytes | bases, at byte |\n|---|---|---|\n"
    for item in classes:
        bases = ", ".join(f"{base} {offset}" for base, offset, _ in item.bases[1:]
                          if SHARED_BASE not in base)
        yield f"| {item.name} | {item.size} | {bases} |\n"


def object_table(item, types):
    rows = []
    for base, offset, has_table in item.bases:
        if has_table:
            rows.append((offset, POINTER_SIZE, "(virtual table)", "", ""))
        for field_offset, field in types.fields.get(base, []):
            type_id = field.get("type-id")
            rows.append((offset + field_offset, types.size(type_id), f"`{field.get('name')}`",
                         f"`{types.name(type_id)}`", f"`{base}`" if base != item.name else ""))
    yield "| byte | bytes | field | type | of |\n|---|---|---|---|---|\n"
    rows.sort()
    ends = [row[0] for row in rows[1:]] + [item.size]
    for (offset, size, *texts), end in zip(rows, ends):
        size = min(size, end - offset)  # A field of some bits of its type ends before that does.
        yield f"| {offset} | {size} | {' | '.join(texts)} |\n"


def pure_function(item, table_offset, slot, types):
    for base, offset, _ in item.bases:
        name = types.virtuals.get(base, {}).get(slot)
        if offset == table_offset and name:
            return f"`{base}::{name}` (pure)"
    return None


def slot_name(item, table_offset, slot, function, types):
    if function == "__cxa_pure_virtual":
        return pure_function(item, table_offset, slot, types)
    if function == "0":  # There is no object of the class that could be destroyed as such.
        return "(destructor)"
    return f"`{function}`"


def slot_tables(item, types):
    for offset, functions in item.tables:
        where = f" at byte {offset}" if len(item.tables) > 1 else ""
        yield f"\nVirtual table{where}:\n\n| slot | byte | function |\n|---|---|---|\n"
        names = behind_thunks(functions)
        for slot, function in enumerate(functions):
            name = slot_name(item, offset, slot, names.get(function, function), types)
            yield f"| {slot + 1} | {slot * POINTER_SIZE} | {name} |\n"


def tables(classes, types):
    yield "\n"
    yield from summary(classes)
    for item in classes:
        if item.has_own_shape(types.fields):
            yield f"\n## {item.name}: {item.size} bytes\n\n"
            yield from object_table(item, types)
            yield from slot_tables(item, types)


def main():
    dump, types, page, *update = sys.argv[1:]
    found = read_dump(pathlib.Path(dump).read_text())
    classes = [found[name] for name in sorted(found, key=str.lower) if SHARED_BASE not in name]
    if len(classes) < 50:
        sys.exit(f"The dump has only {len(classes)} classes of the library.")
    types = Types(ElementTree.parse(types).getroot())

    page = pathlib.Path(page)
    head, marker, kept = page.read_text().partition(MARKER)
    now = "".join(tables(classes, types))
    if not marker:
        sys.exit(f"{page} lacks the line {MARKER}")
    if update == ["--update"]:
        page.write_text(head + marker + now)
    elif now != kept:
        sys.stdout.writelines(difflib.unified_diff(
            kept.splitlines(keepends=True), now.splitlines(keepends=True), str(page), "now", n=1))
        sys.exit("The layout is not what the page says.")
    print(f"{len(classes)} classes")


if __name__ == "__main__":
    main()
