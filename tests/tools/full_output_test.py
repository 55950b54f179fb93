"""What lvtext says when its standard output takes nothing: the disk is full, or it is closed.

    full_output_test.py LVTEXT
"""

import subprocess
import sys
import unittest

LVTEXT = sys.argv[1]
RUNS = [["--help"], ["format", "--help"], ["check"], ["print"], ["format"], ["to-json"], ["from-json"],
        ["graph"], ["diff", "-", "/dev/null"], ["stats"]]
TEXTS = {"check": "1 2", "from-json": "[1]"}  # For check, a text that there is something to tell of.


class FullOutput(unittest.TestCase):
    def check(self, redirection, reason):
        for arguments in RUNS:
            with self.subTest(arguments):
                command = ["sh", "-c", f'exec "$0" "$@" {redirection}', LVTEXT, *arguments]
                ended = subprocess.run(command, input=TEXTS.get(arguments[0], "{1,2}"),
                                       capture_output=True, text=True, check=False)
                self.assertEqual(ended.stderr, f"lvtext: standard output: {reason}\n")
                self.assertEqual(ended.returncode, 2)

    def test_is_a_failure(self):
        self.check(">/dev/full", "No space left on device")

    def test_is_the_same_as_a_closed_one(self):
        self.check(">&-", "Bad file descriptor")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
