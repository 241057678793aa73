"""Every line of docs/limits-and-errors.md raises what it says and changes nothing, and every text
that the sources raise is on the page."""

import glob
import os
import re
import sys
import unittest

sys.path.insert(0, "tests/kit")

from fixtures import LimitedMemory
from support import HOST, OBJECT_ALLOCATION, OrvaneTest

PAGE_NAME = "docs/limits-and-errors.md"
PAGE = open(PAGE_NAME).read()
SETUP, = re.findall(r"^```python\n(.*?)^```", PAGE, re.MULTILINE | re.DOTALL)
SECTIONS = dict(part.split("\n", 1) for part in PAGE.split("\n## ")[1:])
NATIVE = SECTIONS.pop("Not from a script's doing")

# Texts that no script and no page shows: for native callers, or replaced on the way to the script.
NATIVE_ONLY = ["this processor has no "]


def table_rows(section):
    """The cells of the rows below the head."""
    lines = re.findall(r"^\|(.*)\|$", section, re.MULTILINE)
    return [[cell.strip() for cell in line.split(" | ")] for line in lines
            if not line.startswith("---")][1:]


def raising_statements(path):
    """Each throw and each setting of a Python error in a source file, up to its semicolon."""
    source = re.sub(r"//.*", "", open(path).read())
    return re.findall(r"\b(?:throw|Raise\w+|PyErr_SetString|PyErr_Format)\b[^;]*;", source)


def literals(statement):
    """The string literals of a statement, those that stand side by side as one."""
    joined = re.sub(r'"\s+"', "", statement)
    return [text for text in re.findall(r'"((?:[^"\\]|\\.)*)"', joined) if text]


def pattern(text):
    """A regular expression for what a format string makes."""
    return "(?:.*)".join(re.escape(part) for part in re.split(r"%(?:lld|zd|[dis])", text))


class LimitsTest(OrvaneTest):
    def check(self, script, expected, refuse_memory=False):
        """Runs `script` often after the page's first lines; `expected` is "Type: text"."""
        names = {}
        exec SETUP in names
        builder, sh = names["builder"], names["sh"]
        code = compile(script, PAGE_NAME, "exec")

        def state():
            return (builder.numSteps, str(builder.GetImageBuffer()), str(sh.GetAsBuffer()),
                    str(builder.CreateLatitudeSH(3).GetAsBuffer()),
                    str(builder.CreateImportanceSampledGaussSH(1.0, 2.0, 0.4).GetAsBuffer()))

        def run(*_):
            if refuse_memory:
                HOST.TeskFailAllocation(OBJECT_ALLOCATION, 1)
            exec code in names

        before = state()
        for error, text in self.outcomes(run, *names.values()):
            self.assertEqual(("%s: %s" % (error.__name__, text)).rstrip(": "), expected, script)
        self.assertTrue(state() == before, script)

    def test_every_line_raises_what_it_says(self):
        lines = 0
        for title, section in SECTIONS.items():
            for row in table_rows(section):
                script, error = row[-2:] if title == "Limits" else row[:2]
                elsewhere = re.search("On Windows, .*: (`.*`)", row[-1])
                if elsewhere and os.name == "nt":
                    error = elsewhere.group(1)
                script, error = script.strip("`"), error.strip("`")
                if title == "Limits":
                    self.assertIn(row[1].replace(",", ""), error)
                self.check(script, error, title == "When memory runs out")
                lines += 1
        self.assertEqual(lines, PAGE.count("Error: ") + PAGE.count("`MemoryError` |")
                         - PAGE.count("On Windows, "))

    def test_limits_themselves_are_legal(self):
        """Each is taken, if only to find that there is not as much memory."""
        scripts = ["builder.SetImageBuffer(2147483647, 1)"]
        for _, limit, beyond, _ in table_rows(SECTIONS["Limits"]):
            limit = int(limit.replace(",", ""))
            if str(limit + 1) in beyond:
                scripts.append(beyond.strip("`").replace(str(limit + 1), str(limit)))
        self.assertGreater(len(scripts), 10)
        names = {}
        exec SETUP in names
        for script in scripts:
            with LimitedMemory(200 << 20) as limited:
                if not limited:
                    self.skipTest("a machine's whole memory would be taken")
                try:
                    exec script in names
                except (MemoryError, TypeError):  # a TypeError: the buffer is of another size
                    sys.exc_clear()

    def test_every_text_of_the_sources_is_on_the_page(self):
        shown = re.findall(r"`(?:\w+Error: )?([^`\n]*)`", PAGE)
        files = [path for folder in ("orvane/*/", "tesk/*/") for suffix in ("*.cpp", "*.h")
                 for path in glob.glob(folder + suffix)]
        statements = 0
        for path in files:
            for statement in raising_statements(path):
                texts = literals(statement)
                if not statement.startswith("throw"):
                    texts = texts[:1]  # the others are put into its places
                elif re.search(r'IllegalValue\(\s*"', statement):
                    texts[0] += " is %s; expected "
                elif "IllegalValue(" in statement:
                    texts.insert(0, " is %s; expected ")
                if not texts or texts[0] in NATIVE_ONLY:
                    continue
                expressions = [pattern(text) for text in texts]
                if "?" not in statement:  # no alternatives: all of them, in their order
                    expressions = [".*".join(expressions)]
                for expression in expressions:
                    self.assertTrue(any(re.search(expression, text) for text in shown),
                                    "%s raises what the page lacks: %s" % (path, statement))
                statements += 1
        self.assertGreater(statements, 40)

    def test_what_scripts_cannot_provoke_has_tests_of_its_own(self):
        tests = re.sub(r'"\s+"', "", "".join(
            open(path).read() for path in glob.glob("tests/module/*.cpp")
            + ["tests/python/test_hostile.py", "tests/host/test_failures.py"]))
        rows = table_rows(NATIVE)
        self.assertEqual(len(rows), NATIVE.count("\n| `"))
        for row in rows:
            self.assertIn(row[0].strip("`").split("SHBuilder.")[0], tests)


if __name__ == "__main__":
    unittest.main()
