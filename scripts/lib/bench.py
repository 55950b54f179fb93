"""Makes tables of what the benchmarks measured, and compares them with the goals.

usage: bench.py RESULTS GOALS [--update PAGE NAME]

RESULTS is a folder of Google Benchmark's JSON files, one for each program, named after it. What is
in NAME-second-thread.json was measured with a second thread in the process. GOALS is
bench/goals.toml. With --update the tables are also put into the page, between its lines
<!-- NAME: begin --> and <!-- NAME: end -->.
"""

import collections
import json
import pathlib
import re
import statistics
import sys
import tomllib

OURS = "ours"
FLOOR = "floor: "
SECOND_THREAD = "-second-thread"
UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
NO_SUCH = object()  # For what a goal compares with and a row does not have.

# One row: a work at a size, with the time, in nanoseconds, of everyone who did it, or why not.
Row = collections.namedtuple("Row", "work size times")

# What a goal says about a row.
Result = collections.namedtuple("Result", "row wanted ratio met because")


# ---- Reading ------------------------------------------------------------------------------------


def read_json(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def read_rows(path):
    """Returns the rows of one file: works as the program has them, each from its least size on."""
    runs = read_json(path)["benchmarks"]
    samples = collections.OrderedDict()
    for run in sorted(runs, key=lambda each: each["family_index"]):
        if run["run_type"] != "iteration":
            continue
        work, who, *size = run["name"].split("/")
        if path.stem.endswith(SECOND_THREAD):
            work += ", with a second thread"
        key = (work, int(size[0]) if size else None)
        times = samples.setdefault(key, {}).setdefault(who, [])
        if run.get("error_occurred"):
            times.append(run["error_message"])
        else:
            times.append(run["cpu_time"] * UNITS[run["time_unit"]] / run.get("times", 1))
    works = list(dict.fromkeys(work for work, _ in samples))
    return [
        Row(work, size, {who: judge_samples(times) for who, times in samples[work, size].items()})
        for work, size in sorted(samples, key=lambda key: (works.index(key[0]), key[1] or 0))
    ]


def judge_samples(times):
    errors = [time for time in times if isinstance(time, str)]
    return errors[0] if errors else statistics.median(times)


def files_of(folder):
    return sorted(folder.glob("*.json"), key=lambda each: each.stem)


def read_tables(folder):
    """Returns a list of rows for each program, with and without a second thread."""
    tables = collections.OrderedDict()
    for path in files_of(folder):
        name = path.stem.removesuffix(SECOND_THREAD).removesuffix("Bench")
        tables.setdefault(name, []).extend(read_rows(path))
    return tables


def read_date(folder):
    return max(read_json(path)["context"]["date"][:10] for path in files_of(folder))


# ---- Judging ------------------------------------------------------------------------------------


def time_of(row, who):
    time = row.times.get(who)
    return time if isinstance(time, float) else None


def is_peer(who):
    return who != OURS and not who.startswith(FLOOR)


def has_peers(row):
    return any(is_peer(who) for who in row.times)


def best_peer(row):
    times = [time_of(row, who) for who in row.times if is_peer(who)]
    return min((time for time in times if time is not None), default=None)


def measure_of(goal, row, sizes):
    """Returns the time that a goal compares ours with, None if it was not measured, or NO_SUCH.

    `sizes` has the rows of the same work.
    """
    of = goal["of"]
    if of == "best peer":
        return best_peer(row) if has_peers(row) else NO_SUCH
    if of == "half the size" or of.startswith("size "):
        size = row.size // 2 if of == "half the size" else int(of.removeprefix("size "))
        return time_of(sizes[size], OURS) if size in sizes else NO_SUCH
    return time_of(row, of) if of in row.times else NO_SUCH


def results_of(row, sizes, goals):
    """Returns what the goals say about a row."""
    results = []
    for goal in goals:
        if not re.fullmatch(goal["works"], row.work) or goal.get("size", row.size) != row.size:
            continue
        measure = measure_of(goal, row, sizes)
        if measure is NO_SUCH:
            continue
        ours = time_of(row, OURS)
        ratio = ours / measure if ours is not None and measure is not None else None
        wanted = "%g of %s" % (goal["at_most"], goal["of"].removeprefix(FLOOR))
        met = ratio is not None and ratio <= goal["at_most"]
        results.append(Result(row, wanted, ratio, met, goal.get("because", "")))
    return results


# ---- Printing -----------------------------------------------------------------------------------


def show_time(time):
    if time is None:
        return ""
    if isinstance(time, str):
        return time
    for unit in ("s", "ms", "us"):
        if time >= UNITS[unit]:
            return "%.3g %s" % (time / UNITS[unit], unit)
    return "%.3g ns" % time


def show_ratio(ratio):
    return "" if ratio is None else "%.2f" % ratio if ratio < 9.995 else "%.0f" % ratio


def show_floors(row):
    floors = [who for who in row.times if who.startswith(FLOOR)]
    return "; ".join(
        "%s (%s)" % (show_time(row.times[who]), who.removeprefix(FLOOR)) for who in floors
    )


def show_verdict(results):
    wanted = "; ".join(result.wanted for result in results)
    ratios = "; ".join(show_ratio(result.ratio) or "-" for result in results)
    missed = [result for result in results if not result.met]
    met = "" if not results else "no" if missed else "yes"
    because = "; ".join(sorted({result.because for result in missed if result.because}))
    return [wanted, ratios, met + (": " + because if because else "")]


def cells_of(row, peers, sized, results):
    ours = time_of(row, OURS)
    peer = best_peer(row)
    return (
        [row.work]
        + (["{:,}".format(row.size) if row.size is not None else ""] if sized else [])
        + [show_time(row.times.get(who)) for who in [OURS] + peers]
        + [show_floors(row), show_ratio(ours / peer if ours and peer else None)]
        + show_verdict(results)
    )


def table_of(rows, goals):
    """Returns the lines of a table, and what the goals say about its rows."""
    peers = list(dict.fromkeys(who for row in rows for who in row.times))
    peers = [who for who in peers if is_peer(who)]
    sized = any(row.size is not None for row in rows)
    head = ["work"] + (["size"] if sized else []) + [OURS] + peers
    lines = [head + ["floor", "ours / best peer", "goal: at most", "is", "met"]]
    all_results = []
    for row in rows:
        sizes = {each.size: each for each in rows if each.work == row.work}
        results = results_of(row, sizes, goals)
        all_results += results
        lines.append(cells_of(row, peers, sized, results))
    used = [i for i in range(len(lines[0])) if any(line[i] for line in lines[1:])]
    lines = [[line[i] for i in used] for line in lines]
    widths = [max(len(line[i]) for line in lines) for i in range(len(used))]
    lines.insert(1, ["-" * width for width in widths])
    padded = [" | ".join(cell.ljust(width) for cell, width in zip(line, widths)) for line in lines]
    return ["| " + line + " |" for line in padded], all_results


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        models = re.findall(r"^model name\s*: (.*)$", file.read(), re.MULTILINE)
    return "%s, %d cores" % (models[0], len(models)) if models else "unknown machine"


def show_missed(result):
    row = result.row
    size = ", size {:,}".format(row.size) if row.size is not None else ""
    ratio = show_ratio(result.ratio) or "not measured"
    return "- %s%s: %s, at most %s" % (row.work, size, ratio, result.wanted)


def page_of(date, tables, goals):
    lines = ["%s, %s." % (date, machine())]
    everything = []
    for name, rows in tables.items():
        table, results = table_of(rows, goals)
        everything += results
        lines += ["", "### " + name, ""] + table
    missed = [result for result in everything if not result.met]
    lines += ["", "%d of %d goals are met." % (len(everything) - len(missed), len(everything))]
    if missed:
        lines += ["", "Not met:", ""] + [show_missed(result) for result in missed]
    return lines


def update(page, name, lines):
    path = pathlib.Path(page)
    begin, end = "<!-- %s: begin -->" % name, "<!-- %s: end -->" % name
    before, found, rest = path.read_text(encoding="utf-8").partition(begin)
    _, found_too, after = rest.partition(end)
    if not found or not found_too:
        raise ValueError("%s has no lines %s and %s" % (page, begin, end))
    path.write_text("\n".join([before + begin, *lines, end]) + after, encoding="utf-8")


def main(results, goals_path, *options):
    with open(goals_path, "rb") as file:
        goals = tomllib.load(file)["goal"]
    folder = pathlib.Path(results)
    lines = page_of(read_date(folder), read_tables(folder), goals)
    print("\n".join(lines))
    if options:
        update(options[1], options[2], lines)


if __name__ == "__main__":
    main(*sys.argv[1:])
