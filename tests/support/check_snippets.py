"""Checks that what a page shows is what there is.

usage: check_snippets.py --root FOLDER [--lvtext COMMAND] [--ran FOLDER] SOURCES... -- PAGES...

SOURCES are programs that are built and run by tests. In each page

- every block marked as cpp must stand in one of them, line for line, but for its indentation;
- a block marked as text that follows it must stand in what that program prints: in FOLDER/NAME.txt,
  with which another test compares its output;
- every indented line "$ ..." that runs lvtext is run, in the folder given as root, and must print what
  follows it: its standard output, then its standard error. So is one in a literal display of a manual
  page.

Says what does not fit; the exit status is 0 when there is no such thing. The last line says how much was
checked.
"""

import argparse
import os
import subprocess
import sys
import tempfile
import textwrap

FENCE = "```"
INDENT = "    "
PROMPT = "$ "


def holds(lines, part):
    """Whether the lines of PART follow one another in LINES, all indented alike."""
    wanted = textwrap.dedent("\n".join(part)).split("\n")
    for start in range(len(lines) - len(wanted) + 1):
        found = lines[start:start + len(wanted)]
        if textwrap.dedent("\n".join(found)).split("\n") == wanted:
            return True
    return False


def read_lines(path):
    with open(path, encoding="utf-8") as file:
        return file.read().split("\n")


def as_indented(lines):
    """The lines of a manual page, with its literal displays indented."""
    result = []
    inside = False
    for line in lines:
        if line.startswith((".Bd ", ".Ed")):
            inside = line.startswith(".Bd -literal")
            line = ""
        result.append(INDENT + line if inside and line else line)
    return result


class Page:
    """A page's blocks: (number of the line before, language, lines); and its indented commands."""

    def __init__(self, path):
        self.path = path
        self.blocks = []
        self.commands = []  # (number of the line, command, lines that follow)
        lines = read_lines(path)
        if not path.endswith(".md"):
            lines = as_indented(lines)
        language = command = None
        for number, line in enumerate(lines, 1):
            if language is not None:
                if line == FENCE:
                    language = None
                else:
                    self.blocks[-1][2].append(line)
            elif line.startswith(FENCE):
                language = line[len(FENCE):]
                self.blocks.append((number, language, []))
                command = None
            elif line.startswith(INDENT + PROMPT):
                command = (number, line[len(INDENT + PROMPT):], [])
                self.commands.append(command)
            elif command is not None and line.startswith(INDENT):
                command[2].append(line[len(INDENT):])
            else:
                command = None
        self.is_open = language is not None


class Checker:
    def __init__(self, options, sources):
        self.root = options.root
        self.lvtext = options.lvtext
        self.ran = options.ran
        self.sources = {path: read_lines(path) for path in sources}
        self.faults = []
        self.checked = 0

    def check(self, page):
        if page.is_open:
            self.faults.append(f"{page.path}: a block is not closed")
        shown = []  # the sources that hold the last cpp block
        for number, language, lines in page.blocks:
            if language == "cpp":
                shown = [path for path, source in self.sources.items() if holds(source, lines)]
                self.judge(page, number, shown, "no program that is run has these lines")
            elif language == "text" and shown:
                printed = any(holds(self.output_of(path), lines) for path in shown)
                self.judge(page, number, printed, "the program above does not print this")
        for number, command, lines in page.commands:
            if self.lvtext and "lvtext" in command:
                output = self.run(command)
                self.judge(page, number, output == lines,
                           "this prints\n" + "\n".join(output))

    def judge(self, page, number, is_right, reason):
        self.checked += 1
        if not is_right:
            self.faults.append(f"{page.path}:{number}: {reason}")

    def output_of(self, source):
        name = os.path.splitext(os.path.basename(source))[0]
        path = os.path.join(self.ran or "", name + ".txt")
        return read_lines(path) if os.path.exists(path) else []

    def run(self, command):
        """What a command of the page prints."""
        with tempfile.TemporaryDirectory() as folder:
            program = os.path.join(folder, "lvtext")
            with open(program, "w", encoding="utf-8") as file:
                file.write(f'#!/bin/sh\nexec {self.lvtext} "$@"\n')
            os.chmod(program, 0o755)
            environment = {**os.environ, "PATH": folder + os.pathsep + os.environ["PATH"]}
            run = subprocess.run(command, shell=True, cwd=self.root, env=environment,
                                 capture_output=True, text=True, check=False)
        return (run.stdout + run.stderr).splitlines()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--root", required=True)
    parser.add_argument("--lvtext")
    parser.add_argument("--ran")
    parser.add_argument("sources", nargs="+")
    arguments = sys.argv[1:]
    split = arguments.index("--")
    options = parser.parse_args(arguments[:split])
    checker = Checker(options, options.sources)
    for path in arguments[split + 1:]:
        checker.check(Page(path))
    for fault in checker.faults:
        print(fault, file=sys.stderr)
    print(f"{checker.checked} blocks and commands checked, {len(checker.faults)} faults")
    return 1 if checker.faults or not checker.checked else 0


if __name__ == "__main__":
    sys.exit(main())
