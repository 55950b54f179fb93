"""Tests that the changes of scripts/abi-breaks fit the sources, which takes no building."""

import contextlib
import io
import os
import pathlib
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts" / "lib"))
import abi_breaks  # pylint: disable=wrong-import-position


class Changes(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        os.chdir(ROOT)
        cls.sources = abi_breaks.read_sources()

    def test_fit_the_sources(self):
        for name, (*_, edits) in abi_breaks.CHANGES.items():
            with self.subTest(name):
                changed = abi_breaks.changed(name, self.sources)
                for file, *_ in edits:
                    self.assertNotEqual(changed[file], self.sources[file])

    def test_tell_what_has_to_be_said_to_them(self):
        for name, (expected, because, _) in abi_breaks.CHANGES.items():
            self.assertEqual(because == "", expected == abi_breaks.SAME, name)

    def test_that_do_not_fit_are_reported(self):
        abi_breaks.CHANGES["misfit"] = (
            abi_breaks.REFUSED, "", [(abi_breaks.VERSION, "what no source has", "")])
        with self.assertRaisesRegex(SystemExit, "misfit: .* has 0 times, not once"):
            abi_breaks.changed("misfit", self.sources)
        del abi_breaks.CHANGES["misfit"]

    def test_leave_the_static_assertions_to_those_that_they_have_to_refuse(self):
        refused = abi_breaks.changed("fields-swapped", self.sources)
        uncompiled = abi_breaks.changed("token-renumbered", self.sources)
        for file in abi_breaks.ASSERTIONS:
            self.assertEqual(refused[file], "")
            self.assertEqual(uncompiled[file], self.sources[file])
            self.assertIn("static_assert", uncompiled[file])


class List(unittest.TestCase):
    def listed(self, *names):
        out = io.StringIO()
        with contextlib.redirect_stdout(out):
            abi_breaks.print_list(names)
        return [line.split()[0] for line in out.getvalue().splitlines()]

    def test_without_names_is_of_all_changes(self):
        self.assertEqual(self.listed(), list(abi_breaks.CHANGES))

    def test_begins_with_no_change(self):
        self.assertEqual(self.listed("soname-changed"), ["nothing", "soname-changed"])

    def test_refuses_names_of_no_change(self):
        with self.assertRaisesRegex(SystemExit, "no such change: other"):
            self.listed("soname-changed", "other")


if __name__ == "__main__":
    unittest.main()
