"""Tests what scripts/abi makes the symbols file of the Debian package from."""

import os
import pathlib
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts" / "lib"))
import symbols  # pylint: disable=wrong-import-position

HEAD = "libx.so.1 libx1 #MINVER#\n* Build-Depends-Package: libx-dev\n"


class Names(unittest.TestCase):
    def test_of_all_architectures_have_no_tag(self):
        self.assertEqual(symbols.tagged({"armhf": {"f@@X_1"}, "amd64": {"f@@X_1"}}), ["f@X_1"])

    def test_of_some_architectures_are_tagged_with_these(self):
        self.assertEqual(
            symbols.tagged({"i386": {"f@@X_1"}, "armhf": {"f@@X_1"}, "amd64": {"g@@X_1"}}),
            ["(arch=armhf i386)f@X_1", "(arch=amd64)g@X_1"])

    def test_of_nodes_are_listed_too(self):
        self.assertEqual(symbols.tagged({"armhf": {"X_1"}, "amd64": {"X_1"}}), ["X_1@X_1"])


class Renewing(unittest.TestCase):
    def test_notes_new_names_as_of_the_release_and_leaves_the_others(self):
        self.assertEqual(
            symbols.renewed(HEAD + " a@X_1 1.0.0\n c@X_1 1.1.0\n", ["a@X_1", "b@X_1", "c@X_1"], "1.2.0"),
            HEAD + " a@X_1 1.0.0\n b@X_1 1.2.0\n c@X_1 1.1.0\n")

    def test_drops_names_that_are_gone(self):
        self.assertEqual(symbols.renewed(HEAD + " a@X_1 1.0.0\n b@X_1 1.0.0\n", ["b@X_1"], "1.0.1"),
                         HEAD + " b@X_1 1.0.0\n")

    def test_takes_a_name_for_new_where_other_architectures_have_it_now(self):
        self.assertEqual(symbols.renewed(HEAD + " (arch=armhf)a@X_1 1.0.0\n", ["a@X_1"], "1.1.0"),
                         HEAD + " a@X_1 1.1.0\n")

    def test_refuses_new_names_in_a_patch_release(self):
        with self.assertRaisesRegex(symbols.Wrong, "new in 1.0.1, a patch release: b@X_1"):
            symbols.renewed(HEAD + " a@X_1 1.0.0\n", ["a@X_1", "b@X_1"], "1.0.1")


class ThePackage(unittest.TestCase):
    def test_lists_each_name_that_is_kept(self):
        os.chdir(ROOT)
        text = (ROOT / "debian" / "libtarselvalues-mt1.symbols").read_text()
        self.assertEqual([name for name, _ in symbols.LINE.findall(text)],
                         symbols.tagged(symbols.read_exported()))


if __name__ == "__main__":
    unittest.main()
