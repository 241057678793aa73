"""The package's page and stub say what the package has."""

import inspect
import re
import unittest

import orvanekit
from fixtures import captured


class ReferenceTest(unittest.TestCase):
    def test_page_is_what_the_docstrings_make(self):
        generator = {"__name__": "kit_reference"}
        execfile("scripts/kit_reference.py", generator)
        with captured() as (made, _):
            generator["page"]()
        with open("docs/orvanekit.md") as opened:
            self.assertMultiLineEqual(opened.read(), made.getvalue(), "run scripts/reference.sh")

    def test_every_function_says_what_it_takes_gives_and_refuses(self):
        for name in orvanekit.__all__:
            function = getattr(orvanekit, name)
            if not inspect.isfunction(function):
                continue
            doc = inspect.getdoc(function)
            for word in ("Returns", "Raises"):
                if name not in ("save", "write_image", "write_page") or word == "Raises":
                    self.assertIn(word, doc, name)
            for argument in inspect.getargspec(function)[0]:
                self.assertRegexpMatches(doc, r"(?m)^(\w+, )*%s(, \w+)*:" % argument, name)

    def test_stub_has_the_same_arguments(self):
        with open("orvanekit/__init__.pyi") as opened:
            stub = opened.read()
        found = dict(re.findall(r"^def (\w+)\((.*?)\) ->", stub, re.MULTILINE | re.DOTALL))
        functions = [name for name in orvanekit.__all__
                     if inspect.isfunction(getattr(orvanekit, name))]
        self.assertEqual(sorted(found), sorted(functions))
        for name in functions:
            names, _, more, _ = inspect.getargspec(getattr(orvanekit, name))
            self.assertEqual(re.findall(r"(?:^|\n|, ?)\s*\**(\w+):", found[name]),
                             names + ([more] if more else []), name)


if __name__ == "__main__":
    unittest.main()
