"""Judges what gcovr counted. Prints a table, what was not run, and exceptions that name nothing.

usage: coverage.py REPORT EXCEPTIONS

REPORT is gcovr's JSON. EXCEPTIONS is docs/coverage-exceptions.txt, whose head says how to read it.
The exit status is 0 when both thresholds are reached and each exception names a line of code.
"""

import fnmatch
import json
import sys

WANTED_LINES = 100.0  # per cent
WANTED_BRANCHES = 95.0

LINE = "line"
BRANCH = "branch"


class Excused:
    """An exception: the lines of the files that fit, as far as they contain its text."""

    def __init__(self, entry):
        self.entry = entry
        self.what, self.files, self.text, self.reason = entry.split(" | ", 3)
        if self.what not in (LINE, BRANCH) or not self.reason:
            raise ValueError("no exception: " + entry)
        self.names_a_line = False

    def fits(self, file, source):
        return fnmatch.fnmatchcase(file, self.files) and self.text in source

    def covers(self, what):
        return self.what in (what, LINE)  # A line that is not run takes no branch either.


class Count:
    """How many lines, or branches, there are and how many of them were run."""

    def __init__(self):
        self.all = 0
        self.run = 0

    def add(self, other):
        self.all += other.all
        self.run += other.run

    def percent(self):
        return 100.0 * self.run / self.all if self.all != 0 else 100.0

    def __str__(self):
        return "%5d of %4d %6.1f %%" % (self.run, self.all, self.percent())


def read_exceptions(path):
    with open(path, encoding="utf-8") as file:
        lines = [line.strip() for line in file]
    return [Excused(line) for line in lines if line and not line.startswith("#")]


def branches_of_ours(branches):
    """Without the two ways out of a call: on, which comes first, and by an exception.

    What a template becomes for one argument and for another is counted together, by the number of the
    branch: a way out may then have no way on before it.
    """
    ours = []
    for branch in branches:
        if branch["throw"]:
            del ours[-1:]
        else:
            ours.append(branch)
    return ours


def judge_line(line, excused, counts):
    """Adds a line and its branches to the counts. Returns which of the two were not run in full."""
    ways = branches_of_ours(line["branches"])
    found = {
        LINE: (1, min(line["count"], 1)),
        BRANCH: (len(ways), sum(way["count"] > 0 for way in ways)),
    }
    missing = []
    for what, (all_of_it, run) in found.items():
        if run < all_of_it and any(each.covers(what) for each in excused):
            all_of_it = run
        elif run < all_of_it:
            missing.append(what)
        counts[what].all += all_of_it
        counts[what].run += run
    return missing


def judge_file(file, exceptions):
    """Returns the counts of a file, and a text for each line that was not run in full."""
    name = file["file"]
    counts = {LINE: Count(), BRANCH: Count()}
    missing = []
    with open(name, encoding="utf-8") as source:
        texts = source.read().split("\n")
    for line in file["lines"]:
        if line["gcovr/noncode"]:
            continue
        number = line["line_number"]
        text = texts[number - 1].strip()
        excused = [each for each in exceptions if each.fits(name, text)]
        for each in excused:
            each.names_a_line = True
        for what in judge_line(line, excused, counts):
            missing.append("%s:%d: %s: %s" % (name, number, what, text))
    return counts, missing


def print_counts(name, counts):
    branches = counts[BRANCH] if counts[BRANCH].all != 0 else ""
    print(("%-52s %s   %s" % (name, counts[LINE], branches)).rstrip())


def main(report, exceptions_path):
    with open(report, encoding="utf-8") as file:
        files = json.load(file)["files"]
    exceptions = read_exceptions(exceptions_path)
    total = {LINE: Count(), BRANCH: Count()}
    remarks = []
    print("%-52s %-22s   %s" % ("", "lines run", "branches taken"))
    for file in sorted(files, key=lambda each: each["file"]):
        counts, missing = judge_file(file, exceptions)
        print_counts(file["file"], counts)
        for what, count in counts.items():
            total[what].add(count)
        remarks += missing
    print_counts("all", total)

    stale = ["names no line: " + each.entry for each in exceptions if not each.names_a_line]
    for remark in remarks + stale:
        print(remark)
    reached = (
        total[LINE].all != 0
        and total[LINE].percent() >= WANTED_LINES
        and total[BRANCH].percent() >= WANTED_BRANCHES
    )
    return 0 if reached and not stale else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
