"""Changes to the library that programs which are there already would not survive, and two that they
would: what scripts/abi-breaks tries on a copy of the sources.

usage: abi_breaks.py list [NAME...]     prints "NAME EXPECTED BECAUSE" for each change, or those named, and
                                        first of all for no change
       abi_breaks.py apply NAME COPY    makes COPY, a folder, a copy of the sources with the change

EXPECTED is what scripts/abi must say to it: "same", "added", or "refused"; or "uncompiled", where it
is the library's own static assertions that refuse. Those on the layout are taken out before all other
changes, so that it is the comparison that has to refuse. BECAUSE is a text that must be in what is
said, lest something else is wrong.
"""

import pathlib
import sys

SAME = "same"
ADDED = "added"
REFUSED = "refused"
UNCOMPILED = "uncompiled"

COPIED_FILE = "CMakeLists.txt"
COPIED_FOLDERS = ["cmake", "tarselvalues", "tools/gdb"]

ASSERTIONS = [
    "tarselvalues/core/LayoutChecks.cpp",
    "tarselvalues/containers/LayoutChecks.cpp",
    "tarselvalues/reflect/LayoutChecks.cpp",
    "tarselvalues/serial/LayoutChecks.cpp",
]

LIBRARY = "tarselvalues/CMakeLists.txt"
NODES = "tarselvalues/libtarselvalues-mt.map"
CELL = "tarselvalues/core/lvArg.h"
REFERENCABLE = "tarselvalues/core/lvReferencable.h"
VERSION = "tarselvalues/core/lvVersion.h"
VERSION_SOURCE = "tarselvalues/core/lvVersion.cpp"
LIST = "tarselvalues/containers/lviList.h"
MAP = "tarselvalues/containers/lviMap.h"
HASH_MAP = "tarselvalues/containers/lvrHashMap.h"
HASH_MAP_SOURCE = "tarselvalues/containers/lvrHashMap.cpp"
LIST_CURSOR = "tarselvalues/containers/lvListEnumerator.h"
STACK = "tarselvalues/containers/lvrStack.h"
VECTOR = "tarselvalues/containers/lvrVector.h"
REGISTRY = "tarselvalues/reflect/lvtClassRegistry.h"
SOURCE = "tarselvalues/serial/lvArgSource.h"
WRITER = "tarselvalues/serial/lvtStringArgDest.h"
PARSER = "tarselvalues/serial/lvtStringArgSource.h"
SERIALIZER = "tarselvalues/serial/lvrCommonSerializer.h"

