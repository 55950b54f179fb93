"""The commands `lv ...`."""

import os
import sys

import gdb

from .memory import Unreadable
from .printers import read
from .reader import Reader
from .survey import StringTable, graph, statistics
from .text import Text, part_limit
from .values import String


def evaluate(expression):
    """The value that an expression of the program's language means: a cell, an object, or the
    address of one."""
    if not expression.strip():
        raise gdb.GdbError("An expression is expected.")
    try:
        return read(gdb.parse_and_eval(expression))
    except gdb.error as error:
        raise gdb.GdbError(str(error)) from error


class Group(gdb.Command):
    """Show values of libtarselvalues-mt. They are read from memory; nothing of the program is called."""

    def __init__(self):
        super().__init__("lv", gdb.COMMAND_DATA, prefix=True)


class Print(gdb.Command):
    """Print a whole value as text.
Usage: lv print [-elements NUMBER] [-max-depth NUMBER] EXPRESSION

EXPRESSION is a value of a type of the library, or the address of a cell or an object.
What the text format has is written as the library writes it. Where it has nothing, < and > tell what
there is instead; {...} is deeper than the limit of the depth, and ... stands for what is beyond the
limit of the elements, which counts all that are shown. The limits are those of "print", if not given;
NUMBER may be "unlimited", which 0 elements are as well, as for "print"."""

    OPTIONS = {"-elements": "most_parts", "-max-depth": "most_depth"}

    def __init__(self):
        super().__init__("lv print", gdb.COMMAND_DATA, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, from_tty):
        limits = {}
        words = argument.split(maxsplit=2)
        while len(words) == 3 and words[0] in self.OPTIONS:
            limits[self.OPTIONS[words[0]]] = number_in(words[1])
            argument = words[2]
            words = argument.split(maxsplit=2)
        gdb.write(Text(bare_words=True, **limits).of_whole(evaluate(argument)) + "\n")


def number_in(word):
    if word == "unlimited":
        return sys.maxsize
    if not word.isdigit():
        raise gdb.GdbError(f"A number is expected, not {word}.")
    return int(word)


class Strings(gdb.Command):
    """List the interned strings.
Usage: lv strings [PREFIX]

Says how many there are and how long the longest chain of their table is. Then come those that begin
with PREFIX, as many as "set print elements" allows, each after the number of its holders."""

    def __init__(self):
        super().__init__("lv strings", gdb.COMMAND_DATA)

    def invoke(self, argument, from_tty):
        table = StringTable(Reader())
        prefix = argument.strip().encode()
        total = 0
        wanted = []
        try:
            for holders, value in table.entries():
                total += 1
                text = value.read(part_limit()) if isinstance(value, String) else (b"", False)
                if text[0].startswith(prefix):
                    wanted.append((text, holders, value))
        except Unreadable as unreadable:
            gdb.write(f"{unreadable}\n")
        gdb.write(f"{total} interned strings, longest chain {table.longest}\n")
        self._list(sorted(wanted, key=lambda each: each[0]))

    @staticmethod
    def _list(wanted):
        most = part_limit()
        for _, holders, value in wanted[:most]:
            gdb.write(f"{holders:6} {Text().of(value)}\n")
        if len(wanted) > most:
            gdb.write(f"   ... and {len(wanted) - most} more\n")


class Stats(gdb.Command):
    """Count what a value consists of.
Usage: lv stats EXPRESSION

values    all that it holds, itself included; what is in a shared object counts once
objects   strings, containers and objects of described classes
shared    how many of these are held more than once within the value
cycles    references to what holds them
depth     how deep it is
bytes     what the objects take, with arrays, entries and texts, without what malloc() adds; of
          objects of the program's classes their base and their fields
chain     the longest chain of a hash map"""

    def __init__(self):
        super().__init__("lv stats", gdb.COMMAND_DATA, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, from_tty):
        counts, is_cut = statistics(evaluate(argument))
        for name, count in counts.items():
            gdb.write(f"{name:8} {count}\n")
        if is_cut:
            gdb.write("There is more, which is not counted.\n")


class Graph(gdb.Command):
    """Write a value as a graph, for the program dot.
Usage: lv graph EXPRESSION FILE

Containers and objects are boxes, a shared one is one box, and references that close a cycle are red."""

    def __init__(self):
        super().__init__("lv graph", gdb.COMMAND_DATA, gdb.COMPLETE_EXPRESSION)

    def invoke(self, argument, from_tty):
        expression, _, path = argument.strip().rpartition(" ")
        if not expression:
            raise gdb.GdbError("An expression and a file are expected.")
        root = evaluate(expression)
        try:
            with open(os.path.expanduser(path), "w", encoding="utf-8") as file:
                file.writelines(line + "\n" for line in graph(root))
        except OSError as error:
            raise gdb.GdbError(f"{path}: {error.strerror}.") from error


def register():
    for command in (Group, Print, Strings, Stats, Graph):
        command()
