"""python2.7 -m orvanekit: what it makes, refuses and leaves behind."""

import math
import os
import re
import shlex
import StringIO
import unittest

from fixtures import FolderTest, captured
from orvanekit import (coefficients, load, load_with_notes, make_set, read_image, save,
                       write_image)
from orvanekit import command_line, commands, files
from orvanekit.commands import COMMANDS
from orvanekit.progress import Progress

try:
    import urllib
    HAS_SOCKETS = True
except ImportError:
    HAS_SOCKETS = False

WHOLE = math.sqrt(4 * math.pi)


class CommandLineTest(FolderTest):
    def run_line(self, line):
        """Status, output and errors of a command line."""
        with captured() as (output, errors):
            try:
                status = command_line.main(COMMANDS, shlex.split(line))
            except SystemExit as leaving:
                status = leaving.code
        return status, output.getvalue(), errors.getvalue()

    def run_well(self, line):
        """The output of a command line that must not fail."""
        status, output, errors = self.run_line(line)
        self.assertEqual((status, errors), (0, ""), line)
        return output


class CommandsTest(CommandLineTest):
    def assert_set(self, path, expected):
        self.assert_near(coefficients(load(path)), expected, 1e-5)

    def test_info(self):
        save("a.json", make_set([2 * WHOLE, 0, 3, 4]), source=u"caf\xe9")
        lines = self.run_well("info a.json").splitlines()
        self.assertEqual(lines[:3], ["source: caf\xc3\xa9", "2 bands, 4 coefficients",
                                     "mean      2"])
        # 2 +- sqrt(3 / 4 pi) * 5; order 1 points to -x.
        for line, value, theta, phi in ((lines[3], 2 - 5 * math.sqrt(3) / WHOLE,
                                         math.pi - math.acos(0.6), 0.0),
                                        (lines[4], 2 + 5 * math.sqrt(3) / WHOLE,
                                         math.acos(0.6), math.pi)):
            found = map(float, re.match(r"\w+ +(\S+) at theta (\S+), phi (\S+) ", line).groups())
            self.assertAlmostEqual(found[0], value, 3)
            self.assertAlmostEqual(found[1], theta, 2)
            self.assertAlmostEqual(math.cos(found[2] - phi), 1.0, 3)
        self.assertEqual([line.split()[:2] for line in lines[6:]], [["0", "50.265"], ["1", "25"]])
        self.assertEqual([line.count("#") for line in lines[6:]], [40, 20])

    def test_project_and_render(self):
        write_image("a.pfm", 8, 4, 32 * [0.5])
        self.run_well("project a.pfm a.json --bands 2")
        self.assert_set("a.json", [0.5 * WHOLE, 0, 0, 0])
        write_image("b.ppm", 8, 4, (32 * [1], 32 * [0], 32 * [0.2]))
        self.run_well("project b.ppm b.json --bands 2 --colour")
        self.assertEqual([round(coefficients(channel)[0] / WHOLE, 6) for channel in load("b.json")],
                         [1, 0, 0.2])
        self.run_well("render b.json b.png --width 6")
        width, height, colours = read_image("b.png", True)
        self.assertEqual((width, height), (6, 3))
        self.assert_near([channel[0] for channel in colours], (1, 0, 0.2), 0.01)
        self.run_well("render a.json a.png --globe --width 9 --grey --least 0 --greatest 1")
        self.assertEqual(read_image("a.png")[:2], (9, 9))
        self.assertTrue(abs(read_image("a.png")[2][40] - 0.5) < 0.01)

    def test_filter_rotate_combine(self):
        save("a.json", make_set([2 * WHOLE]))
        save("b.json", make_set([3 * WHOLE, 0, 1, 0]))
        # A quarter about z takes x to y: order 1 to order -1.
        save("x.json", make_set([1, 0, 0, -1.0]), source="x.png", exposure=2)
        half, lanczos = math.sqrt(math.log(2)), 1.5 * math.sqrt(3) / math.pi  # sinc(1 / 3)
        save("bands.json", make_set([5.0 * WHOLE] + 8 * [1.0]))

        def windowed(one, two):
            return [5 * WHOLE] + 3 * [one] + 5 * [two]
        for line, expected in (
                ("filter bands.json c.json --irradiance", windowed(2 / 3., 1 / 4.)),
                ("filter bands.json c.json --dering", windowed(1, 1)),
                ("filter bands.json c.json --heat %r" % half, windowed(1 / 2., 1 / 8.)),
                ("filter bands.json c.json --cap %r" % (math.pi / 2), windowed(1 / 2., 0)),
                ("filter bands.json c.json --hann", windowed(3 / 4., 1 / 4.)),
                ("filter bands.json c.json --lanczos", windowed(lanczos, lanczos / 2)),
                ("rotate x.json c.json --axis 0 1 0 --angle -90", [1, 0, 1, 0]),
                ("combine a.json b.json c.json --sum", [5 * WHOLE, 0, 1, 0]),
                ("combine a.json b.json c.json --difference", [-WHOLE, 0, -1, 0]),
                ("combine a.json b.json c.json --blend 0.25", [2.25 * WHOLE, 0, .25, 0]),
                ("combine a.json b.json c.json --product --bands 2", [6 * WHOLE, 0, 2, 0]),
                ("combine a.json b.json c.json --max --bands 2", [3 * WHOLE, 0, 1, 0]),
                ("combine a.json b.json c.json --min --bands 2", [2 * WHOLE, 0, 0, 0]),
                ("combine a.json c.json --threshold 1.5 --bands 1", [WHOLE]),
                ("rotate x.json c.json --axis 0 0 2 --angle 90", [1, -1, 0, 0])):
            self.run_well(line)
            self.assert_set("c.json", expected)
        self.assertEqual(load_with_notes("c.json")[1], {"source": "x.png"})

    def test_convert(self):
        values = [WHOLE, 0.5, -0.25, 2.0]
        save("a.json", make_set(values))
        self.run_well("convert a.json a.csv --normalisation 4pi --no-condon-shortley "
                      "--order descending")
        self.assert_near(map(float, self.read("a.csv").split()),
                         [1, -2 / WHOLE, -0.25 / WHOLE, -0.5 / WHOLE], 1e-6)
        self.run_well("convert a.csv b.json --normalisation 4pi --no-condon-shortley "
                      "--order descending")
        self.assert_set("b.json", values)
        self.run_well("convert a.json a.f32")
        self.assertEqual(os.path.getsize("a.f32"), 16)
        self.run_well("convert a.f32 b.json")
        self.assert_set("b.json", values)
        write_image("a.pgm", 2, 1, [0, 0.4])
        self.run_well("convert a.pgm b.png")
        self.assertEqual(list(read_image("b.png")[2]), [0, 0.4])

    def test_fit(self):
        self.write("a.csv", "theta; phi; value  # degrees\n\n" + "".join(
            "%d;%d;%r\n" % (theta, phi, 2 + math.cos(math.radians(theta)))
            for theta in range(10, 180, 20) for phi in range(0, 360, 30)))
        self.run_well("fit a.csv a.json --bands 2 --degrees --smoothing 0")
        self.assert_set("a.json", [2 * WHOLE, 0, math.sqrt(4 * math.pi / 3), 0])

    def test_view(self):
        save("a b.json", make_set([1.0]))
        save("c.json", 3 * (make_set([1.0]),))
        self.assertEqual(self.run_well("view 'a b.json'"), "a b.html\n")
        self.run_well("view 'a b.json' c.json -o d.html --title '<\xc3\xa9>'")
        for name, title in (("a b.html", "a b"), ("d.html", "&lt;&#233;&gt;")):
            self.assertIn("<title>%s</title>" % title, self.read(name))

    @unittest.skipUnless(HAS_SOCKETS, "a Python without sockets")
    def test_view_opens_the_page(self):
        save("a b.json", make_set([1.0]))
        opened = []
        self.replace(commands.webbrowser, "open", lambda address: not opened.append(address))
        self.run_well("view 'a b.json' --open")
        self.assertEqual([urllib.unquote(address.replace("file://", "")) for address in opened],
                         [os.path.abspath("a b.html")])


