"""Tests that links which lead nowhere are refused."""

import contextlib
import io
import os
import sys
import tempfile
import unittest

FOLDER = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(FOLDER, "..", "support"))
import check_links  # pylint: disable=wrong-import-position

OTHER = "# The `first` part, told\n\n## Two\n\n```sh\n# Not a heading\n```\n"


class Links(unittest.TestCase):
    def check(self, page):
        with tempfile.TemporaryDirectory() as root:
            os.makedirs(os.path.join(root, "docs"))
            os.makedirs(os.path.join(root, "build"))
            for name, text in (("docs/page.md", page), ("other.md", OTHER),
                               ("build/copy.md", "[x](nowhere.md)\n")):
                with open(os.path.join(root, name), "w", encoding="utf-8") as file:
                    file.write(text)
            with contextlib.redirect_stdout(io.StringIO()), \
                    contextlib.redirect_stderr(io.StringIO()) as errors:
                status = check_links.main(root)
            self.errors = errors.getvalue()
        return status

    def expect_right(self, page):
        self.assertEqual((self.check(page), self.errors), (0, ""))

    def expect_wrong(self, link, reason, page):
        self.assertEqual(self.check(page), 1)
        self.assertEqual(self.errors, f"docs/page.md: {link} {reason}\n")

    def test_a_link_to_a_page_a_folder_and_a_part_leads_there(self):
        self.expect_right("[a](../other.md), [b](..) and [c](../other.md#the-first-part-told).\n")
        self.expect_right("# Here\n[a](#here) [b](https://example.org/) [c]\n\n[c]: ../other.md\n")

    def test_a_link_to_nothing_is_refused(self):
        self.expect_wrong("other.md", "leads nowhere", "[a](../other.md) [b](other.md)\n")
        self.expect_wrong("away", "leads nowhere", "[c]\n\n[c]: away\n")

    def test_a_link_to_no_heading_is_refused(self):
        self.expect_wrong("../other.md#three", "leads to no heading", "[a](../other.md#three)\n")
        self.expect_wrong("../other.md#not-a-heading", "leads to no heading",
                          "[a](../other.md#not-a-heading)\n")

    def test_a_link_out_of_the_folder_is_refused(self):
        self.expect_wrong("../..", "leads out of the folder", "[a](../..)\n")

    def test_what_stands_in_blocks_and_code_is_no_link(self):
        self.expect_wrong("gone", "leads nowhere",
                          "```cpp\na[1](none);\n```\n`[1](none)` [`a`](gone)\n")

    def test_pages_without_links_are_refused(self):
        self.assertEqual(self.check("Nothing.\n"), 1)


if __name__ == "__main__":
    unittest.main()
