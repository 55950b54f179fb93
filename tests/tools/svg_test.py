"""The sample texts are drawn: all boxes, texts and arrows of the graph are in the picture.

    svg_test.py FOLDER LVTEXT...

FOLDER holds the texts; LVTEXT is the command that runs the program.
"""

import html
import os
import re
import subprocess
import sys
import unittest
from xml.etree import ElementTree

FOLDER, *LVTEXT = sys.argv[1:]
SVG = "{http://www.w3.org/2000/svg}"
CLASSES = ["--class", "Place=name,floor,sensors", "--class", "Sensor=kind,unit,last,limits"]


def graph(name, *options):
    run = subprocess.run([*LVTEXT, "graph", *options, *CLASSES, os.path.join(FOLDER, name)],
                         capture_output=True, text=True, check=True)
    assert run.stderr == "", run.stderr
    return run.stdout


def groups(picture, kind):
    return [group for group in picture.iter(SVG + "g") if group.get("class") == kind]


class Pictures(unittest.TestCase):
    def test_show_what_the_graph_has(self):
        names = sorted(os.listdir(FOLDER))
        self.assertGreater(len(names), 1)
        for name in names:
            with self.subTest(name):
                dot = graph(name)
                picture = ElementTree.fromstring(graph(name, "--svg"))
                self.assertEqual(len(groups(picture, "node")), len(re.findall(r" \[label=<", dot)))
                self.assertEqual(len(groups(picture, "edge")), dot.count(" -> "))
                cells = re.findall(r"<TD[^>]*>(?:<B>)?([^<]+)<", dot)
                self.assertGreater(len(cells), 10)
                shown = [text.text.replace("\u00a0", " ") for text in picture.iter(SVG + "text")]
                self.assertEqual(sorted(shown), sorted(html.unescape(cell) for cell in cells))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
