# -*- coding: utf-8 -*-
"""The page that shows sets: what is in the file. tests/page/ looks at it in a browser."""

import base64
import hashlib
import json
import os
import random
import re
import struct
import unittest

from fixtures import FolderTest
from orvanekit import coefficients, make_set, write_page

RANDOM = random.Random(5)
FULL = [make_set([RANDOM.gauss(0, 1) for _ in range(900)]) for _ in range(4)]


class PageTest(FolderTest):
    def written(self, *arguments):
        write_page("page.html", *arguments)
        return self.read("page.html")

    def test_contents(self):
        names = [u"\u6d77", "caf\xc3\xa9", "</script><!--", "\"'&\\u0041{{data}}"]
        page = self.written(zip(names, FULL), u"</title>\u6d77&\ud800")
        self.assertTrue(len(page) < 80000, len(page))
        self.assertEqual(page, self.written(zip(names, FULL), u"</title>\u6d77&\ud800"))
        self.assertFalse(re.search(r"https?:|\bsrc=|<link|@import|url\(|[^\n -~]", page))
        self.assertIn("<title>&lt;/title&gt;&#28023;&amp; </title>", page)
        (data, script), style = (re.findall("<script[^>]*>(.*?)</script>", page, re.DOTALL),
                                 re.search("<style>(.*?)</style>", page, re.DOTALL).group(1))
        for text in (script, style):
            self.assertIn(base64.b64encode(hashlib.sha256(text).digest()), page)
        shown = json.loads(data)["sets"]
        self.assertEqual([each["name"] for each in shown],
                         [u"\u6d77", u"caf\xe9", names[2], names[3]])
        for each, sh in zip(shown, FULL):
            found = struct.unpack("<900f", base64.b64decode(each["channels"][0]))
            self.assertEqual(list(found), list(coefficients(sh)))
            self.assertEqual(map(len, each["values"]), [24])
        colour = self.written([("sky", tuple(FULL[:3]))])
        self.assertEqual(colour.count("sha256-"), 2)
        self.assertTrue(self.written([("", make_set([]))] * 64))

    def test_refusals_leave_the_file(self):
        before = self.written([("a", FULL[0])])
        nan = make_set([1, float("nan"), 0, 0])
        for error, words, arguments in (
                (ValueError, "0 sets; expected 1 to 64", ([],)),
                (ValueError, "65 sets; expected 1 to 64", (65 * [("a", FULL[0])],)),
                (ValueError, "\xc3\xa9: coefficient 1 is nan", ([(u"\xe9", nan)],)),
                (ValueError, "UTF-8", ([("\xff", FULL[0])],)),
                (ValueError, "UTF-8", ([("a", FULL[0])], "\xff")),
                (TypeError, "expected (name, set)", (["Earth"],)),
                (TypeError, "expected a text", ([(3, FULL[0])],)),
                (TypeError, "not a coefficient set", ([("a", 3)],)),
                (TypeError, "expected three", ([("a", (FULL[0], FULL[1]))],))):
            self.refuses(error, words, write_page, "page.html", *arguments)
            self.assertEqual(self.read("page.html"), before)
            self.assertEqual(os.listdir("."), ["page.html"])


if __name__ == "__main__":
    unittest.main()
