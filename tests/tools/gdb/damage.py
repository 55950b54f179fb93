"""Runs in gdb, where the program of values.cpp stands still: damages its memory at random and has all
values shown. Whatever is there, every command must answer, and no Python error may come through.

usage, in gdb: python import damage; damage.main()
"""

import random
import time

import gdb
from tarselvalues_gdb import limits, printers, survey

VALUES = ("list", "hashMap", "tupleSet", "linked", "sorted", "stack", "point", "derived", "gauge",
          "ports", "described", "classes", "circle", "wheel", "twice", "crowded", "interned", "plain",
          "writer", "parser", "describedHigher", "higher", "ownBase", "lostClass", "deep", "loopedMap",
          "loopedList", "endlessList", "hugeSet", "hugeList")
COMMANDS = [command.format(name) for name in VALUES
            for command in ("print {}", "lv print &{}", "lv stats &{}", "lv graph &{} /dev/null")]
ROUNDS = 40
COMMANDS_A_ROUND = 8
MOST_SECONDS = 20  # for one command; it takes milliseconds
SEED = 1

# What the printers end loops by, so that these take no time.
LIMITS = {"PARTS": 500, "VALUES": 1000, "BUCKETS": 5000, "TEXT": 5000}


def read_pointer(address):
    size = gdb.lookup_type("void").pointer().sizeof
    return int.from_bytes(bytes(gdb.selected_inferior().read_memory(address, size)), "little")


def places():
    """Where the values lie, their objects, and what these point to: (address, size)."""
    found = set()
    for name in VALUES:
        value = gdb.parse_and_eval(name)
        found.add((int(value.address), value.type.sizeof))
        for visit in survey.Walk(printers.read(value), limits.VALUES):
            if getattr(visit.value, "address", None):
                found.add((visit.value.address, 64))
    for address, _ in list(found):
        for offset in range(0, 64, 4):
            try:
                target = read_pointer(address + offset)
                gdb.selected_inferior().read_memory(target, 64)
                found.add((target, 64))
            except (gdb.error, OverflowError):
                pass
    return sorted(found)


def damage(spots):
    """Overwrites something; returns what undoes it, or None where it cannot be written."""
    inferior = gdb.selected_inferior()
    start, size = random.choice(spots)
    word = gdb.lookup_type("void").pointer().sizeof
    address = start + random.randrange(size) // 4 * 4
    content = random.choice((
        random.randbytes(word), random.randbytes(1), bytes(word), b"\xFF" * word, b"\xFF\xFF",
        b"\xFF\xFF\xFF\x7F", random.choice(spots)[0].to_bytes(word, "little"),
        random.choice(spots)[0].to_bytes(word, "little")))
    try:
        old = bytes(inferior.read_memory(address, len(content)))
        inferior.write_memory(address, content)
        return address, old
    except gdb.error:
        return None


def ask(command):
    """What is wrong with the answer, or None."""
    start = time.monotonic()
    try:
        answer = gdb.execute(command, to_string=True)
    except gdb.error as error:
        return f"{command}: {error}"
    if "Python" in answer or not answer and "graph" not in command:
        return f"{command}: {answer}"
    return f"{command}: too slow" if time.monotonic() - start > MOST_SECONDS else None


def main():
    """Ends gdb, with status 1 when anything is wrong."""
    random.seed(SEED)
    for name, limit in LIMITS.items():
        setattr(limits, name, limit)
    gdb.execute("set print elements unlimited")
    gdb.execute("set print max-depth unlimited")
    spots = places()
    wrong = changed = 0
    for _ in range(ROUNDS):
        undo = [each for each in (damage(spots) for _ in range(random.choice((1, 2, 5)))) if each]
        changed += len(undo)
        for command in random.sample(COMMANDS, COMMANDS_A_ROUND) + ["lv strings"]:
            fault = ask(command)
            if fault:
                wrong += 1
                print(fault)
        for address, old in reversed(undo):
            gdb.selected_inferior().write_memory(address, old)
    print(f"{ROUNDS} rounds, {changed} changes, {wrong} wrong answers")
    gdb.execute(f"quit {1 if wrong or changed < ROUNDS else 0}")
