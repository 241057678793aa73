"""The reference page and the typed stub are what the tables say, and say what the module has."""

import os
import re
import subprocess
import unittest

from support import ATTRIBUTES, DOCS, METHODS, MODULE_FOLDER, kinds

PAGE, STUB = "docs/reference.md", "orvane/module/_Orvane.pyi"
STUB_TYPES = {"SH": "SphericalHarmonic", "f": "float", "d": "float", "i": "int",
              "set": "SphericalHarmonic", "buffer": "_ReadBuffer", "matrix": "_Matrix"}
STUB_RESULTS = {"SH": "SphericalHarmonic", "buffer": "_Buffer"}


def read(path):
    with open(path) as opened:
        return opened.read()


class ReferenceTest(unittest.TestCase):
    def test_files_are_what_the_tables_make(self):
        program = os.path.join(MODULE_FOLDER, os.pardir, "bin", "orvane-manual")
        for what, path in (("reference", PAGE), ("stub", STUB)):
            self.assertTrue(subprocess.check_output([program, what],
                                                    universal_newlines=True) == read(path),
                            "%s is out of date: run scripts/reference.sh" % path)

    def test_page_shows_everything_and_leads_nowhere_else(self):
        page = read(PAGE)
        for doc in list(DOCS.values()) + [method.doc for method in METHODS]:
            self.assertIn("```text\n%s\n```" % doc.rstrip("\n"), page)
        headings = re.findall("^##+ (.+)$", page, re.MULTILINE)
        self.assertEqual(set(headings),
                         set(DOCS) | set(method.name for method in METHODS) | set(["Contents"]))
        self.assertEqual(len(headings), len(set(headings)))
        anchors = set("#" + heading.lower() for heading in headings)
        for target in re.findall(r"\]\(([^)]+)\)", page):
            self.assertTrue(target in anchors or os.path.exists(os.path.join("docs", target)),
                            target)

    def test_stub_has_the_types_of_every_method_and_attribute(self):
        classes = dict(re.findall(r"^class ([A-Z]\w+)\(object\):\n((?:\n|    .*\n)*)", read(STUB),
                                  re.MULTILINE))
        self.assertEqual(set(classes), set(DOCS))
        for name, body in classes.items():
            found = {method: (re.findall(r"__\w+: (\w+)", arguments), result)
                     for method, arguments, result in re.findall(
                         r"^    def ([A-Z]\w*)\(self(.*)\) -> (\w+):$", body, re.MULTILINE)}
            expected = {}
            for method in METHODS:
                if method.owner == name:
                    types = [STUB_TYPES.get(kind, kind) for kind in kinds(method)]
                    if method.style == "direct":
                        types = ["Any"]
                    result = STUB_RESULTS.get(method.result, method.result)
                    expected[method.name] = (types, result)
            self.assertEqual(found, expected)
            for attribute in ATTRIBUTES[name]:
                kind = {"1": "int", "3": "float"}[attribute.code]
                line = ("    %s: %s\n" if int(attribute.flags, 16) & 0x10 else
                        "    @property\n    def %s(self) -> %s:\n") % (attribute.name, kind)
                self.assertIn(line, body)

    def test_version_is_the_newest_in_the_changes(self):
        version = re.search(r"version (\S+)\.", read(PAGE)).group(1)
        self.assertEqual(re.search(r"^## (\S+)", read("CHANGELOG.md"), re.MULTILINE).group(1),
                         version)
        self.assertIn("version %s.\n" % version, read(STUB))
        self.assertIn("project(Orvane VERSION %s " % version, read("CMakeLists.txt"))


if __name__ == "__main__":
    unittest.main()