# Name: what is expected, a text in the reason given, and edits (file, text that stands there once, text
# in its place). An edit whose text stands there several times replaces all when it says so.
ALL = "all"
UNCHANGED = "nothing"
CHANGES = {
    UNCHANGED: (SAME, "", []),
    "comment-changed": (SAME, "", [
        (VERSION, "// MAJOR of these headers. ", "// MAJOR of the headers. ")]),

    "function-added": (ADDED, "+_Z10lvGetAddedv@@", [
        (VERSION, "TARSELVALUES_API void lvGetVersion(",
         "TARSELVALUES_API int lvGetAdded() noexcept;\nTARSELVALUES_API void lvGetVersion("),
        (VERSION_SOURCE, "void lvGetVersion(",
         "int lvGetAdded() noexcept { return 1; }\nvoid lvGetVersion(")]),

    "fields-swapped": (REFUSED, "'uint16_t alloced' offset changed", [
        (VECTOR, "  std::uint16_t alloced;\n  std::uint16_t start;\n",
         "  std::uint16_t start;\n  std::uint16_t alloced;\n")]),
    "field-widened-into-padding": (REFUSED, "type of 'uint8_t depth_' changed", [
        (WRITER, "  std::uint8_t depth_;\n", "  std::uint16_t depth_;\n")]),
    "field-added": (REFUSED, "'int added_', at offset 32", [
        (REGISTRY, "  lvArg classes_;", "  int added_ = 0;\n  lvArg classes_;")]),
    "field-added-at-the-end": (REFUSED, "'int32_t added_', at offset 416", [
        (PARSER, "  std::int32_t lastToken_;\n",
         "  std::int32_t lastToken_;\n  std::int32_t added_ = 0;\n")]),
    "field-removed": (REFUSED, "'uint16_t ownNumber_', at offset 48", [
        (REFERENCABLE, "  std::uint16_t getOwnNumber() const { return ownNumber_; }\n",
         "  std::uint16_t getOwnNumber() const { return 0; }\n"),
        (REFERENCABLE, "  void setOwnNumber(std::uint16_t number) { ownNumber_ = number; }\n",
         "  void setOwnNumber(std::uint16_t) {}\n"),
        ("tarselvalues/core/OneBlockString.h", "      ownNumber_(0),\n", ""),
        (REFERENCABLE, "  std::uint16_t ownNumber_;\n", ""),
        ("tarselvalues/core/lvReferencable.cpp", "ownNumber_(0), ", "")]),

    "virtual-inserted": (REFUSED, "lviMap::getSize() const changed from 2 to 3", [
        (MAP, "  virtual int getSize() const = 0;\n",
         "  virtual int added() { return 0; }\n  virtual int getSize() const = 0;\n")]),
    "virtual-appended": (REFUSED, "lvArgSource::added()', virtual at voffset 4", [
        (SOURCE, "  virtual int getNextToken(lvArg& out);\n",
         "  virtual int getNextToken(lvArg& out);\n  virtual int added() { return 0; }\n")]),
    "virtuals-swapped": (REFUSED, "lviList::isSorted() const changed from 2 to 6", [
        (LIST, "  virtual bool isSorted() const = 0;\n", ""),
        (LIST, "  virtual bool clear() = 0;\n",
         "  virtual bool clear() = 0;\n  virtual bool isSorted() const = 0;\n")]),
    "virtual-made-plain": (REFUSED, "is no more declared virtual", [
        (VECTOR, "  virtual void vectorEvent(", "  void vectorEvent(")]),

    "bases-swapped": (REFUSED, "re-ordered from: 'lvReferencable, lviStack'", [
        (STACK, "public lvReferencable, public lviStack", "public lviStack, public lvReferencable")]),
    "base-removed": (REFUSED, "1 base class deletion:", [
        (STACK, "public lvReferencable, public lviStack", "public lvReferencable"),
        (STACK, " override;", ";", ALL)]),

    "enumerator-renumbered": (REFUSED, "'lvArg::ValueType::ClassType' from value '27' to '28'", [
        (CELL, "    ClassType = 27,", "    ClassType = 28,")]),
    "kind-renumbered": (UNCOMPILED, "lvReferencable::MapKind == 8", [
        (REFERENCABLE, "    MapKind = 8,", "    MapKind = 7,")]),
    "token-renumbered": (UNCOMPILED, "TOKEN_OVERFLOW == 259", [
        (PARSER, "    TOKEN_OVERFLOW = 259,", "    TOKEN_OVERFLOW = 260,")]),
    "result-renumbered": (UNCOMPILED, "CS_ERR_NO_CLASS_CTOR == -5", [
        (SERIALIZER, "    CS_ERR_NO_CLASS_CTOR = -5,", "    CS_ERR_NO_CLASS_CTOR = -3,")]),
    "constant-changed": (UNCOMPILED, "ROOM_ERROR == -3072", [
        (WRITER, "ROOM_ERROR = -3072", "ROOM_ERROR = -3073")]),
    "cursor-handle-grown": (UNCOMPILED, "a cursor handle is one pointer", [
        (LIST_CURSOR, " public:\n", " public:\n  int added_ = 0;\n")]),

    "symbol-removed": (REFUSED, "-_ZN10lvrHashMap11needStorageEv@@", [
        (HASH_MAP, "  int needStorage();", "  TARSELVALUES_INTERNAL int needStorage();")]),
    "class-no-longer-exported": (REFUSED, "-_ZN8lvrStack3popEv@@", [
        (STACK, "class TARSELVALUES_API lvrStack", "class lvrStack")]),
    "return-type-changed": (REFUSED, "type name changed from 'int' to 'bool'", [
        (HASH_MAP, "  int needStorage();", "  bool needStorage();"),
        (HASH_MAP_SOURCE, "int lvrHashMap::needStorage()", "bool lvrHashMap::needStorage()")]),
    "parameter-type-changed": (REFUSED, "-_ZN10lvrHashMap11setHashSizeEj@@", [
        (HASH_MAP, "  int setHashSize(unsigned int size);", "  int setHashSize(unsigned long size);"),
        (HASH_MAP_SOURCE, "::setHashSize(unsigned int size)", "::setHashSize(unsigned long size)")]),
    "parameter-added": (REFUSED, "-_ZN10lvrHashMap11setHashSizeEj@@", [
        (HASH_MAP, "  int setHashSize(unsigned int size);",
         "  int setHashSize(unsigned int size, bool = false);"),
        (HASH_MAP_SOURCE, "::setHashSize(unsigned int size)",
         "::setHashSize(unsigned int size, bool)")]),

    "node-renamed": (REFUSED, "its version nodes are 'TARSELVALUES_2'", [
        (NODES, "TARSELVALUES_1 {", "TARSELVALUES_2 {")]),
    "node-added": (REFUSED, "its version nodes are 'TARSELVALUES_1 TARSELVALUES_2'", [
        (NODES, "local:\n    *;\n};", "local:\n    *;\n};\nTARSELVALUES_2 {\n} TARSELVALUES_1;")]),
    "soname-changed": (REFUSED, "its SONAME is 'libtarselvalues-mt.so.2'", [
        (LIBRARY, 'SOVERSION "${PROJECT_VERSION_MAJOR}"', 'SOVERSION "2"')]),
    "debug-information-removed": (REFUSED, "no debug information", [
        (LIBRARY, '"LINKER:-z,nodelete"', '"LINKER:-z,nodelete" "LINKER:--strip-debug"')]),
}


