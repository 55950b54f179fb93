"""Prepares a public header for Doxygen, on standard output: its input filter.

The headers carry plain comments in one style, which is turned here, line for line, into what Doxygen
takes:

- The opening comment is that of the class NAME when it begins with "NAME: ", else that of the file.
  A header that says it is "Not for users" is left out.
- A comment just above a declaration is its documentation. Overloads that follow without an empty line
  share it; a destructor without a comment has one that refers to its class.
- A comment behind an enumerator or a field is its documentation.
- "// --- TITLE ---" begins a group of members. What is in the group "For the library itself; not
  exported", what has a comment that begins so, and what is marked TARSELVALUES_INTERNAL is left out.
- "Label: text" at the start of a line of a comment begins a paragraph with that title. Lines that are
  indented after an empty line stay as they are.
- The "Threads:" paragraph of a class begins with one of the words in WORDS, which holds for its member
  functions but static ones. The sentence "Any thread.", say, in a comment holds for that function. To
  a destructor the whole object must belong.
"""

import re
import sys

ONE_THREAD = "one thread at a time"
WORDS = ("any thread", ONE_THREAD, "before threads start")
LIBRARY_ONLY = "For the library itself; not exported"
MAIN_PAGE = "tarselvalues.h"

OWN_WORD = re.compile(r"\b(" + "|".join(word.capitalize().replace(" ", r"\s") for word in WORDS) +
                      r")\.(?=\s|$)")
LABEL = re.compile(r"([A-Z][a-z]+(?: [a-z]+)?):\s+(?=\S)")
HEADING = re.compile(r"\s*// --- (.*?) -+$")
COMMENT_LINE = re.compile(r"\s*//( ?)(.*)$")
NOLINT = re.compile(r"\s*// NOLINT.*$")
TEMPLATE = re.compile(r"template <[^()]*?>\s*(?=\w)")
INDENTATION = re.compile(r"\s*")
INDENTED = "  "


def escaped(text):
    """The text as Doxygen shows it as it stands; `code` in the letters of code."""
    parts = []
    for number, part in enumerate(text.split("`")):
        part = re.sub(r'([\\@&#<>%"])', r"\\\1", part)
        parts.append(f"<code>{part}</code>" if number % 2 else part)
    return "".join(parts)


def documentation(lines):
    """The lines of a comment, without their slashes, as lines of Doxygen's; as many as before."""
    result = []
    verbatim = labelled = False
    for number, line in enumerate(lines):
        following = lines[number + 1] if number + 1 < len(lines) else ""
        if verbatim and line and not line.startswith(INDENTED):
            line, verbatim = r"\endverbatim " + escaped(line), False
        elif verbatim:
            if not line and not following.startswith(INDENTED):
                line, verbatim = r"\endverbatim", False
        elif not line:
            labelled = False
            verbatim = following.startswith(INDENTED)
            line = r"\verbatim" if verbatim else ""
        elif number > 0 and (label := LABEL.match(line)):
            labelled = True
            start = label.end()
            line = rf"\label{{{label.group(1)}}} " + escaped(line[start].upper() + line[start + 1:])
        else:
            line = escaped(line.strip() if labelled or number > 0 else line)
        result.append(line)
    if verbatim:
        result[-1] += r" \endverbatim"
    return result


class Declaration:
    """A declaration at the scope of a file, namespace or class: lines FIRST to LAST, from 0."""

    def __init__(self, first, hidden, default):
        self.first = first
        self.last = first
        self.text = ""
        self.hidden = hidden  # not public or protected
        self.default = default  # the word for threads of its class

    def name(self):
        """The name of the function that is declared; "" for anything else."""
        text = TEMPLATE.sub("", self.text)
        if re.match(r"(using|static_assert|friend|class|struct|enum|namespace)\b", text):
            return ""
        if "operator" not in text:
            text = text.split("=")[0]  # What a field begins with may have brackets.
        match = re.search(r"(operator.+?|~?\w+)\s*\(", text)
        return match.group(1) if match else ""

    def is_static(self):
        return re.search(r"\bstatic\b", self.text) is not None

    def is_destructor(self):
        return re.match(r"(virtual )?~", self.text) is not None

    def is_deleted(self):
        return re.search(r"= delete;", self.text) is not None


