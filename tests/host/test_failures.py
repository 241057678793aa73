"""What a script sees when the host fails: a line per operation and way to fail. Nothing is left
behind, nothing has changed, and the same call succeeds afterwards. Runs in trying_host."""

import ctypes
import gc
import os
import subprocess
import sys
import tempfile
import unittest
import weakref

HOST = ctypes.CDLL(None)
HOST.HostLog.restype = ctypes.c_char_p
HOST.HostFailNew.argtypes = [ctypes.c_int64]
HOST.HostFailureIsPending.restype = ctypes.c_bool
(OBEYS, REFUSES, SAYS_WHY, THROWS, GIVES_NOTHING, SHOWS_WEAK_ROOT, SAYS_WHY_AND_THROWS,
 LEAVES_POINTER) = range(8)
THROWN = "RuntimeError: thrown by the host"
OWN = "ArithmeticError: the host's own words"


def import_fails_whole():
    """Fails each of the host's part in an import. Returns what did not go as it should."""
    wrong = []
    for operation, order, text in [
            ("TeskInitializePyType", THROWS, THROWN), ("TeskInitializePyType", THROWS, THROWN),
            ("ITeskClasses::RegisterClasses", THROWS, THROWN),
            ("TeskRegisterToModule", THROWS, THROWN), ("TeskRegisterToModule", SAYS_WHY, OWN),
            ("TeskRegisterToModule", SAYS_WHY_AND_THROWS, OWN),
            ("TeskRegisterToModule", REFUSES,
             "RuntimeError: TeskRegisterToModule failed for class SHBuilder")]:
        HOST.HostExpect(operation, order)
        try:
            import _Orvane
            wrong.append("%s: imported %r" % (operation, dir(_Orvane)))
        except Exception as error:
            if "%s: %s" % (type(error).__name__, error) != text:
                wrong.append("%s: %r" % (operation, error))
        if "_Orvane" in sys.modules:
            wrong.append("%s: a module is left" % operation)
    HOST.HostObey()
    return wrong


IMPORT_FAULTS = import_fails_whole()

import _Orvane  # noqa: E402  (the host obeys now)

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))),
                                "python"))
from support import OrvaneTest, WorldTest  # noqa: E402

NO_MEMORY = "MemoryError: "
COPY = "world.builder.CopySH(world.set)"
NEW = "_Orvane.SphericalHarmonic()"
SIZE = "world.set.SetNumBands(2)"

# An operation, what a script does, and what it gets where the operation refuses (None where it has
# no way to) and where it throws.
FAILURES = [
    ("TeskCreateInstance", COPY,
     "RuntimeError: TeskCreateInstance failed for class SphericalHarmonic", THROWN),
    ("ITeskClasses::FindInterface", COPY,
     "RuntimeError: TeskCreateInstance failed for class SphericalHarmonic", THROWN),
    ("ITeskClasses::FindInterface", NEW, NO_MEMORY, NO_MEMORY),
    ("ITeskClasses::TrackInstance", COPY, None, THROWN),
    ("TeskInternalCreate", COPY, NO_MEMORY, NO_MEMORY),
    ("TeskInternalCreate", NEW, NO_MEMORY, NO_MEMORY),
    ("ITeskPyOS::WrapObject", COPY,
     "RuntimeError: ITeskPyOS::WrapObject failed for class SphericalHarmonic", THROWN),
    ("TeskWrapObjectForPython", "world.builder.AddSH(world.set, world.other)",
     "RuntimeError: TeskWrapObjectForPython failed for class SphericalHarmonic", THROWN),
    ("TeskCreateInstanceFromPython", NEW,
     "RuntimeError: TeskCreateInstanceFromPython failed for class SphericalHarmonic", THROWN),
    ("TeskExtractArgumentImpl", SIZE,
     "RuntimeError: TeskExtractArgumentImpl failed for argument 0", THROWN),
    ("TeskUnwrapObjectFromPython", SIZE,
     "TypeError: Could not match self to expected type: class SphericalHarmonic.", THROWN),
    ("TeskUnwrapObjectFromPython", "world.builder.GetValueAt(world.set, 1.0, 0.5)",
     "TypeError: Could not match self to expected type: class SHBuilder.", THROWN),
    ("PyThunkLeave", COPY, None, THROWN),
    ("PyThunkLeave", "world.set.GetAsBuffer()", None, THROWN),
    ("PyThunkLeave", "world.builder.CopySH(5)", None,
     "TypeError: Could not match argument 0 to expected type: class SphericalHarmonic.")]


