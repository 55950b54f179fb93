"""Checks that what a page shows is what there is.

usage: check_snippets.py --root FOLDER --ran FOLDER [--lvtext COMMAND]
                         [--programs FILE...] [--cmake FILE...] [--followed-by FILE...]
                         --pages PAGE...

What is shown is a fenced block, or an indented one, of a Markdown page; in a manual page a literal display,
of which a comment in front (.\\" cpp) tells the kind. Each must be of a kind that something checks:

  cpp    the lines stand in one of the programs, which are built and run by tests, but for their
         indentation;
  text   the lines stand in what the program above prints: in NAME.txt of the folder --ran, with which
         another test compares its output; below commands, see there;
  cmake  one of the files --cmake, which tests use, as it is; and each of those is shown somewhere;
  sh     commands under a heading that one of the files --followed-by names, in quotes, beside the page:
         those run them, and compare what they print. Or commands of this repository: a script that is
         there, or cmake and ctest with a preset that is there;
  lv     in each line a value in the text format, with a remark two blanks behind it: lvtext prints it as
         it stands. In manual pages so is each tag (.It Li) that looks like a value;
  gdb    a session, in a page that one of the files --followed-by names: those have gdb repeat it;
  (none) indented lines "$ ...": lvtext is run, in the folder given as root, and must print what follows:
         its standard output, then its standard error.

What is for lvtext is passed over where there is none. Says what does not fit; the exit status is 0 when
there is no such thing. The last line says how much was checked.
"""

import argparse
import json
import os
import re
import shlex
import subprocess
import sys
import tempfile
import textwrap

FENCE = "```"
INDENT = "    "
PROMPT = "$ "
CONSOLE = "console"  # The kind of indented commands.
CLASSES = ["--class", "Point=2"]  # That values in text may name.
ESCAPES = (("\\(dq", '"'), ("\\-", "-"), ("\\&", ""), ("\\e", "\\"))  # Of manual pages.


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


def as_markdown(lines):
    """The lines of a manual page that show something, as Markdown has them."""
    result = []
    kind = None
    inside = False
    for line in lines:
        for escape, character in ESCAPES:
            line = line.replace(escape, character)
        if inside:
            inside = line != ".Ed"
            result.append((line if kind else INDENT + line) if inside else FENCE if kind else "")
        elif line.startswith(".Bd -literal"):
            inside = True
            result.append(FENCE + kind if kind else "")
        elif re.match(r"\.It Li [{*#]", line):
            result += [FENCE + "lv", line[len(".It Li "):], FENCE]
        else:
            result.append("")
        if not inside:
            comment = re.match(r'\.\\" (\w+)$', line)
            kind = comment.group(1) if comment else None
    return result


class Block:
    def __init__(self, number, kind, heading):
        self.number = number  # Of its first line.
        self.kind = kind
        self.heading = heading
        self.lines = []


def read_blocks(path):
    """The blocks of a page, and whether the last one is closed."""
    lines = read_lines(path)
    if not path.endswith(".md"):
        lines = as_markdown(lines)
    blocks = []
    heading = ""
    fenced = indented = False
    before = ""
    for number, line in enumerate(lines, 1):
        if fenced:
            fenced = line != FENCE
            if fenced:
                blocks[-1].lines.append(line)
        elif line.startswith(FENCE):
            blocks.append(Block(number, line[len(FENCE):], heading))
            fenced = True
        elif line.startswith(INDENT) and (indented or not before):
            if not indented or line.startswith(INDENT + PROMPT):
                is_command = line.startswith(INDENT + PROMPT)
                blocks.append(Block(number, CONSOLE if is_command else "", heading))
            blocks[-1].lines.append(line[len(INDENT):])
        elif line.startswith("#"):
            heading = line.lstrip("#").strip()
        indented = not fenced and line.startswith(INDENT) and (indented or not before)
        before = line
    return blocks, not fenced


