"""Does what a page tells its readers to do: runs the commands of some of its sections.

    journey.py PAGE SECTION...

A section is named by its heading and ends with the next one. Its blocks marked `sh` are run one after
another in the current folder. A block marked `text` is the end of what the commands before it print.
Ends with 1 at the first block that fails or prints something else.
"""

import re
import subprocess
import sys

BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
HEADING = re.compile(r"^#+ (.*)$")


class Wrong(Exception):
    """The page does not say what is so."""


def section(page, heading):
    """The text under the heading. What looks like a heading within a block is none."""
    lines = []
    inside = in_block = False
    for line in page.splitlines(keepends=True):
        found = None if in_block else HEADING.match(line)
        if found:
            inside = found.group(1) == heading
        elif inside:
            lines.append(line)
        if line.startswith("```"):
            in_block = not in_block
    if not lines:
        raise Wrong(f"no section '{heading}'")
    return "".join(lines)


def run(commands):
    """What the commands print; it is shown, too."""
    print("".join(f"$ {line}\n" for line in commands.splitlines()), end="", flush=True)
    done = subprocess.run(["bash", "-euo", "pipefail", "-c", commands], check=False,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
    print(done.stdout, end="", flush=True)
    if done.returncode != 0:
        raise Wrong(f"ended with {done.returncode}")
    return done.stdout


def go(text):
    """Runs the blocks of the text. Returns how many commands there were."""
    printed = None
    count = 0
    for kind, content in BLOCK.findall(text):
        if kind == "sh":
            printed = run(content)
            count += 1
        elif kind == "text":
            if printed is None or not printed.endswith(content):
                raise Wrong(f"should have printed\n{content}")
    return count


def main(arguments):
    with open(arguments[0], encoding="utf-8") as file:
        page = file.read()
    for heading in arguments[1:]:
        try:
            if go(section(page, heading)) == 0:
                raise Wrong("has no commands")
        except Wrong as wrong:
            print(f"{arguments[0]}: {heading}: {wrong}", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