class RefusalTest(CommandLineTest):
    def test_refusals_are_one_line_that_begins_with_the_file(self):
        for name, contents in (("bad.json", "{"), ("bad.png", "no"), ("bad.csv", "1 2 3\n4 5 x"),
                               ("odd.csv", "1 2 3"), ("two.csv", "1 2 3\n1 2"), ("bad.f32", "abc")):
            self.write(name, contents)
        save("a.json", make_set([1.0, float("nan"), 0, 0]))
        save("c.json", 3 * (make_set([-1.0]),))
        write_image("small.pgm", 4, 2, 8 * [1])
        before = sorted(os.listdir("."))
        for line, words in (
                ("info none.json", "none.json: No such file or directory"),
                ("info bad.json", "bad.json: "),
                ("project bad.png o.json", "bad.png: no picture"),
                ("filter bad.png o.json --hann", "bad.png: a picture; make a set of it first"),
                ("project small.pgm o.json --bands 9", "small.pgm: "),
                ("render a.json o.png", "a.json: "),
                ("render c.json o.png --width 0", "c.json: a picture of 0 x 1 pixels"),
                ("filter c.json o.json --dering", "c.json: "),
                ("view c.json a.json", "a.json: coefficient 1 is nan"),
                ("view c.json -o none/o.html", "none/o.html: No such file or directory"),
                ("view" + 65 * " c.json" + " -o o.html", "o.html: 65 sets; expected 1 to 64"),
                ("filter c.json none/o.json --hann", "none/o.json: No such file or directory"),
                ("rotate c.json o.json --axis 0 0 0 --angle 9", "c.json: "),
                ("combine a.json c.json o.json --sum", "a.json: sets of one and of three"),
                ("combine a.json o.json --blend 1", "a.json: 1 sets; --blend takes 2"),
                ("convert odd.csv o.json", "odd.csv: 3 coefficients"),
                ("convert bad.f32 o.json", "bad.f32: 3 bytes; expected 4"),
                ("convert c.json o.csv", "o.csv: three sets; expected the ending .json"),
                ("convert c.json o.doc", "o.doc: "),
                ("convert c.doc o.json", "c.doc: ending '.doc'"),
                ("fit bad.csv o.json", "bad.csv: line 2: '4 5 x'; expected numbers"),
                ("fit two.csv o.json", "two.csv: line 2: 2 numbers; expected theta")):
            status, output, errors = self.run_line(line)
            self.assertEqual((status, output, errors.count("\n")), (1, "", 1), (line, errors))
            self.assertTrue(errors.startswith(words), errors)
            self.assertEqual(sorted(os.listdir(".")), before, line)

    def test_wrong_arguments(self):
        for line in ("", "fly", "info", "project a.png b.json --bands 31", "filter a b",
                     "filter a b --hann --lanczos", "rotate a b --axis 0 0 nan --angle 1"):
            status, output, errors = self.run_line(line)
            self.assertEqual((status, output), (2, ""), line)
            self.assertTrue(errors.startswith("usage: python2.7 -m orvanekit"), line)

    def test_help_has_examples_that_parse(self):
        self.assertEqual(self.run_line("--help")[0], 0)
        for command in COMMANDS:
            status, output, _ = self.run_line(command.name + " --help")
            self.assertEqual(status, 0)
            for example in command.examples:
                self.assertIn("python2.7 -m orvanekit %s %s\n" % (command.name, example), output)
                status, _, errors = self.run_line("%s %s" % (command.name, example))
                self.assertEqual((status, "No such file" in errors), (1, True), errors)

    def test_interrupt_leaves_no_half_file(self):
        save("a.json", make_set([1.0]))
        before = sorted(os.listdir("."))

        def interrupted(*_):
            raise KeyboardInterrupt
        self.replace(files.os, "rename", interrupted)
        self.assertEqual(self.run_line("filter a.json b.json --hann"), (130, "", ""))
        self.assertEqual(sorted(os.listdir(".")), before)


class ProgressTest(unittest.TestCase):
    class Terminal(StringIO.StringIO):
        def isatty(self):
            return True

    def test_on_a_terminal_only_and_wiped(self):
        terminal = self.Terminal()
        with Progress("fitting", terminal, 0.001) as part:
            part(0.25)
            while "25 %" not in terminal.getvalue():
                pass
        self.assertRegexpMatches(terminal.getvalue(), r"\rfitting: \d+ s, 25 %(.|\r)*\r +\r$")
        for quiet, patience in ((self.Terminal(), 1000.0), (StringIO.StringIO(), 0.001)):
            with Progress("fitting", quiet, patience) as part:
                part(0.25)
            self.assertEqual(quiet.getvalue(), "")


if __name__ == "__main__":
    unittest.main()