class Header:
    def __init__(self, lines):
        self.lines = [NOLINT.sub("", line) for line in lines]
        self.declarations = []
        self.default = self._default_word(self._opening())
        self._parse()

    def _opening(self):
        """The lines of the opening comment, without their slashes."""
        lines = []
        for line in self.lines:
            match = COMMENT_LINE.match(line)
            if not match:
                break
            lines.append(match.group(2))
        return lines

    @staticmethod
    def _default_word(comment):
        match = re.search(r"^Threads:\s*(" + "|".join(WORDS) + r")\b", "\n".join(comment),
                          re.MULTILINE | re.IGNORECASE)
        return match.group(1).lower() if match else None

    def comment_above(self, number):
        """The first line of the comment just above a line; that line if there is none."""
        first = number
        while first > 0 and COMMENT_LINE.match(self.lines[first - 1]):
            first -= 1
        return first

    def comment(self, first, last):
        return [COMMENT_LINE.match(line).group(2) for line in self.lines[first:last]]

    def _parse(self):
        scopes = []  # [is a body or an enumeration, is hidden, the word for threads]
        current = None
        parens = 0
        for number, line in enumerate(self.lines):
            code = re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])*\'', '""', line)
            code = re.sub(r"//.*", "", code)
            if code.startswith("#define "):
                self.declarations.append(Declaration(number, False, None))
            if code.startswith("#"):
                continue
            label = re.fullmatch(r"\s*(public|protected|private):\s*", code)
            if label and scopes:
                scopes[-1][1] = label.group(1) == "private"
                continue
            for char in code:
                inside_body = bool(scopes) and scopes[-1][0]
                if current is None and not inside_body and char not in " \n};":
                    hidden = any(scope[1] for scope in scopes)
                    default = scopes[-1][2] if scopes else self.default
                    current = Declaration(number, hidden, default)
                if current is not None and not inside_body:
                    current.text += char
                parens += {"(": 1, ")": -1}.get(char, 0)
                if char == "{":
                    scopes.append(self._scope(current))
                    if not scopes[-1][0]:
                        self._end(current, number)
                        current = None
                elif char == "}":
                    was_body = scopes.pop()[0]
                    outside = not (scopes and scopes[-1][0])
                    if was_body and outside and current is not None and current.name():
                        self._end(current, number)
                        current = None
                elif char == ";" and not inside_body and parens == 0 and current is not None:
                    self._end(current, number)
                    current = None
            if current is not None and not (scopes and scopes[-1][0]):
                current.text += "\n"

    def _scope(self, declaration):
        if declaration is None:
            return [True, False, None]
        text = TEMPLATE.sub("", declaration.text)
        match = re.match(r"(class|struct|namespace)\b", text)
        if not match or "(" in text:
            return [True, False, None]
        first = self.comment_above(declaration.first)
        own = self._default_word(self.comment(first, declaration.first))
        is_internal = "TARSELVALUES_INTERNAL" in text or match.group(1) == "namespace"
        starts_hidden = match.group(1) == "class" or is_internal
        declaration.is_internal = is_internal
        return [False, starts_hidden, own or declaration.default]

    def _end(self, declaration, number):
        declaration.last = number
        self.declarations.append(declaration)


def threads(declaration, text):
    """Takes the sentences on threads out of a function's comment; adds the paragraphs for them."""
    if not declaration.name():
        return text, ""
    words = [word.lower().replace("\n", " ") for word in OWN_WORD.findall(text)]
    text = OWN_WORD.sub(lambda match: "\n" * match.group().count("\n"), text)
    if not words and declaration.is_destructor():
        words = [ONE_THREAD]
    elif not words and declaration.default and not declaration.is_static():
        words = [declaration.default]
    return text, "".join(rf" \threads{{{word}}}" for word in words)


