"""Prints how fast a page of two sets draws in a browser, as a Markdown table.

usage: measure.py MODULE_FOLDER     the folder of _Orvane; run in the project's folder
"""

import os
import random
import shutil
import sys
import tempfile

sys.path[:0] = [sys.argv[1], ".", "tests/page"]

import orvanekit as kit
from webdriver import Browser

LOADS = 5
GLOBES = {"one": "one globe", "side": "two globes"}

# The times in milliseconds that the page takes to draw after each of some changes of a control.
CHANGES = """
const [name, values] = arguments;
const control = document.forms[0].elements[name];
const frame = () => new Promise(done => requestAnimationFrame(() => setTimeout(done)));
return (async () => {
  await frame();
  performance.clearMeasures();
  for (const value of values) {
    control.value = value;
    control.dispatchEvent(new Event("input", { bubbles: true }));
    await frame();
  }
  return performance.getEntriesByName("draw").map(each => each.duration);
})();
"""


def main():
    numbers = random.Random(1)
    sets = [(name, kit.make_set([numbers.uniform(-1, 1) for _ in range(900)]))
            for name in ("a", "b")]
    folder = tempfile.mkdtemp()
    browser = Browser("--enable-unsafe-swiftshader")
    try:
        path = os.path.join(folder, "page.html")
        kit.write_page(path, sets)
        rows = []
        firsts = [first_picture(browser, path) for _ in range(LOADS)]
        rows.append(("first picture", 300, "%.0f" % median(firsts), "%.0f" % max(firsts)))
        for shown in ("one", "side"):
            for name, values in (("bands", range(29, 9, -1)),
                                 ("window", ["hann", "lanczos"] * 10),
                                 ("exposure", [0.5 * i for i in range(10)])):
                browser.open("file://%s#show=%s" % (path, shown))
                times = browser.run(CHANGES, name, values)
                rows.append(("change of %s, %s" % (name, GLOBES[shown]), 50,
                             "%.1f" % median(times), "%.1f" % max(times)))
    finally:
        browser.close()
        shutil.rmtree(folder)
    print "|page, without a graphics processor|aim, ms|median, ms|slowest, ms|\n|---|--:|--:|--:|"
    for row in rows:
        print "|%s|" % "|".join(map(str, row))


def first_picture(browser, path):
    """Milliseconds from the beginning of loading to the first picture."""
    browser.open("file://" + path)
    return browser.run("return performance.getEntriesByName('ready')[0].startTime")


def median(times):
    return sorted(times)[len(times) // 2]


if __name__ == "__main__":
    main()