def changed(name, texts):
    """What the texts of the files, by path, are after the change."""
    expected, _, edits = CHANGES[name]
    texts = dict(texts)
    if expected != UNCOMPILED:
        texts.update((file, "") for file in ASSERTIONS)
    for file, old, new, *times in edits:
        count = texts[file].count(old)
        if count != 1 and not (times == [ALL] and count > 1):
            sys.exit(f"{name}: {file} has {count} times, not once: {old}")
        texts[file] = texts[file].replace(old, new)
    return texts


def read_sources():
    paths = [pathlib.Path(COPIED_FILE)]
    for folder in COPIED_FOLDERS:
        paths += (
            path
            for path in pathlib.Path(folder).rglob("*")
            if path.is_file() and path.suffix != ".pyc"
        )
    return {str(path): path.read_text() for path in paths}


def write_changes(texts, copy):
    """Files that are as they should be keep their times, so that no more is built than must."""
    for file, text in texts.items():
        path = copy / file
        if not path.exists() or path.read_text() != text:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)


def print_list(names):
    unknown = [name for name in names if name not in CHANGES]
    if unknown:
        sys.exit(f"no such change: {', '.join(unknown)}")
    for name, (expected, because, _) in CHANGES.items():
        if not names or name in names or name == UNCHANGED:
            print(name, expected, because)


def main(command=None, *arguments):
    if command == "list":
        print_list(arguments)
    elif command == "apply" and len(arguments) == 2:
        name, copy = arguments
        write_changes(changed(name, read_sources()), pathlib.Path(copy))
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(*sys.argv[1:])