class Filter:
    def __init__(self, name, lines):
        self.name = name
        self.header = Header(lines)
        self.lines = list(self.header.lines)

    def run(self):
        opening = self.header._opening()
        if "Not for users" in " ".join(opening):
            return []
        self._comment_declarations()
        self._comment_behind()
        self._group()
        self._hide()
        return self._open(opening)

    def _open(self, opening):
        rest = self.lines[len(opening):]
        if rest[:2] != ["#pragma once", ""]:
            sys.exit(f"{self.name}: #pragma once is expected after the opening comment")
        match = re.match(r"(\w+): (.)(.*)$", opening[0])
        if match:
            name = match.group(1)
            head = rf"\class {name}"
            opening = [match.group(2).upper() + match.group(3)] + opening[1:]
            rest[1] = rf"/** Declares {name}. \file */"
        elif self.name.endswith("/" + MAIN_PAGE):
            head = r"\mainpage tarselvalues"
        else:
            head = r"\file"
        # Without slashes in front of each line, which lines that stay as they are would show.
        comment = ["/** " + head] + documentation(opening)
        comment[-1] += " */"
        return comment + rest[1:]

    def _comment_declarations(self):
        shared = None
        for declaration in self.header.declarations:
            if declaration.hidden or declaration.is_deleted():
                shared = None
                continue
            number = declaration.first
            first = self.header.comment_above(number)
            indent = INDENTATION.match(self.lines[number]).group()
            if first < number and not self._is_heading(first):
                lines = self.header.comment(first, number)
                text, words = threads(declaration, "\n".join(lines))
                shown = documentation(text.split("\n"))
                shown[-1] += words
                self.lines[first:number] = [indent + "/// " + line for line in shown]
                shared = (declaration.name(), number, shown, declaration.last)
            elif shared and shared[0] == declaration.name() != "" and shared[3] + 1 == number:
                self._put_before(number, indent, " ".join(shared[2]))
                shared = (shared[0], number, shared[2], declaration.last)
            elif declaration.is_destructor():
                text, words = threads(declaration, "Drops and frees what the object owns.")
                self._put_before(number, indent, text + words)
            else:
                shared = None

    def _put_before(self, number, indent, text):
        self.lines[number] = f"{indent}/** {text} */ {self.lines[number].lstrip()}"

    def _is_heading(self, number):
        return HEADING.match(self.lines[number]) is not None

    def _comment_behind(self):
        """Comments behind enumerators and fields, with the lines that carry on below."""
        behind = re.compile(r"(\s*[^/\s][^/]*?[,;\w}]) +// (.*)$")
        column = None
        for number, line in enumerate(self.lines):
            if "///" in line or "/**" in line:
                column = None
            elif match := behind.match(line):
                column = line.index("// ")
                self.lines[number] = f"{match.group(1)}  ///< {escaped(match.group(2))}"
            elif column is not None and line[:column].strip() == "" and line[column:].startswith("//"):
                self.lines[number] = " " * column + "///< " + escaped(line[column + 3:])
            else:
                column = None

    def _group(self):
        """Headings become groups of members, which end before the next one or the next label."""
        is_open = None
        for number, line in enumerate(self.lines):
            heading = HEADING.match(line)
            ends = heading or re.match(r"\s*(private|protected):|};", line)
            if is_open and ends:
                self._replace_empty_line_above(number, is_open)
                is_open = None
            if not heading:
                continue
            last = number + 1
            while self.lines[last].strip():
                last += 1
            lines = [COMMENT_LINE.match(line).group(2) for line in self.lines[number + 1:last]]
            if heading.group(1).startswith(LIBRARY_ONLY):
                self.lines[number] = r"/// \cond"
                is_open = r"/// \endcond"
            else:
                self.lines[number] = rf"/// \name {heading.group(1)}"
                self.lines[number + 1:last] = ["/// " + line for line in documentation(lines)]
                self.lines[last] = "//@{"
                is_open = "//@}"

    def _replace_empty_line_above(self, number, text):
        above = number - 1
        while self.lines[above].strip():
            above -= 1
            if number - above > 1 and not self.lines[number].startswith("};"):
                sys.exit(f"{self.name}:{number}: an empty line is expected above")
        if self.lines[number].startswith("};"):
            self.lines[number - 1] += "\n" + text  # The lines below are counted one too high.
        else:
            self.lines[above] = text

    def _hide(self):
        for declaration in self.header.declarations:
            first = self.header.comment_above(declaration.first)
            marked = first < declaration.first and LIBRARY_ONLY in self.header.lines[first]
            marked = marked and not HEADING.match(self.header.lines[first])
            marked = marked or "TARSELVALUES_INTERNAL" in declaration.text
            if not declaration.hidden and (marked or declaration.is_deleted()):
                self._hide_one(first, declaration)

    def _hide_one(self, first, declaration):
        self.lines[first] = "/** \\cond */ " + re.sub(r"^\s*///.*", "", self.lines[first])
        last = declaration.last
        if self.header.lines[last].rstrip().endswith("{"):  # a class
            indent = INDENTATION.match(self.header.lines[declaration.first]).group()
            while self.header.lines[last] != indent + "};":
                last += 1
        self.lines[last] += " /** \\endcond */"


def main():
    name = sys.argv[1]
    with open(name, encoding="utf-8") as file:
        lines = file.read().split("\n")
    print("\n".join(Filter(name, lines).run()))


if __name__ == "__main__":
    main()
