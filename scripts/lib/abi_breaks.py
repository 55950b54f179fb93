"""Changes to the library that programs which are there already would not survive, and two that they
would: what scripts/abi-breaks tries on a copy of the sources.

usage: abi_breaks.py list                prints "NAME EXPECTED" for each change
       abi_breaks.py apply NAME COPY    makes COPY, a folder, a copy of the sources with the change

EXPECTED is what scripts/abi must say to it: "same", "added", or "refused"; or "uncompiled", where it
is the library's own static assertions that refuse. Those on the layout are taken out before all other
changes, so that it is the comparison that has to refuse.
"""

import pathlib
import sys

SAME = "same"
ADDED = "added"
REFUSED = "refused"
UNCOMPILED = "uncompiled"

COPIED_FILE = "CMakeLists.txt"
COPIED_FOLDERS = ["cmake", "tarselvalues"]

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

# Name: what is expected, and edits (file, text that stands there once, text in its place). An edit
# whose text stands there several times replaces all when it says so.
ALL = "all"
CHANGES = {
    "nothing": (SAME, []),
    "comment-changed": (SAME, [
        (VERSION, "// MAJOR of these headers. ", "// MAJOR of the headers. ")]),

    "function-added": (ADDED, [
        (VERSION, "TARSELVALUES_API void lvGetVersion(",
         "TARSELVALUES_API int lvGetAdded() noexcept;\nTARSELVALUES_API void lvGetVersion("),
        (VERSION_SOURCE, "void lvGetVersion(",
         "int lvGetAdded() noexcept { return 1; }\nvoid lvGetVersion(")]),

    "fields-swapped": (REFUSED, [
        (VECTOR, "  std::uint16_t alloced;\n  std::uint16_t start;\n",
         "  std::uint16_t start;\n  std::uint16_t alloced;\n")]),
    "field-widened-into-padding": (REFUSED, [
        (WRITER, "  std::uint8_t depth_;\n", "  std::uint16_t depth_;\n")]),
    "field-added": (REFUSED, [
        (REGISTRY, "  lvArg classes_;", "  int added_ = 0;\n  lvArg classes_;")]),
    "field-added-at-the-end": (REFUSED, [
        (PARSER, "  std::int32_t lastToken_;\n",
         "  std::int32_t lastToken_;\n  std::int32_t added_ = 0;\n")]),
    "field-removed": (REFUSED, [
        (REFERENCABLE, "  std::uint16_t getOwnNumber() const { return ownNumber_; }\n",
         "  std::uint16_t getOwnNumber() const { return 0; }\n"),
        (REFERENCABLE, "  void setOwnNumber(std::uint16_t number) { ownNumber_ = number; }\n",
         "  void setOwnNumber(std::uint16_t) {}\n"),
        ("tarselvalues/core/OneBlockString.h", "      ownNumber_(0),\n", ""),
        (REFERENCABLE, "  std::uint16_t ownNumber_;\n", ""),
        ("tarselvalues/core/lvReferencable.cpp", "ownNumber_(0), ", "")]),

    "virtual-inserted": (REFUSED, [
        (MAP, "  virtual int getSize() const = 0;\n",
         "  virtual int added() { return 0; }\n  virtual int getSize() const = 0;\n")]),
    "virtual-appended": (REFUSED, [
        (SOURCE, "  virtual int getNextToken(lvArg& out);\n",
         "  virtual int getNextToken(lvArg& out);\n  virtual int added() { return 0; }\n")]),
    "virtuals-swapped": (REFUSED, [
        (LIST, "  virtual bool isSorted() const = 0;\n", ""),
        (LIST, "  virtual bool clear() = 0;\n",
         "  virtual bool clear() = 0;\n  virtual bool isSorted() const = 0;\n")]),
    "virtual-made-plain": (REFUSED, [
        (VECTOR, "  virtual void vectorEvent(", "  void vectorEvent(")]),

    "bases-swapped": (REFUSED, [
        (STACK, "public lvReferencable, public lviStack", "public lviStack, public lvReferencable")]),
    "base-removed": (REFUSED, [
        (STACK, "public lvReferencable, public lviStack", "public lvReferencable"),
        (STACK, " override;", ";", ALL)]),

    "enumerator-renumbered": (REFUSED, [
        (CELL, "    ClassType = 27,", "    ClassType = 28,")]),
    "kind-renumbered": (UNCOMPILED, [
        (REFERENCABLE, "    MapKind = 8,", "    MapKind = 7,")]),
    "token-renumbered": (UNCOMPILED, [
        (PARSER, "    TOKEN_OVERFLOW = 259,", "    TOKEN_OVERFLOW = 260,")]),
    "result-renumbered": (UNCOMPILED, [
        (SERIALIZER, "    CS_ERR_NO_CLASS_CTOR = -5,", "    CS_ERR_NO_CLASS_CTOR = -3,")]),
    "constant-changed": (UNCOMPILED, [
        (WRITER, "ROOM_ERROR = -3072", "ROOM_ERROR = -3073")]),
    "cursor-handle-grown": (UNCOMPILED, [
        (LIST_CURSOR, " public:\n", " public:\n  int added_ = 0;\n")]),

    "symbol-removed": (REFUSED, [
        (HASH_MAP, "  int needStorage();", "  TARSELVALUES_INTERNAL int needStorage();")]),
    "class-no-longer-exported": (REFUSED, [
        (STACK, "class TARSELVALUES_API lvrStack", "class lvrStack")]),
    "return-type-changed": (REFUSED, [
        (HASH_MAP, "  int needStorage();", "  bool needStorage();"),
        (HASH_MAP_SOURCE, "int lvrHashMap::needStorage()", "bool lvrHashMap::needStorage()")]),
    "parameter-type-changed": (REFUSED, [
        (HASH_MAP, "  int setHashSize(unsigned int size);", "  int setHashSize(unsigned long size);"),
        (HASH_MAP_SOURCE, "::setHashSize(unsigned int size)", "::setHashSize(unsigned long size)")]),
    "parameter-added": (REFUSED, [
        (HASH_MAP, "  int setHashSize(unsigned int size);",
         "  int setHashSize(unsigned int size, bool = false);"),
        (HASH_MAP_SOURCE, "::setHashSize(unsigned int size)",
         "::setHashSize(unsigned int size, bool)")]),

    "node-renamed": (REFUSED, [
        (NODES, "TARSELVALUES_1 {", "TARSELVALUES_2 {")]),
    "node-added": (REFUSED, [
        (NODES, "local:\n    *;\n};", "local:\n    *;\n};\nTARSELVALUES_2 {\n} TARSELVALUES_1;")]),
    "soname-changed": (REFUSED, [
        (LIBRARY, 'SOVERSION "${PROJECT_VERSION_MAJOR}"', 'SOVERSION "2"')]),
    "debug-information-removed": (REFUSED, [
        (LIBRARY, '"LINKER:-z,nodelete"', '"LINKER:-z,nodelete" "LINKER:--strip-debug"')]),
}


def changed(name, texts):
    """What the texts of the files, by path, are after the change."""
    expected, edits = CHANGES[name]
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
        paths += (path for path in pathlib.Path(folder).rglob("*") if path.is_file())
    return {str(path): path.read_text() for path in paths}


def write_changes(texts, copy):
    """Files that are as they should be keep their times, so that no more is built than must."""
    for file, text in texts.items():
        path = copy / file
        if not path.exists() or path.read_text() != text:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)


def main():
    if sys.argv[1:] == ["list"]:
        for name, (expected, _) in CHANGES.items():
            print(name, expected)
    elif len(sys.argv) == 4 and sys.argv[1] == "apply":
        write_changes(changed(sys.argv[2], read_sources()), pathlib.Path(sys.argv[3]))
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main()
