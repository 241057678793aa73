"""Runs the recipes of a page, and copies the pictures that it shows and the HTML that it makes.

Every block of the Markdown page that is marked as Python is run, from top to bottom, in one
namespace and an empty folder; every line of its shell blocks is a call of orvanekit's command line.
Run from the project's folder.
"""

import glob
import os
import re
import shlex
import shutil
import sys
import tempfile

from orvanekit.command_line import main as run_command
from orvanekit.commands import COMMANDS

PROGRAM = ["python2.7", "-m", "orvanekit"]


def main():
    page, pictures, html = sys.argv[1:]
    folder = tempfile.mkdtemp()
    try:
        run_page(page, folder)
        for name in shown(page, pictures):
            shutil.copy(os.path.join(folder, name), pictures)
        for path in glob.glob(os.path.join(folder, "*.html")):
            shutil.copy(path, html)
    finally:
        shutil.rmtree(folder)


def shown(page, pictures):
    """The names of the pictures in the folder `pictures` that a page shows."""
    with open(page) as markdown:
        return re.findall(r"\(images/%s/(\S+)\)" % os.path.basename(pictures), markdown.read())


def run_page(page, folder):
    """Run a page's blocks in a folder, where their files remain.

    Returns the names that the Python blocks have made
    """
    with open(page) as markdown:
        blocks = re.findall(r"^```(python|sh)\n(.*?)^```$", markdown.read(),
                            re.MULTILINE | re.DOTALL)
    here, names = os.getcwd(), {}
    os.chdir(folder)
    try:
        for kind, block in blocks:
            if kind == "python":
                exec block in names
            else:
                for line in block.replace("\\\n", " ").splitlines():
                    words = shlex.split(line)
                    if words[:3] != PROGRAM or run_command(COMMANDS, words[3:]):
                        raise ValueError("%s: does not run: %s" % (page, line))
    finally:
        os.chdir(here)
    return names


if __name__ == "__main__":
    main()
