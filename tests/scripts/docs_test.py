"""Tests of the manual's filter and checks, on small headers.

usage: docs_test.py DOXYGEN DOXYFILE

DOXYFILE is the one that the manual of the library is made with.
"""

import contextlib
import functools
import io
import os
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "scripts", "lib"))

import doc_filter
import doc_check

TOY = """\
// lvToy: a toy.
//
//   word 0   what it is
//
// Threads: one thread at a time per toy.
#pragma once

#include "lvOther.h"

class lvToy {
 public:
  // What a toy is made of.
  enum Matter {
    Wood,   // from a tree
    Metal,  // from a mine
  };

  // Makes a toy.
  lvToy();

  // --- Playing ----------------------------------------------------------------------------------

  // Plays `count` times.
  int play(int count);
  int play(char const* name);

  // Returns a new toy. Any thread.
  static lvToy* make();

  // Returns its matter.
  Matter matter() const { return own; }

 private:
  int hidden();
  Matter own;
};
"""


class Manual:
    """What is made of the text of a header: Doxygen's status and complaints, and the check's."""

    def __init__(self, header):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "lvToy.h")
            with open(path, "w", encoding="utf-8") as file:
                file.write(header)
            with open(DOXYFILE, encoding="utf-8") as file:
                settings = file.read()
            settings += f'\nINPUT = "{path}"\nOUTPUT_DIRECTORY = "{folder}"\nGENERATE_HTML = NO\n'
            run = subprocess.run([DOXYGEN, "-"], input=settings, capture_output=True, text=True,
                                 check=False)
            self.status, self.complaints = run.returncode, run.stderr
            complaints = io.StringIO()
            with mock.patch.object(sys, "argv", ["", os.path.join(folder, "xml")]), \
                    contextlib.redirect_stderr(complaints), \
                    contextlib.redirect_stdout(io.StringIO()):
                self.check_status = doc_check.main()
            self.check_complaints = complaints.getvalue()
            with open(os.path.join(folder, "man", "man3", "lvToy.3"), encoding="utf-8") as file:
                self.page = file.read()


@functools.lru_cache
def manual_of_toy():
    return Manual(TOY)


def filtered(header):
    return doc_filter.Filter("lvToy.h", header.split("\n")).run()


class AManual(unittest.TestCase):
    def test_is_made_of_a_header_in_which_all_is_documented(self):
        manual = manual_of_toy()
        self.assertEqual((manual.status, manual.complaints), (0, ""))
        self.assertEqual((manual.check_status, manual.check_complaints), (0, ""))

    def test_shows_lines_that_are_indented_as_they_stand(self):
        self.assertIn("  word 0   what it is\n", manual_of_toy().page)

    def test_shows_what_the_comments_say(self):
        page = manual_of_toy().page
        for text in ("Plays \\fCcount\\fP times", "from a tree", "What a toy is made of", "any thread"):
            self.assertIn(text, page)

    def assert_is_refused(self, header, complaint):
        manual = Manual(header)
        self.assertNotEqual(manual.status, 0)
        self.assertIn(complaint, manual.complaints)

    def test_is_not_made_when_a_function_is_not_documented(self):
        self.assert_is_refused(TOY.replace("  // Returns its matter.\n", ""), "Member matter()")

    def test_fails_when_an_enumerator_is_not_documented(self):
        self.assert_check_fails(TOY.replace("   // from a tree", ""), "Wood is not documented")

    def test_is_not_made_when_a_class_is_not_documented(self):
        self.assert_is_refused(TOY.replace("// lvToy: a toy.", "// A toy."), "Compound lvToy")

    def test_is_not_made_when_another_name_follows_a_documented_function(self):
        self.assert_is_refused(TOY.replace("  int play(char const* name);", "  int rest();"),
                               "Member rest()")

    def assert_check_fails(self, header, complaint):
        manual = Manual(header)
        self.assertEqual((manual.status, manual.check_status), (0, 1))
        self.assertIn(complaint, manual.check_complaints)

    def test_fails_when_a_class_says_nothing_about_threads(self):
        self.assert_check_fails(TOY.replace("Threads:", "Trees:"), "says nothing about threads")

    def test_fails_when_a_static_function_says_nothing_about_threads(self):
        self.assert_check_fails(TOY.replace(" Any thread.", ""), "make() says nothing")

    def test_fails_when_a_function_has_two_words_about_threads(self):
        self.assert_check_fails(
            TOY.replace("Plays `count` times.", "Any thread. Before threads start."),
            "says any thread and before threads start")

    def test_fails_when_no_function_is_found(self):
        with tempfile.TemporaryDirectory() as folder, \
                mock.patch.object(sys, "argv", ["", folder]), \
                contextlib.redirect_stdout(io.StringIO()):
            self.assertEqual(doc_check.main(), 1)


class TheFilter(unittest.TestCase):
    def test_keeps_each_line_in_its_place(self):
        lines = TOY.split("\n")
        for number, line in enumerate(filtered(TOY)):
            if lines[number].startswith("  int play"):
                self.assertTrue(line.endswith(lines[number].strip()), line)

    def test_gives_a_function_the_word_of_its_class(self):
        self.assertIn("  /// Returns its matter. \\threads{one thread at a time}", filtered(TOY))

    def test_gives_a_function_its_own_word_instead(self):
        self.assertIn("  /// Returns a new toy.  \\threads{any thread}", filtered(TOY))

    def test_finds_that_word_across_the_end_of_a_line(self):
        lines = filtered(TOY.replace("new toy. Any thread.", "new toy. Any\n  // thread."))
        at = lines.index("  /// Returns a new toy. ")
        self.assertEqual(lines[at + 1], "  ///  \\threads{any thread}")

    def test_gives_overloads_the_comment_above_them(self):
        self.assertIn("  /** Plays <code>count</code> times. \\threads{one thread at a time} */ "
                      "int play(char const* name);", filtered(TOY))

    def test_leaves_private_members_alone(self):
        self.assertIn("  int hidden();", filtered(TOY))

    def test_shows_characters_of_its_own_language_as_they_stand(self):
        self.assertIn("  /// \\#nil, \\\\n and \\%d are \\<texts\\>. \\threads{one thread at a time}",
                      filtered(TOY.replace("Makes a toy.", "#nil, \\n and %d are <texts>.")))

    def test_leaves_out_what_is_for_the_library_alone(self):
        header = TOY.replace("Returns its matter.", "For the library itself; not exported: matter.")
        self.assertIn("  Matter matter() const { return own; } /** \\endcond */", filtered(header))

    def test_leaves_out_a_group_that_is_for_the_library_alone(self):
        text = "\n".join(filtered(TOY.replace("Playing ", doc_filter.LIBRARY_ONLY + " ")))
        hidden = text[text.index(r"\cond"):text.index(r"\endcond")]
        self.assertIn("matter()", hidden)
        self.assertNotIn("lvToy()", hidden)

    def test_leaves_out_a_header_that_is_not_for_users(self):
        self.assertEqual(filtered(TOY.replace("a toy.", "a toy. Not for users.")), [])


if __name__ == "__main__":
    DOXYGEN, DOXYFILE = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1])
