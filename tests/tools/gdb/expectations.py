"""Runs in gdb: asks what a source file says, and compares the answers.

Lines of the source that begin with
  //> COMMAND    ask;
  //= LINE       are what is answered, in several lines if there are several;
  //- LINE       are what is answered instead where program and library are stripped.
In answers ADDRESS stands for any address, [A|B] for A on 32-bit targets and B on 64-bit ones. In
commands FILE stands for a file, the contents of which are taken for part of the answer.

Where the program is stripped its types are unknown, and only the commands `lv ...` are tried.

In a page (.md), blocks marked as gdb show commands behind gdb's prompt, and what is answered.

usage, in gdb: python import expectations; expectations.main(FILE, IS_STRIPPED)
"""

import os
import re
import tempfile

import gdb

PROMPT = "(gdb) "
FENCE = "```"
MARK = re.compile(r"\s*//([>=-]) (.*)")
HISTORY = re.compile(r"^\$\d+ = ")
ADDRESS = re.compile(r"0x[0-9a-f]{5,}")
KNOWN_ADDRESSES = ("0xc0ffee",)
BY_SIZE = re.compile(r"\[([^][|]*)\|([^][|]*)\]")


class Expectation:
    def __init__(self, number, command):
        self.number = number
        self.command = command
        self.answers = {"=": [], "-": []}

    def answer(self, is_stripped):
        lines = self.answers["-"] if is_stripped and self.answers["-"] else self.answers["="]
        size = gdb.lookup_type("void").pointer().sizeof
        return [BY_SIZE.sub(r"\1" if size == 4 else r"\2", line) for line in lines]


def read_expectations(path):
    result = []
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            match = MARK.match(line)
            if match is None:
                continue
            if match.group(1) == ">":
                result.append(Expectation(number, match.group(2)))
            else:
                result[-1].answers[match.group(1)].append(match.group(2))
    return result


def read_page(path):
    result = []
    is_shown = False
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file.read().splitlines(), 1):
            if line.startswith(FENCE):
                is_shown = line == FENCE + "gdb"
            elif is_shown and line.startswith(PROMPT):
                result.append(Expectation(number, line[len(PROMPT):]))
            elif is_shown:
                result[-1].answers["="].append(HISTORY.sub("", line))
    return result


def ask(command):
    """The lines that gdb answers."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "file")
        try:
            answer = gdb.execute(command.replace("FILE", path), to_string=True)
        except gdb.error as error:
            answer = f"{error}\n"
        if os.path.exists(path):
            with open(path, encoding="utf-8") as file:
                answer += file.read()
    lines = [HISTORY.sub("", line) for line in answer.splitlines()]
    return [ADDRESS.sub(hide, line) for line in lines]


def hide(match):
    return match.group() if match.group() in KNOWN_ADDRESSES else "ADDRESS"


def check(path, is_stripped):
    """Returns how many expectations there are, and how many are not met."""
    tried = wrong = 0
    read = read_page if path.endswith(".md") else read_expectations
    for each in read(path):
        if is_stripped and not each.command.startswith("lv "):
            continue
        tried += 1
        wanted, answered = each.answer(is_stripped), ask(each.command)
        if wanted != answered:
            wrong += 1
            print(f"{path}:{each.number}: {each.command}")
            print("\n".join("  expected: " + line for line in wanted))
            print("\n".join("  answered: " + line for line in answered))
    return tried, wrong


def main(path, is_stripped):
    """Ends gdb, with status 1 when an expectation is not met."""
    tried, wrong = check(path, is_stripped)
    print(f"{tried - wrong} as expected, {wrong} not")
    gdb.execute(f"quit {1 if wrong or not tried else 0}")
