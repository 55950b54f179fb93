"""Bash completes the verbs and options that lvtext has, and no others.

    completion_test.py COMPLETION LVTEXT...

LVTEXT is the command that runs the program.
"""

import re
import subprocess
import sys
import unittest

COMPLETION, *LVTEXT = sys.argv[1:]


def complete(*words):
    """What bash offers in place of the last word."""
    script = ('. "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _lvtext; '
              'printf "%s\\n" "${COMPREPLY[@]}"')
    run = subprocess.run(["bash", "-euc", script, "bash", COMPLETION, "lvtext", *words],
                         capture_output=True, text=True, check=True)
    return sorted(run.stdout.split())


def help_of(*verb):
    return subprocess.run([*LVTEXT, *verb, "--help"], capture_output=True, text=True,
                          check=True).stdout


def options_in(text):
    return sorted(set(re.findall(r"^  (?:-h,)?(--[a-z-]+)", text, re.MULTILINE)))


def verbs():
    return re.findall(r"^  ([a-z][a-z-]*) ", help_of().split("Subcommands:")[1], re.MULTILINE)


class Completion(unittest.TestCase):
    def test_offers_the_verbs(self):
        self.assertGreater(len(verbs()), 1)
        self.assertEqual(complete(""), sorted(verbs() + options_in(help_of())))
        self.assertEqual(complete("fo"), ["format"])

    def test_offers_the_options_of_each_verb(self):
        for verb in verbs():
            with self.subTest(verb):
                self.assertEqual(complete(verb, "-"), options_in(help_of(verb)))
        self.assertEqual(complete("format", "--so"), ["--sort"])

    def test_leaves_files_to_bash(self):
        self.assertEqual(complete("print", ""), [])
        self.assertEqual(complete("print", "file"), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
