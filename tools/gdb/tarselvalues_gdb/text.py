"""Values as text: in the text format, for what that has."""

import re

import gdb

from . import limits
from .memory import Unreadable
from .registry import Described
from .values import Atom, String

WORD = re.compile(rb"[A-Za-z_][A-Za-z_0-9]*")
ESCAPED = set(b'"%:') | set(range(32)) | {127}


def limit(parameter, most):
    """A limit that is set in gdb; unlimited is `most`."""
    value = gdb.parameter(parameter)
    return most if value is None or not 0 <= value < most else value


def part_limit():
    """How many parts of values, and characters of a string, are shown."""
    return limit("print elements", limits.PARTS) or limits.PARTS


def string_text(text, bare_words):
    """The bytes of a string as in the text format. Those that gdb could not show are escaped."""
    if bare_words and WORD.fullmatch(text):
        return text.decode()
    return '"' + escape(text, ESCAPED) + '"'


def escape(text, escaped):
    escaped_text = b"".join(b"%%%02X" % byte if byte in escaped else b"%c" % byte for byte in text)
    try:
        shown = escaped_text.decode()
        shown.encode(gdb.host_charset())
        return shown
    except (UnicodeError, LookupError):
        return escape(escaped_text, set(range(128, 256)))


class Text:
    """Writes values, to so many parts in all and so deep. With bare words as the library does by
    default; without, strings can be told from words that gdb says."""

    def __init__(self, most_parts=None, most_depth=None, bare_words=False):
        self.left = part_limit() if most_parts is None else min(most_parts or limits.PARTS, limits.PARTS)
        self._most_characters = part_limit()
        depth = limit("print max-depth", limits.DEPTH) if most_depth is None else most_depth
        self._most_depth = min(depth, limits.DEPTH)
        self._bare_words = bare_words

    def of_whole(self, value):
        """The text of a value by itself: of a class, all of it."""
        return value.summary() if isinstance(value, Described) else self.of(value)

    def of(self, value, above=()):
        """The text of a value that is in the containers `above`, outermost first."""
        if isinstance(value, Atom):
            return value.shown
        if isinstance(value, String):
            return self._of_string(value)
        opening = f"*{string_text(value.class_name, True)}{{" if value.is_object else "{"
        if value.address in above:
            return f"<cycle: {len(above) - above.index(value.address)} up>"
        if len(above) >= self._most_depth:
            return opening + "...}"
        return opening + ",".join(self.of_parts(value, above)) + "}"

    def of_parts(self, container, above=()):
        """Yields the text of each part."""
        above = above + (container.address,)
        for part in container.parts():
            if self.left <= 0:
                yield "..."
                return
            self.left -= 1
            texts = [self.of(value, above) for value in part.values]
            yield f"({'='.join(texts)})" if len(texts) > 1 else texts[0]

    def _of_string(self, value):
        try:
            text, is_cut = value.read(self._most_characters)
        except Unreadable as unreadable:
            return str(unreadable)
        return string_text(text, self._bare_words and not is_cut) + ("..." if is_cut else "")
