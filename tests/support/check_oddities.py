"""Checks that the page of oddities is complete.

usage: check_oddities.py PAGE HEADERS TESTS

The page must name each test below TESTS of a suite that ends in "Oddities". Its last table must have a row
for each mark in the headers below HEADERS, "Deliberate: ...": the header, the mark up to its first pause,
and tests of such suites; and no other rows. Says what does not fit; the exit status is 0 when there is no
such thing.
"""

import glob
import os
import re
import sys

TEST = re.compile(r"\bTEST\w*\((\w+Oddities),\s*(\w+)\)")
NAMED = re.compile(r"`(\w+Oddities\.\w+)`")
MARK = re.compile(r"\b[Dd]eliberate: (.+?)(?=[,;:.](?: |$)|$)", re.MULTILINE)
ROW = re.compile(r"^\| `(\w+/\w+\.h)` \| (.+?) \| (.*) \|$", re.MULTILINE)


def read_text(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def find_tests(folder):
    found = set()
    for path in glob.glob(os.path.join(folder, "**", "*Test.cpp"), recursive=True):
        found.update(".".join(names) for names in TEST.findall(read_text(path)))
    return found


def find_marks(folder):
    """Pairs of a header and what a mark in it says."""
    found = []
    for path in glob.glob(os.path.join(folder, "**", "*.h"), recursive=True):
        # A comment in several lines as one.
        text = re.sub(r"[ ]*\n *//[ ]+", " ", read_text(path))
        found += [(os.path.relpath(path, folder), mark) for mark in MARK.findall(text)]
    return found


def main(page_path, headers, tests):
    page = read_text(page_path)
    existing = find_tests(tests)
    marks = find_marks(headers)
    rows = ROW.findall(page)
    listed = [(header, mark) for header, mark, _ in rows]
    faults = [f"there is no row for the test {name}"
              for name in sorted(existing - set(NAMED.findall(page)))]
    faults += [f"there is no row for {header}: {mark}" for header, mark in marks
               if listed.count((header, mark)) != marks.count((header, mark))]
    faults += [f"{header} has no mark: {mark}" for header, mark in listed
               if (header, mark) not in marks]
    faults += [f"no test of an oddity stands behind {header}: {mark}" for header, mark, named in rows
               if not set(NAMED.findall(named)) & existing]
    for fault in faults:
        print(f"{page_path}: {fault}", file=sys.stderr)
    print(f"{len(existing)} tests and {len(marks)} marks, {len(faults)} faults")
    return 1 if faults or not existing or not marks else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
