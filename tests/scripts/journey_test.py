"""How what a page tells its readers to do is done."""

import contextlib
import io
import os
import sys
import tempfile
import unittest

FOLDER = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(FOLDER, "..", "..", "scripts", "lib"))
import journey  # pylint: disable=wrong-import-position

PAGE = """# Page

## Talking

```sh
# no heading
echo hello
echo world
```

```text
world
```

## Silence

No commands.

## Failing

```sh
false
true
```

## Wrong

```sh
echo up
```

```text
down
```

## Nothing before

```text
down
```
"""


class Journeys(unittest.TestCase):
    def go(self, *headings):
        with tempfile.NamedTemporaryFile("w", suffix=".md", encoding="utf-8") as page:
            page.write(PAGE)
            page.flush()
            with contextlib.redirect_stdout(io.StringIO()) as output, \
                    contextlib.redirect_stderr(io.StringIO()) as errors:
                status = journey.main([page.name, *headings])
        self.output = output.getvalue()
        self.errors = errors.getvalue()
        return status

    def test_runs_the_commands_and_compares_the_end_of_what_they_print(self):
        self.assertEqual(self.go("Talking"), 0)
        self.assertTrue(self.output.endswith("hello\nworld\n"))
        self.assertNotIn("up", self.output)

    def test_fails_at_a_command_that_fails(self):
        self.assertEqual(self.go("Failing"), 1)
        self.assertIn("Failing: ended with 1", self.errors)

    def test_fails_where_something_else_is_printed(self):
        self.assertEqual(self.go("Talking", "Wrong"), 1)
        self.assertIn("Wrong: should have printed\ndown\n", self.errors)

    def test_fails_where_nothing_is_to_be_done(self):
        self.assertEqual(self.go("Silence"), 1)
        self.assertEqual(self.go("Nothing before"), 1)

    def test_fails_where_there_is_no_such_section(self):
        self.assertEqual(self.go("Singing"), 1)
        self.assertIn("no section 'Singing'", self.errors)


if __name__ == "__main__":
    unittest.main()
