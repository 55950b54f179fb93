"""Checks that the links of Markdown pages lead somewhere.

usage: check_links.py FOLDER

Looks at all pages (*.md) in the folder, but for what is built there. A link to another place of the folder must
lead to a file or folder within it, and a link to a part of a page to a heading there. Links to other sites
are not followed. Says what does not; the exit status is 0 when there is no such thing. The last line says
how many links were checked.
"""

import os
import re
import sys

LINK = re.compile(r"\[[^\]]*\]\(([^()\s]+)\)|^\[[^\]]+\]: (\S+)$", re.MULTILINE)
BLOCK = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"`[^`\n]*`")
HEADING = re.compile(r"^#+ (.*)$", re.MULTILINE)
SITE = re.compile(r"[a-z]+:")
PASSED_OVER = ("build", "debian", ".git")


def read_text(path):
    """A page without its blocks."""
    with open(path, encoding="utf-8") as file:
        return BLOCK.sub("", file.read())


def anchors(path):
    """What a link to a part of the page may say: its headings in lower case, without punctuation."""
    headings = HEADING.findall(read_text(path))
    plain = (re.sub(r"[^\w\- ]", "", heading).strip() for heading in headings)
    return [heading.lower().replace(" ", "-") for heading in plain]


def judge(root, page, link):
    """What is wrong with a link of the page, or nothing."""
    name, _, anchor = link.partition("#")
    target = os.path.normpath(os.path.join(os.path.dirname(page), name)) if name else page
    if os.path.relpath(target, root).startswith(os.pardir):
        return "leads out of the folder"
    if not os.path.exists(target):
        return "leads nowhere"
    if anchor and (not target.endswith(".md") or anchor not in anchors(target)):
        return "leads to no heading"
    return None


def find_pages(root):
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(set(folders) - set(PASSED_OVER))
        yield from (os.path.join(folder, name) for name in sorted(names) if name.endswith(".md"))


def main(root):
    root = os.path.abspath(root)
    checked = faults = 0
    for page in find_pages(root):
        text = CODE.sub("", read_text(page))
        for link in (inline or reference for inline, reference in LINK.findall(text)):
            if SITE.match(link):
                continue
            checked += 1
            reason = judge(root, page, link)
            if reason:
                faults += 1
                print(f"{os.path.relpath(page, root)}: {link} {reason}", file=sys.stderr)
    print(f"{checked} links checked, {faults} faults")
    return 1 if faults or not checked else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
