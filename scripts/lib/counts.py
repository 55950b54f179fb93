"""Counts the instructions of each work of bench/counts, and compares them with the kept counts.

usage: counts.py PROGRAM PLUGIN KEPT [--update]

PROGRAM is CountedWorks for 32-bit ARM, PLUGIN the counter for the emulator, KEPT is
bench/instructions.txt. A count above the kept one by more than the limit, a work that is not kept,
and a kept one that is no more make the exit status 1. With --update the counts are kept instead of
compared. Where the tools are not those of the kept counts, nothing can be compared: the counts are
printed, and the exit status is 0.

The last line but for that is "N as kept, N not".
"""

import concurrent.futures
import os
import re
import subprocess
import sys

LIMIT = 3.0  # per cent, more or less

SYSROOT = "/usr/arm-linux-gnueabihf"
COMPILER = "arm-linux-gnueabihf-g++"
# One processor for good: the C library chooses its string functions by what the processor can do.
# The seed is that of the random bytes that the kernel gives a program.
EMULATOR = ["qemu-arm", "-L", SYSROOT, "-cpu", "cortex-a15", "-seed", "1"]
TIMEOUT = 120  # seconds, for a run that takes a few

TOOLS = "# made with: "
HEAD = """\
# Instructions of one repetition of each work of bench/counts on 32-bit ARM. scripts/check fails when
# one takes over %g %% more. To renew this file: scripts/counts --update
%s%s
"""

# What is said of a work.
AS_KEPT = ""
BETTER = "better"
WORSE = "WORSE"
NOT_KEPT = "NOT KEPT"
NOT_COUNTED = "NO MORE A WORK"
WRONG = (WORSE, NOT_KEPT, NOT_COUNTED)

ROW = "%-40s %14s %14s %9s"


class Counts:
    """How many instructions each work takes, by name, and what compiled and ran them."""

    def __init__(self, tools, works):
        self.tools = tools
        self.works = works

    @classmethod
    def parse(cls, text):
        lines = text.splitlines()
        tools = [line[len(TOOLS):] for line in lines if line.startswith(TOOLS)]
        works = dict(line.split() for line in lines if line and not line.startswith("#"))
        return cls("".join(tools), {name: float(count) for name, count in works.items()})

    def __str__(self):
        lines = ["%-40s %14.1f\n" % work for work in self.works.items()]
        return HEAD % (LIMIT, TOOLS, self.tools) + "".join(lines)


def judge(before, now):
    if before is None:
        return NOT_KEPT
    if now is None:
        return NOT_COUNTED
    if now > before * (1 + LIMIT / 100):
        return WORSE
    if now < before * (1 - LIMIT / 100):
        return BETTER
    return AS_KEPT


def row(name, before, now, verdict):
    def number(count):
        return "-" if count is None else "%.1f" % count

    change = "%+.1f %%" % (100 * (now / before - 1)) if before and now else ""
    line = ROW % (name, number(before), number(now), change) + "  " + verdict
    return line.rstrip()


def compare(kept, counts):
    """Returns the text of a comparison, and the exit status."""
    names = list(counts.works) + [name for name in kept.works if name not in counts.works]
    verdicts = {name: judge(kept.works.get(name), counts.works.get(name)) for name in names}
    better = [name for name in names if verdicts[name] == BETTER]
    wrong = [name for name in names if verdicts[name] in WRONG]

    lines = [ROW % ("instructions", "kept", "now", "change")]
    lines += [row(name, kept.works.get(name), counts.works.get(name), verdicts[name])
              for name in names]
    lines.append("")
    if kept.tools != counts.tools:
        lines += ["Not compared, because other tools make other counts.",
                  "  kept: " + kept.tools,
                  "  here: " + counts.tools]
        return "\n".join(lines), 0
    if better:
        lines.append("Better by over %g %%; scripts/counts --update keeps that: %s"
                     % (LIMIT, ", ".join(better)))
    if wrong:
        lines.append("Worse by over %g %%, or not in both lists: %s" % (LIMIT, ", ".join(wrong)))
        lines.append("If it must be so, scripts/counts --update keeps it.")
    lines.append("%d as kept, %d not" % (len(names) - len(wrong), len(wrong)))
    return "\n".join(lines), 1 if wrong else 0


def output_of(command):
    """Runs a command in an empty environment, so that nothing there makes a difference."""
    done = subprocess.run(command, env={}, timeout=TIMEOUT, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False)
    if done.returncode != 0:
        sys.exit("%s: status %d\n%s" % (" ".join(command), done.returncode, done.stdout))
    return done.stdout


def tools():
    """Names the compiler, the C library and the emulator, as far as counts depend on them."""
    compiler = output_of([COMPILER, "--version"]).splitlines()[0]
    library = output_of(EMULATOR + [SYSROOT + "/lib/libc.so.6"]).splitlines()[0]
    emulator = re.match(r"qemu-arm version \d+\.\d+", output_of(["qemu-arm", "--version"])).group()
    return "; ".join([compiler, library, emulator])


def instructions(program, plugin, name, rounds):
    plugged = EMULATOR + ["-plugin", plugin, "-d", "plugin", program, name, str(rounds)]
    return int(re.search(r"^instructions: (\d+)$", output_of(plugged), re.MULTILINE).group(1))


def count(program, plugin):
    """Counts each work. The second round takes what the work itself takes: all else is the same."""
    works = [line.split() for line in output_of(EMULATOR + [program]).splitlines()]

    def one(work):
        name, repetitions = work
        first, both = [instructions(program, plugin, name, rounds) for rounds in (1, 2)]
        return name, round((both - first) / int(repetitions), 1)

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as executor:
        return Counts(tools(), dict(executor.map(one, works)))


def main():
    program, plugin, path = sys.argv[1:4]
    counts = count(program, plugin)
    if sys.argv[4:] == ["--update"]:
        with open(path, "w", encoding="utf-8") as file:
            file.write(str(counts))
        print("%d counts are kept in %s" % (len(counts.works), path))
        return 0
    with open(path, encoding="utf-8") as file:
        text, status = compare(Counts.parse(file.read()), counts)
    print(text)
    return status


if __name__ == "__main__":
    sys.exit(main())
