#!/usr/bin/env python3
"""Puts deliberate faults into the code, one at a time, and says which of them the suite lets pass.

A fault is one change of a comparison, a constant, an operator, the order of two arguments or the
precision of a number, or a statement left out, in the C++ of orvane/, tesk/ and platform/. Each is
made in a copy of the project in a temporary folder, built there (without optimisation that the
results do not need) and run against the suite until the first failure. One that does not compile
is not counted. scripts/mutate-equivalent.txt names the faults that no test can see, and why.

The outcomes are kept: the same command goes on where it was stopped, and with --again repeats the
survivors, after tests have been added.
"""

import argparse
import collections
import concurrent.futures
import itertools
import json
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading

PROJECT = pathlib.Path(__file__).resolve().parent.parent
EQUIVALENT = PROJECT / "scripts" / "mutate-equivalent.txt"
FOLDERS = ("orvane/", "tesk/", "platform/")
MEMORY = 10 << 30  # bytes a test may take, so that a fault cannot exhaust the machine
NATIVE = "^native_tests$"
SLOW = "^(kit_|test_examples|install|package)"  # the tests that come last
TIMEOUT = 120  # seconds until a test counts as hanging

Fault = collections.namedtuple("Fault", "path start end text kind before after number")

# What is not code to change: comments, texts, directives, compile-time checks.
HIDDEN = re.compile(
    r"""//[^\n]* | /\*.*?\*/ | R"(\w*)\(.*?\)\1" | "(?:\\.|[^"\\\n])*" | (?<!\w)'(?:\\.|[^'\\\n])+'
    | ^[ \t]*\#(?:\\\n|[^\n])* | \bstatic_assert\s*\(.*?\)\s*; | \btemplate\s*<[^>]*>+""",
    re.S | re.M | re.X)

COMPARISONS = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"),
               "==": ("!=",), "!=": ("==",)}
OPERATORS = dict(zip("+ - * / % && || & | << >> += -= *= /= |= &=".split(),
                     "- + / * / || && | & >> << -= += /= *= &= |=".split()))
STATEMENT = re.compile(
    r"(if \(|throw\b|break$|continue$|return$|delete\b|(\+\+|--|\*)?[A-Za-z_][\w:.\[\]<>()*-]*"
    r"\s*([-+*/|&]?=|\())")
DECLARATION = re.compile(r"(return .*|(using|typedef|friend|constexpr|else)\b.*|"
                         r"[^=]*\) (const )?(=|override|noexcept)\b.*)$", re.S)


def numbers(old):
    """What to put in a constant's place."""
    if old in ("true", "false"):
        return ["false" if old == "true" else "true"]
    if old.isdigit():
        return [str(int(old) + 1)] + [str(int(old) - 1)] * (old != "0")
    digits = old.replace("'", "")
    value = int(digits, 16) if digits.startswith("0x") else float(digits.rstrip("f"))
    return ["(2 * %s)" % old if value else "1.0"]


# Kind, where it is found, what may stand there instead.
WORDS = [
    ("comparison", r"(?<= )([<>=!]=|[<>])(?= )", COMPARISONS.get),
    ("operator", r"(?<= )([-+*/%|&]|&&|\|\||<<|>>|[-+*/|&]=)(?=\s)", lambda old: [OPERATORS[old]]),
    ("operator", r"\+\+|--(?!>)", lambda old: ["--" if old == "++" else "++"]),
    ("operator", r"(?<=[(,\s])[-!](?=[\w(])", lambda old: [""]),
    ("constant", r"(?<![\w.])(0x[\da-fA-F]+|\d[\d']*(\.\d*)?(e[-+]?\d+)?f?|true|false)(?![\w.])",
     numbers),
    ("rounding", r"\b(float|double)\b(?! \w+\()",
     lambda old: ["double" if old == "float" else "float"])]


def words(code):
    for kind, pattern, news in WORDS:
        for match in re.finditer(pattern, code):
            for new in news(match[0]):
                yield kind, match.start(), match.end(), new


