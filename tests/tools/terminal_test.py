"""What lvtext says on a terminal while it reads a long text.

    terminal_test.py LVTEXT
"""

import os
import pty
import subprocess
import sys
import tempfile
import unittest

LVTEXT = sys.argv[1]
LONG = 10 * 1000 * 1000


def on_terminal(text, *arguments):
    """What comes on standard error, which is a terminal, while the text is read."""
    with tempfile.NamedTemporaryFile("w") as file:
        file.write(text)
        file.flush()
        ours, theirs = pty.openpty()
        program = subprocess.Popen([LVTEXT, *arguments, file.name], stdout=subprocess.DEVNULL,
                                   stderr=theirs)
        os.close(theirs)
        said = b""
        try:
            while block := os.read(ours, 4096):
                said += block
        except OSError:  # It has ended, and nobody else has the terminal.
            pass
        os.close(ours)
        assert program.wait() == 0
        return said.decode()


class Progress(unittest.TestCase):
    def test_is_told_of_a_long_text(self):
        said = on_terminal('{1,"' + LONG // 10 * "0123456789" + '"},' + 10 * "1," + "1", "check")
        self.assertIn("\rlvtext: 99 %", said)
        self.assertTrue(said.endswith(" \r"), said)

    def test_is_told_of_long_json(self):
        said = on_terminal('["' + LONG // 10 * "0123456789" + '", 1]', "from-json")
        self.assertIn("\rlvtext: 99 %", said)

    def test_is_not_told_of_a_short_text(self):
        self.assertEqual(on_terminal('"' + (LONG - 2) * "0" + '"', "check"), "")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
