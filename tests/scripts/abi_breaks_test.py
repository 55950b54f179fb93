"""Tests that the changes of scripts/abi-breaks fit the sources, which takes no building."""

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
        for name, (_, edits) in abi_breaks.CHANGES.items():
            with self.subTest(name):
                changed = abi_breaks.changed(name, self.sources)
                for file, *_ in edits:
                    self.assertNotEqual(changed[file], self.sources[file])

    def test_that_do_not_fit_are_reported(self):
        abi_breaks.CHANGES["misfit"] = (
            abi_breaks.REFUSED, [(abi_breaks.VERSION, "what no source has", "")])
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


if __name__ == "__main__":
    unittest.main()
