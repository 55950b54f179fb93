"""The text writer and the text parser: how far they are."""

from . import limits
from .memory import Unreadable
from .values import Atom, shown


def writer(reader, address):
    def field(name):
        return reader.field(address, "lvtStringArgDest", name)

    if field("buffer_") == 0:
        return Atom("<text writer without a buffer>")
    length = field("length_")
    text = some_text(reader, field("buffer_"), length)
    return Atom(f"<text writer, {length} of {field('capacity_')} bytes used, "
                f"{field('depth_')} levels open: {text}>")


def parser(reader, address):
    def field(name):
        return reader.field(address, "lvtStringArgSource", name)

    if field("text_") == 0:
        return Atom("<text parser without a text>")
    offset, length = field("offset_"), field("length_")
    text = some_text(reader, field("text_") + offset, length - offset)
    return Atom(f"<text parser, {offset} of {length} bytes read, {field('errorCount_')} errors, "
                f"next: {text}>")


def some_text(reader, address, length):
    """The beginning of a text, as it stands."""
    try:
        text = reader.memory.text(address, max(0, min(length, limits.SHOWN_TEXT)))
    except Unreadable as unreadable:
        return str(unreadable)
    return shown(text) + ("..." if length > limits.SHOWN_TEXT == len(text) else "")