class FailureTest(WorldTest):
    def outcome(self, expression):
        try:
            return repr(type(eval(expression, {"world": self.world, "_Orvane": _Orvane})))
        except Exception as error:
            sys.exc_clear()
            return "%s: %s" % (type(error).__name__, error)

    def test_import_is_whole_or_not_at_all(self):
        self.assertEqual(IMPORT_FAULTS, [])
        HOST.HostExpect("TeskRegisterToModule", THROWS, 1)
        self.assertRaises(RuntimeError, ctypes.PyDLL(_Orvane.__file__).init_Orvane)
        HOST.HostObey()
        self.assertIs(sys.modules.get("_Orvane"), _Orvane)  # for it was there before
        self.assertEqual(sorted(name for name in dir(_Orvane) if name[0] != "_"),
                         ["SHBuilder", "SphericalHarmonic"])

    def test_failures(self):
        # An addition has happened when its result cannot be shown: it is done with a set of zeros.
        self.world.other.Clean()
        for operation, expression, refused, thrown in FAILURES:
            ways = {THROWS: thrown}
            if refused:
                ways.update({REFUSES: refused, SAYS_WHY: OWN, SAYS_WHY_AND_THROWS: OWN})
            if operation == "TeskCreateInstance":
                ways[GIVES_NOTHING] = refused
            elif operation == "ITeskClasses::FindInterface":
                ways[LEAVES_POINTER] = refused
            for order, expected in ways.items():
                before = self.world.snapshot()
                usual = self.outcome(expression)
                HOST.HostExpect(operation, order)
                outcome = self.outcome(expression)
                HOST.HostObey()
                self.assertEqual(outcome, expected, (operation, order, expression))
                self.assertEqual(self.world.snapshot(), before, (operation, order, expression))
                self.assertEqual(self.outcome(expression), usual)
        HOST.TeskResetReport()  # an object that is none was reported

    def test_what_the_host_throws_at_an_end_is_nobodys_business(self):
        for operation in ("ITeskClasses::TrackInstance", "TeskInternalFreeObject"):
            sh = _Orvane.SphericalHarmonic()
            HOST.HostExpect(operation, THROWS)
            del sh
            HOST.HostObey()


LOAD = """
import ctypes, sys
host = ctypes.CDLL(None)
host.HostFailNew.argtypes = [ctypes.c_int64]
host.HostFailureIsPending.restype = ctypes.c_bool
host.HostFailNew(int(sys.argv[1]))
try:
    import _Orvane
    outcome = "imported"
except MemoryError:
    outcome = "MemoryError"
    assert "_Orvane" not in sys.modules
if host.HostFailureIsPending():
    outcome = "enough"
host.HostFailNew(0)
import _Orvane
builder, sh = _Orvane.SHBuilder(), _Orvane.SphericalHarmonic()
builder.GenerateLookUpTables(8)
sh.SetNumBands(3)
assert builder.GetValueAt(sh, 1.0, 1.0) == 0.0
sys.stdout.write(outcome)
"""


class LoadTest(unittest.TestCase):
    def test_memory_runs_out_while_the_library_is_loaded_and_imported(self):
        with tempfile.NamedTemporaryFile(suffix=".py") as script:
            script.write(LOAD)
            script.flush()
            outcomes = []
            while not outcomes or outcomes[-1] != "enough":
                process = subprocess.Popen(
                    [os.environ["TRYING_HOST"], script.name, str(len(outcomes) + 1)],
                    stdout=subprocess.PIPE, stderr=subprocess.PIPE)
                outcome, errors = process.communicate()
                self.assertEqual(process.returncode, 0, errors)
                outcomes.append(outcome)
                self.assertLess(len(outcomes), 1000)
        # What fails while the library is loaded is made up for by the import.
        self.assertIn("imported", outcomes)
        self.assertIn("MemoryError", outcomes)
        print "%d points of failure" % (len(outcomes) - 1)


class LogTest(OrvaneTest):
    def test_a_call_and_an_end(self):
        builder = _Orvane.SHBuilder()
        sh = _Orvane.SphericalHarmonic()
        told = []
        HOST.HostForgetLog()
        copied = builder.CopySH(sh)
        self.assertEqual(HOST.HostLog().splitlines(), [
            "TeskUnwrapObjectFromPython", "TeskUnwrapObjectFromPython",
            "TeskCreateInstance SphericalHarmonic", "TeskInternalCreate SphericalHarmonic",
            "ITeskClasses::TrackInstance +1", "ITeskClasses::FindInterface IRoot",
            "ITeskPyOS::WrapObject", "TeskWrapObjectForPython", "PyThunkLeave"])
        reference = weakref.ref(copied, told.append)
        HOST.HostForgetLog()
        del copied
        gc.collect()
        self.assertEqual(HOST.HostLog().splitlines(),
                         ["ITeskClasses::TrackInstance -1", "TeskInternalFreeObject"])
        self.assertEqual(told, [reference])


if __name__ == "__main__":
    unittest.main()