def statements(code):
    start = depth = 0
    for match in re.finditer(r"[;{}()]", code):
        depth += {"(": 1, ")": -1}.get(match[0], 0)
        if match[0] == ";" and depth == 0:
            text = code[start:match.start()]
            begin = start + len(text) - len(text.lstrip())
            text = text.strip()
            if STATEMENT.match(text) and not DECLARATION.match(text):
                yield "statement", begin, match.start(), ""
        if match[0] in ";{}" and depth == 0:
            start = match.end()


def arguments(code):
    for call in re.finditer(r"(\w+)>?\(", code):
        if call[1] in ("if", "for", "while", "switch", "return", "operator"):
            continue
        depth, start, found = 0, call.end(), []
        for match in re.finditer(r"[][(){},;]", code[call.end():]):
            at = call.end() + match.start()
            if depth == 0 and match[0] in ",)":
                found.append((start, at))
                start = at + 1
            if match[0] == ";" or depth == 0 and match[0] == ")":
                break
            depth += {"(": 1, "[": 1, "{": 1, ")": -1, "]": -1, "}": -1}.get(match[0], 0)
        for (a, b), (c, d) in zip(found, found[1:]):
            a += len(code[a:b]) - len(code[a:b].lstrip())
            one, two = code[a:b].strip(), code[c:d].strip()
            if one and two and one != two and not re.search(r"\w[\w>] [*&]*\w+( =.*)?$", one):
                yield "argument", a, d, two + ", " + one


def faults_of(path):
    source = (PROJECT / path).read_text()
    code = HIDDEN.sub(lambda hidden: re.sub(r"[^\n]", " ", hidden[0]), source)
    seen = collections.Counter()
    for kind, start, end, text in itertools.chain(words(code), statements(code), arguments(code)):
        if kind == "argument" and code[start:end] != source[start:end]:
            continue  # a text among them
        low, high = source.rfind("\n", 0, start) + 1, source.find("\n", end)
        before = " ".join(source[low:high].split())
        after = " ".join((source[low:start] + text + source[end:high]).split())
        seen[before, after] += 1
        yield Fault(path, start, end, text, kind, before, after, seen[before, after])


def chosen_faults(seed, only):
    """All faults, in an order in which each kind has the same share."""
    files = subprocess.run(["git", "ls-files", *FOLDERS], cwd=PROJECT, check=True, text=True,
                           stdout=subprocess.PIPE).stdout.split()
    kinds = collections.defaultdict(list)
    for path in sorted(files):
        if path.endswith((".cpp", ".h", ".inl")) and path.startswith(tuple(only)):
            for fault in faults_of(path):
                kinds[fault.kind].append(fault)
    dice = random.Random(seed)
    for kind in sorted(kinds):
        dice.shuffle(kinds[kind])
    while any(kinds.values()):
        for kind in sorted(kinds):
            if kinds[kind]:
                yield kinds[kind].pop()


def equivalents():
    """(path, line before, line after, number, 0 for all) of each fault that no test can see."""
    blocks = EQUIVALENT.read_text().split("\n\n") if EQUIVALENT.exists() else []
    for block in blocks:
        lines = [line for line in block.strip().split("\n") if not line.startswith("#")]
        if lines and lines[0]:
            path, _, number = lines[0].partition(" #")
            yield path, lines[1][2:], lines[2][2:], int(number or 0)


