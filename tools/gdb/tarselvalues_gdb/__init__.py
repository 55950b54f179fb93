"""Shows the values of libtarselvalues-mt in gdb: pretty printers, and the commands `lv ...`.

Everything is read from memory, by the layout that docs/memory-layout.md describes; nothing of the
program is called. So it works on core files too, and without the library's debug information.

    memory    the program's memory
    limits    what ends all loops
    layout    where the fields of the library's classes lie
    classes   what class of object is at an address
    values    what cells and objects hold
    reader    makes them
    streams   the text writer and the text parser
    registry  the registered classes, by which objects of the program's classes are read
    text      values as text
    survey    walks over a whole value: counts, graphs, the table of interned strings
    printers  what gdb's own `print` shows
    commands  lv print, lv strings, lv stats, lv graph
"""

import gdb
import gdb.printing

from . import commands, printers

commands.register()


def register(objfile):
    """Has gdb use the printers. Those of an object file go when that goes."""
    gdb.printing.register_pretty_printer(objfile, printers.make_collection(), replace=True)
