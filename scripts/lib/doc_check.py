"""Checks in Doxygen's XML what Doxygen itself does not.

usage: doc_check.py FOLDER

Each function must say which threads may call it, in just one of the words, and each enumerator must be
documented. Names those that are not so; the exit status is 0 when there is none, and there are
functions at all.
"""

import os
import sys
from xml.etree import ElementTree

import doc_filter

TITLE = "Threads:"
PRIVATE = "private"


def members_in(folder):
    """The members that programs can use."""
    for name in sorted(os.listdir(folder)):
        if name.endswith(".xml") and name != "index.xml":
            for compound in ElementTree.parse(os.path.join(folder, name)).iter("compounddef"):
                if compound.get("prot") != PRIVATE:
                    yield from (member for member in compound.iter("memberdef")
                                if member.get("prot") != PRIVATE)


def name_of(member):
    name = member.findtext("qualifiedname") or member.findtext("name")
    return name + (member.findtext("argsstring") or "")


def threads_of(function):
    """What stands in a function's paragraphs on threads."""
    return ["".join(section.find("para").itertext()).strip()
            for section in function.iter("simplesect")
            if section.get("kind") == "par" and section.findtext("title") == TITLE]


def faults_of_function(function):
    words = threads_of(function)
    if len(words) != 1 or words[0] not in doc_filter.WORDS:
        yield (f"{name_of(function)} says {' and '.join(words) or 'nothing'} about threads, and "
               f"should say one of: {', '.join(doc_filter.WORDS)}")


def faults_of_enumeration(enumeration):
    for value in enumeration.iter("enumvalue"):
        if not "".join(value.find("briefdescription").itertext()).strip():
            yield f"{value.findtext('name')} is not documented"


FAULTS = {"function": faults_of_function, "enum": faults_of_enumeration}


def main():
    count = {kind: 0 for kind in FAULTS}
    faults = 0
    for member in members_in(sys.argv[1]):
        kind = member.get("kind")
        if kind in FAULTS:
            count[kind] += 1
            for fault in FAULTS[kind](member):
                faults += 1
                location = member.find("location")
                print(f"{location.get('file')}:{location.get('line')}: {fault}", file=sys.stderr)
    print(f"{count['function']} functions and {count['enum']} enumerations checked, {faults} faults")
    return 1 if faults or not count["function"] else 0


if __name__ == "__main__":
    sys.exit(main())
