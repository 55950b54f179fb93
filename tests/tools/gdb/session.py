"""Runs a program under gdb up to stopHere(), or --stop, and there a script.

usage: session.py --gdb GDB --library-path FOLDER --run PYTHON [options] PROGRAM

The program is run natively; with --emulator under that, to which gdb is connected; or not at all, if
--core names a core file. The library is the one in --library-path, whichever the program was linked
with. PYTHON, whose modules stand beside this file, ends gdb with an exit status, which is that of the
whole; what keeps gdb from running the program is a failure.
"""

import argparse
import os
import subprocess
import sys
import tempfile

FOLDER = os.path.dirname(os.path.abspath(__file__))
TIMEOUT = 100  # seconds


def parse_arguments():
    parser = argparse.ArgumentParser()
    parser.add_argument("--gdb", required=True)
    parser.add_argument("--library-path", required=True)
    parser.add_argument("--run", required=True)
    parser.add_argument("--emulator", help="with its options, separated by blanks")
    parser.add_argument("--core")
    parser.add_argument("--stop", default="stopHere", help="where the program is to stop")
    parser.add_argument("program")
    return parser.parse_args()


def commands_to_stop(options, socket):
    """What gdb does to have the program stand there."""
    if options.core:
        return [f"core-file {options.core}"]
    breakpoint_commands = ["set breakpoint pending off", f"break {options.stop}"]
    if options.emulator:
        sysroot = options.emulator.split()[-1]
        return [f"set sysroot {sysroot}", f"set solib-search-path {options.library_path}",
                *breakpoint_commands, f"target remote {socket}", "continue"]
    return ["set startup-with-shell off",
            f"set environment LD_LIBRARY_PATH {options.library_path}", *breakpoint_commands, "run"]


def run_gdb(options, socket):
    commands = commands_to_stop(options, socket)
    commands.append(f"python import sys; sys.path.insert(0, {FOLDER!r}); {options.run}")
    arguments = [options.gdb, "-q", "-batch", "-nx", "-ex", "set confirm off",
                 "-iex", f"add-auto-load-safe-path {options.library_path}",
                 "-iex", f"add-auto-load-safe-path {os.path.realpath(options.library_path)}"]
    for command in commands:
        arguments += ["-ex", command]
    environment = {**os.environ, "LC_ALL": "C.UTF-8", "PYTHONDONTWRITEBYTECODE": "1"}
    return subprocess.run([*arguments, options.program], env=environment, timeout=TIMEOUT,
                          stdin=subprocess.DEVNULL, check=False).returncode


def main():
    options = parse_arguments()
    with tempfile.TemporaryDirectory() as folder:
        socket = os.path.join(folder, "gdb")
        if not options.emulator:
            return run_gdb(options, socket)
        with subprocess.Popen([*options.emulator.split(), "-g", socket,
                               "-E", f"LD_LIBRARY_PATH={options.library_path}",
                               options.program]) as emulator:
            try:
                return run_gdb(options, socket)
            finally:
                emulator.kill()


sys.exit(main())
