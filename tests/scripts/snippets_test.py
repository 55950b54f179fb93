"""Tests that a page is refused unless something checks each of its blocks, and finds it right."""

import contextlib
import io
import os
import sys
import tempfile
import unittest

FOLDER = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(FOLDER, "..", "support"))
import check_snippets  # pylint: disable=wrong-import-position

PROGRAM = "int main() {\n  greet();\n  return 0;\n}\n"
PRINTED = "hello\nworld\n"
CMAKE = "project(hello)\n"
FOLLOWER = 'follow packages "Installing"  # of docs/page.md\n'
PRESETS = '{"configurePresets": [{"name": "x86_64"}]}'
# Instead of lvtext: print what they read, and one of them what it is told.
QUIET_LVTEXT = "#!/bin/sh\ncat\n"
LVTEXT = "#!/bin/sh\nshift\ncat\necho\necho \"$@\" >&2\n"


def block(kind, text):
    return f"```{kind}\n{text}```\n"


class Snippets(unittest.TestCase):
    def setUp(self):
        # pylint: disable-next=consider-using-with
        room = tempfile.TemporaryDirectory()
        self.addCleanup(room.cleanup)
        self.root = room.name
        os.makedirs(self.path("docs"))
        self.lvtext = self.write("lvtext", QUIET_LVTEXT)
        self.write("CMakePresets.json", PRESETS)
        self.write("scripts/known", "#!/bin/sh\n")

    def path(self, name):
        return os.path.join(self.root, name)

    def write(self, name, text):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(self.path(name), 0o755)
        return self.path(name)

    def check(self, page, name="docs/page.md", cmake=()):
        arguments = [
            "--root", self.root, "--ran", self.root, "--lvtext", self.lvtext,
            "--programs", self.write("hello.cpp", PROGRAM), "--pages", self.write(name, page),
            "--followed-by", self.write("follower", FOLLOWER)]
        self.write("hello.txt", PRINTED)
        with contextlib.redirect_stdout(io.StringIO()), \
                contextlib.redirect_stderr(io.StringIO()) as errors:
            status = check_snippets.main(arguments + (["--cmake", *cmake] if cmake else []))
        self.errors = errors.getvalue()
        return status

    def expect_right(self, page, **more):
        self.assertEqual((self.check(page, **more), self.errors), (0, ""))

    def expect_wrong(self, reason, page, **more):
        self.assertEqual(self.check(page, **more), 1)
        self.assertIn(reason, self.errors)

    def test_lines_of_a_program_that_is_run_are_taken(self):
        self.expect_right(block("cpp", "greet();\nreturn 0;\n") + block("text", "world\n"))

    def test_a_program_that_does_not_compile_is_refused(self):
        self.expect_wrong("docs/page.md:1: no program that is run has these lines",
                          block("cpp", "greet()\n"))

    def test_an_output_that_is_not_printed_is_refused(self):
        self.expect_wrong("docs/page.md:4: no program above prints this",
                          block("cpp", "greet();\n") + block("text", "hello world\n"))

    def test_an_output_without_a_program_is_refused(self):
        self.expect_wrong("no program above prints this", block("text", "hello\n"))
        self.expect_wrong("no program above prints this",
                          block("cpp", "greet();\n") + block("sh", "scripts/known\n") +
                          block("text", "hello\n"))

    def test_a_block_that_nothing_checks_is_refused(self):
        for kind in ("", "c", "json"):
            self.expect_wrong(f"nothing checks a block of the kind '{kind}'", block(kind, "hello\n"))
        self.expect_wrong("nothing checks a block of the kind ''", "Look:\n\n    hello\n")

    def test_a_line_that_goes_on_indented_is_no_block(self):
        self.expect_right(block("cpp", "greet();\n") + "\n10. An item\n    of a list.\n")

    def test_a_block_that_is_not_closed_is_refused(self):
        self.expect_wrong("a block is not closed", "```cpp\ngreet();\n")

    def test_a_page_that_shows_nothing_is_refused(self):
        self.assertEqual(self.check("Nothing.\n"), 1)

    def test_a_cmake_file_is_shown_as_it_is(self):
        files = [self.write("CMakeLists.txt", CMAKE)]
        self.expect_right(block("cmake", CMAKE), cmake=files)
        self.expect_wrong("no test uses a file like this", block("cmake", CMAKE + "\n# More.\n"),
                          cmake=files)
        self.expect_wrong("no page shows", block("cpp", "greet();\n"), cmake=files)

    def test_commands_are_followed_or_of_this_house(self):
        self.expect_right("# Installing\n" + block("sh", "install it\n") + block("text", "done\n"))
        self.expect_right("# Else\n" + block("sh", "scripts/known  # Well.\nctest --preset x86_64\n"))

    def test_sessions_are_repeated(self):
        session = block("gdb", "(gdb) print x\n")
        self.expect_right(session)
        self.expect_wrong("nothing repeats this", session, name="docs/other.md")

    def test_commands_that_nothing_runs_are_refused(self):
        for command in ("install it", "scripts/unknown", "cmake --preset arm", "cmake --build ."):
            self.expect_wrong(f"nothing follows the section 'Else' and runs {command}",
                              "# Else\n" + block("sh", command + "\n"))
        self.expect_wrong("nothing follows", "# Installing\n" + block("sh", "install it\n"),
                          name="docs/other.md")

    def test_a_value_is_printed_as_it_stands(self):
        self.expect_right(block("lv", "{1,2}   a list\n"))
        self.lvtext = self.write("lvtext", LVTEXT)
        self.expect_wrong("docs/page.md:1: {1,2} is printed as\n{1,2}\n--class Point=2",
                          block("lv", "{1,2}   a list\n"))

    def test_a_command_prints_what_follows_it(self):
        self.expect_right("    $ printf 1 | lvtext print\n    1\n")
        self.expect_wrong("docs/page.md:1: this prints\n1", "    $ printf 1 | lvtext print\n    2\n")
        self.expect_wrong("docs/page.md:4: this prints\n1",
                          "\n    $ printf 2 | lvtext\n    2\n    $ printf 1 | lvtext\n    2\n")
        self.expect_wrong("this prints", "    $ printf 1\n    1\n")

    def test_a_manual_page_is_read_alike(self):
        display = ".Bd -literal -offset indent\n{0}\n.Ed\n"
        self.expect_right(display.format("$ printf 1 | lvtext print\n1"), name="page.7")
        self.expect_right('.\\" cpp\n' + display.format("greet();") +
                          '.\\" text\n' + display.format("hello") +
                          ".It Li {1,\\(dqa\\(dq}\n", name="page.7")
        self.expect_wrong("this prints", display.format("$ printf 1 | lvtext print\n2"), name="page.7")
        self.expect_wrong("no program", '.\\" cpp\n' + display.format("greet()"), name="page.7")
        self.expect_wrong("nothing checks", display.format("hello"), name="page.7")


if __name__ == "__main__":
    unittest.main()