class Copy:
    """The project's files in a folder of their own, built and tested there."""

    def __init__(self, folder):
        self.source, self.build = folder / "source", folder / "build"
        self.source.mkdir(parents=True, exist_ok=True)
        files = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=PROJECT,
                               check=True, text=True, stdout=subprocess.PIPE).stdout.split("\n")
        files = {name for name in files if name and (PROJECT / name).is_file()}
        for old in self.source.rglob("*"):
            if old.is_file() and str(old.relative_to(self.source)) not in files:
                old.unlink()
        for name in files:
            old, new = PROJECT / name, self.source / name
            if not new.exists() or old.read_bytes() != new.read_bytes():
                new.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(old, new)
        kernels = self.source / "orvane" / "CMakeLists.txt"
        kernels.write_text(kernels.read_text().replace("-O3", "-O1"))  # quicker to build
        settings = ["-DCMAKE_BUILD_TYPE=Quick", "-DCMAKE_CXX_FLAGS_QUICK=-O1 -w"]
        if "PYTHON2" in os.environ:
            settings.append("-DPYTHON2=" + os.environ["PYTHON2"])
        self.run(["cmake", "-G", "Ninja", "-S", str(self.source), "-B", str(self.build), *settings])
        self.native = None
        if not (self.compiles() and self.tests_pass("-R", NATIVE) and self.native_passes()
                and self.scripts_pass()):
            sys.exit("without a fault the suite fails already: see " + str(self.build))

    def run(self, command):
        """Whether the command succeeds."""
        process = subprocess.Popen(
            command, cwd=self.build if self.build.exists() else None, start_new_session=True,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env=dict(os.environ, GTEST_FAIL_FAST="1", LC_ALL="C.UTF-8"))
        try:
            return process.wait() == 0
        finally:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)

    def compiles(self, *targets):
        return self.run(["ninja", *targets])

    def tests_pass(self, which, pattern):
        return self.run(["ctest", "--stop-on-failure", "--timeout", str(TIMEOUT), which, pattern])

    def native_passes(self):
        """Whether the native tests pass; a program without the fault in it is not run again."""
        program = (self.build / "bin" / "native_tests").read_bytes()
        self.native = self.native or program
        return program == self.native or self.tests_pass("-R", NATIVE)

    def scripts_pass(self):
        return self.tests_pass("-E", NATIVE + "|" + SLOW) and self.tests_pass("-R", SLOW)

    def outcome(self, fault):
        file = self.source / fault.path
        source = file.read_text()
        file.write_text(source[:fault.start] + fault.text + source[fault.end:])
        try:
            if not self.compiles("native_tests"):
                return "does not compile"
            if not self.native_passes():
                return "caught"
            if not self.compiles():
                return "does not compile"
            return "survived" if self.scripts_pass() else "caught"
        finally:
            file.write_text(source)


def main():
    options = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    options.add_argument("--seed", type=int, default=1)
    options.add_argument("--count", type=int, default=300, help="faults that compile")
    options.add_argument("--only", action="append", metavar="PATH", help="folder or file")
    options.add_argument("--again", action="store_true", help="repeat the survivors")
    options.add_argument("--jobs", type=int, default=1, help="copies to work with at a time")
    options.add_argument("--list", action="store_true", help="show the faults, make none")
    options.add_argument("--folder", type=pathlib.Path, help="of the copy and the outcomes",
                         default=pathlib.Path(tempfile.gettempdir()) / "orvane-mutations")
    options = options.parse_args()

    faults, lock = chosen_faults(options.seed, options.only or [""]), threading.Lock()
    known, count = set(equivalents()), collections.Counter()
    survivors = collections.defaultdict(list)
    record = options.folder / "outcomes"
    lines = record.read_text().splitlines() if record.exists() else []
    outcomes = {tuple(key): outcome for key, outcome in map(json.loads, lines)}
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))

    def work(number):
        copy = None if options.list else Copy(options.folder / str(number))
        while True:
            with lock:
                fault = next(faults, None)
                if not fault or sum(count.values()) - count["does not compile"] >= options.count:
                    return
            line = (PROJECT / fault.path).read_text().count("\n", 0, fault.start) + 1
            text = "%s:%d: %s\n    - %s\n    + %s" % (
                fault.path, line, fault.kind, fault.before, fault.after)
            key = (fault.path, fault.before, fault.after, fault.number)
            is_known = key in known or (*key[:3], 0) in known
            outcome = "equivalent" if is_known else outcomes.get(key)
            if options.list:
                outcome = "chosen"
                print(text)
            elif outcome is None or outcome == "survived" and options.again:
                outcome = copy.outcome(fault)
                with lock, record.open("a") as file:
                    print(json.dumps([key, outcome]), file=file)
                    print("%s %s" % (outcome, text), flush=True)
            with lock:
                count[outcome] += 1
                if outcome == "survived":
                    survivors[os.path.dirname(fault.path)].append(text)

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        try:
            list(pool.map(work, range(1 if options.list else options.jobs)))
        except KeyboardInterrupt:
            options.count = 0  # each finishes the fault at hand
    for folder in sorted(survivors):
        print("\n%s: %d survived" % (folder, len(survivors[folder])))
        print("\n".join(survivors[folder]))
    print(", ".join("%d %s" % (number, outcome) for outcome, number in sorted(count.items())))


if __name__ == "__main__":
    main()
