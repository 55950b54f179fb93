"""The symbols file of the Debian package, which tells the release that a program needs by the names it
uses: every name that abi/ keeps, with the release that brought it.

    symbols.py FILE RELEASE

Prints what FILE should be: as it is, without the names that are gone, and with those that are new, as
of RELEASE. Ends with 1 when RELEASE is a patch release and has new names.
"""

import pathlib
import re
import sys

# The files that list what is exported, and what Debian calls their targets.
KEPT = {
    "abi/armhf.symbols": "armhf",
    "abi/i686.symbols": "i386",
    "abi/x86-64.symbols": "amd64",
}

SYMBOL = re.compile(r"^(?:([^@]+)@@)?([^@]+)$")  # NAME@@NODE, or the symbol of a node itself
LINE = re.compile(r"^ ((?:\([^)]*\))?\S+) (\S+)$", re.MULTILINE)


class Wrong(Exception):
    """What is exported fits no such release."""


def in_debian_words(symbol):
    name, node = SYMBOL.match(symbol).groups()
    return f"{name or node}@{node}"


def tagged(exported):
    """The names, tagged with their architectures unless all have them. `exported` has the symbols of
    each architecture."""
    names = []
    for symbol in sorted(set().union(*exported.values())):
        having = sorted(arch for arch in exported if symbol in exported[arch])
        tag = "" if len(having) == len(exported) else f"(arch={' '.join(having)})"
        names.append(tag + in_debian_words(symbol))
    return names


def read_exported():
    return {arch: set(pathlib.Path(path).read_text().split()) for path, arch in KEPT.items()}


def renewed(text, names, release):
    """The text of a symbols file with just the names."""
    since = dict(LINE.findall(text))
    head = "".join(line for line in text.splitlines(keepends=True) if not line.startswith(" "))
    new = [name for name in names if name not in since]
    if new and not release.endswith(".0"):
        raise Wrong(f"new in {release}, a patch release: {', '.join(new)}")
    return head + "".join(f" {name} {since.get(name, release)}\n" for name in names)


def main(file, release):
    try:
        print(renewed(pathlib.Path(file).read_text(), tagged(read_exported()), release), end="")
    except Wrong as wrong:
        sys.exit(f"{file}: {wrong}")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
