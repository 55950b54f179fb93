"""How scripts/counts judges counts of instructions beside the kept ones."""

import os
import sys
import unittest

FOLDER = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(FOLDER, "..", "..", "scripts", "lib"))
import counts  # pylint: disable=wrong-import-position

TOOLS = "a compiler 12.2.0; a library 2.36; an emulator 7.2"


def kept(**works):
    return counts.Counts(TOOLS, works)


class ComparisonOfCounts(unittest.TestCase):
    def compare(self, before, now):
        self.text, self.status = counts.compare(before, now)

    def lines_of(self, name):
        return [line for line in self.text.splitlines() if line.startswith(name + " ")]

    def test_passes_what_is_as_kept(self):
        self.compare(kept(copy=100.0, read=5.5), kept(copy=100.0, read=5.5))
        self.assertEqual(self.status, 0)
        self.assertTrue(self.text.endswith("\n2 as kept, 0 not"))
        self.assertNotIn("--update", self.text)

    def test_fails_four_per_cent_more(self):
        self.compare(kept(copy=100.0, read=5.5), kept(copy=104.0, read=5.5))
        self.assertEqual(self.status, 1)
        self.assertIn("Worse by over 3 %, or not in both lists: copy\n", self.text)
        self.assertTrue(self.text.endswith("\n1 as kept, 1 not"))

    def test_passes_two_per_cent_more(self):
        self.compare(kept(copy=100.0), kept(copy=102.0))
        self.assertEqual(self.status, 0)
        self.assertTrue(self.text.endswith("\n1 as kept, 0 not"))

    def test_asks_to_keep_four_per_cent_less_and_passes(self):
        self.compare(kept(copy=100.0), kept(copy=96.0))
        self.assertEqual(self.status, 0)
        self.assertIn("Better by over 3 %; scripts/counts --update keeps that: copy\n", self.text)
        self.assertTrue(self.text.endswith("\n1 as kept, 0 not"))

    def test_asks_for_nothing_at_two_per_cent_less(self):
        self.compare(kept(copy=100.0), kept(copy=98.0))
        self.assertEqual(self.status, 0)
        self.assertNotIn("--update", self.text)

    def test_shows_both_counts_and_the_change(self):
        self.compare(kept(copy=100.0), kept(copy=104.0))
        (line,) = self.lines_of("copy")
        self.assertEqual(line.split(), ["copy", "100.0", "104.0", "+4.0", "%", "WORSE"])

    def test_fails_a_kept_work_that_was_not_counted(self):
        self.compare(kept(copy=100.0, read=5.5), kept(copy=100.0))
        self.assertEqual(self.status, 1)
        (line,) = self.lines_of("read")
        self.assertIn("NO MORE A WORK", line)
        self.assertTrue(self.text.endswith("\n1 as kept, 1 not"))

    def test_fails_a_work_that_is_not_kept(self):
        self.compare(kept(copy=100.0), kept(copy=100.0, read=5.5))
        self.assertEqual(self.status, 1)
        (line,) = self.lines_of("read")
        self.assertIn("NOT KEPT", line)
        self.assertTrue(self.text.endswith("\n1 as kept, 1 not"))

    def test_is_not_made_between_different_tools(self):
        self.compare(kept(copy=100.0), counts.Counts("a compiler 13.1.0", {"copy": 200.0}))
        self.assertEqual(self.status, 0)
        self.assertIn("Not compared", self.text)
        self.assertIn("kept: " + TOOLS, self.text)
        self.assertIn("here: a compiler 13.1.0", self.text)
        self.assertNotIn("as kept", self.text)
        self.assertEqual(self.lines_of("copy")[0].split()[1:3], ["100.0", "200.0"])


class KeptCounts(unittest.TestCase):
    def test_are_read_as_they_were_written(self):
        written = kept(copy=100.0, read=3832779.5)
        read = counts.Counts.parse(str(written))
        self.assertEqual(read.tools, written.tools)
        self.assertEqual(read.works, written.works)

    def test_say_how_they_are_renewed(self):
        self.assertIn("# one takes over 3 % more. To renew this file: scripts/counts --update\n",
                      str(kept(copy=100.0)))


class WorkThatFails(unittest.TestCase):
    def test_ends_the_count(self):
        with self.assertRaisesRegex(SystemExit, "status 3\nwhy"):
            counts.output_of(["sh", "-c", "echo why; exit 3"])


if __name__ == "__main__":
    unittest.main()