class Checker:
    def __init__(self, options):
        self.root = options.root
        self.ran = options.ran
        self.lvtext = options.lvtext
        self.programs = {path: read_lines(path) for path in options.programs}
        self.unseen = {path: "\n".join(read_lines(path)).rstrip("\n") for path in options.cmake}
        self.files = dict(self.unseen)
        self.followers = ["\n".join(read_lines(path)) for path in options.followed_by]
        self.faults = []
        self.checked = 0
        self.page = ""
        self.shown = []  # The programs that hold the last block, where that was C++.
        self.after_commands = False  # That something else runs and compares.

    def check(self, path):
        self.page = path
        self.shown = []
        self.after_commands = False
        blocks, is_closed = read_blocks(path)
        if not is_closed:
            self.faults.append(f"{path}: a block is not closed")
        ways = {"cpp": self.check_program, "text": self.check_output, "cmake": self.check_file,
                "sh": self.check_commands, "lv": self.check_values, "gdb": self.check_session, CONSOLE: self.check_console}
        for block in blocks:
            way = ways.get(block.kind)
            if way:
                way(block)
            else:
                self.judge(block, False, f"nothing checks a block of the kind '{block.kind}'")

    def judge(self, block, is_right, reason):
        self.checked += 1
        if not is_right:
            self.faults.append(f"{self.page}:{block.number}: {reason}")

    def check_program(self, block):
        self.after_commands = False
        self.shown = [path for path, lines in self.programs.items() if holds(lines, block.lines)]
        self.judge(block, self.shown, "no program that is run has these lines")

    def check_output(self, block):
        if not self.after_commands:
            printed = any(holds(self.output_of(path), block.lines) for path in self.shown)
            self.judge(block, printed, "no program above prints this")

    def output_of(self, program):
        name = os.path.splitext(os.path.basename(program))[0]
        path = os.path.join(self.ran, name + ".txt")
        return read_lines(path) if os.path.exists(path) else []

    def check_file(self, block):
        text = "\n".join(block.lines)
        found = [path for path, content in self.files.items() if content == text]
        for path in found:
            self.unseen.pop(path, None)
        self.judge(block, found, "no test uses a file like this")

    def check_commands(self, block):
        self.shown = []
        self.after_commands = self.is_followed(block.heading)
        reason = f"nothing follows the section '{block.heading}'"
        if self.after_commands:
            self.judge(block, True, reason)
        else:
            for line in block.lines:
                self.judge(block, self.is_of_this_house(line), f"{reason} and runs {line}")

    def is_followed(self, heading):
        page = os.path.relpath(self.page, self.root)
        named = re.compile(f'["=]{re.escape(heading)}"')
        return any(page in text and named.search(text) for text in self.followers)

    def check_session(self, block):
        page = os.path.relpath(self.page, self.root)
        self.judge(block, any(page in text for text in self.followers), "nothing repeats this")

    def is_of_this_house(self, line):
        words = shlex.split(line, comments=True)
        if words and words[0].startswith("scripts/"):
            return os.access(os.path.join(self.root, words[0]), os.X_OK)
        if words and words[0] in ("cmake", "ctest") and "--preset" in words[:-1]:
            with open(os.path.join(self.root, "CMakePresets.json"), encoding="utf-8") as file:
                presets = json.load(file)["configurePresets"]
            return words[words.index("--preset") + 1] in [preset["name"] for preset in presets]
        return not words

    def check_values(self, block):
        for line in block.lines if self.lvtext else []:
            value = re.split(" {2,}", line)[0]
            output = self.run(["lvtext", "print", *CLASSES], value)
            self.judge(block, output == [value], f"{value} is printed as\n" + "\n".join(output))

    def check_console(self, block):
        if self.lvtext:
            output = self.run(["sh", "-c", block.lines[0][len(PROMPT):]], "")
            self.judge(block, "lvtext" in block.lines[0] and output == block.lines[1:],
                       "this prints\n" + "\n".join(output))

    def run(self, command, text):
        """What the command prints, which may run lvtext by that name."""
        with tempfile.TemporaryDirectory() as folder:
            program = os.path.join(folder, "lvtext")
            with open(program, "w", encoding="utf-8") as file:
                file.write(f'#!/bin/sh\nexec {self.lvtext} "$@"\n')
            os.chmod(program, 0o755)
            environment = {**os.environ, "PATH": folder + os.pathsep + os.environ["PATH"]}
            command = ["/usr/bin/env", *command]  # Searches the folder.
            done = subprocess.run(command, cwd=self.root, env=environment, input=text,
                                  capture_output=True, text=True, check=False)
        return (done.stdout + done.stderr).splitlines()

    def finish(self):
        self.faults += [f"no page shows {path}" for path in self.unseen]


def main(arguments):
    parser = argparse.ArgumentParser()
    parser.add_argument("--root", required=True)
    parser.add_argument("--ran", required=True)
    parser.add_argument("--lvtext")
    for files in ("--programs", "--cmake", "--followed-by", "--pages"):
        parser.add_argument(files, nargs="+", default=[])
    options = parser.parse_args(arguments)
    checker = Checker(options)
    for path in options.pages:
        checker.check(path)
    checker.finish()
    for fault in checker.faults:
        print(fault, file=sys.stderr)
    print(f"{checker.checked} blocks and commands checked, {len(checker.faults)} faults")
    return 1 if checker.faults or not checker.checked else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
