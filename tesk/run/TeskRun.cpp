// tesk-run SCRIPT [ARGUMENT...]: the smallest host. It embeds Python, makes the modules beside the
// host's library importable, runs the script and, when Python has ended, reports what is left.

#include <Python.h>

#include "platform/LibraryFolder.h"
#include "tesk/TeskReport.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr int usageError = 2;

/// Adds `directory` behind the script's own, which is first.
/// @return false with a Python error set
bool AddToModulePath(const std::string &directory)
{
    PyObject *const path = PySys_GetObject(const_cast<char *>("path"));
    PyObject *const entry = PyString_FromString(directory.c_str());
    const bool added = path && entry && PyList_Insert(path, 1, entry) == 0;
    Py_XDECREF(entry);
    return added;
}

/// The status that the SystemExit at hand asks for.
int ExitStatus()
{
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    PyObject *const code = PyObject_GetAttrString(value, "code");
    int status = 1;
    if (code == Py_None) {
        status = 0;
    } else if (code && PyInt_Check(code)) {
        status = static_cast<int>(PyInt_AS_LONG(code));
    } else {
        PyObject *const message = code ? PyObject_Str(code) : nullptr;
        if (message)
            std::fprintf(stderr, "%s\n", PyString_AS_STRING(message));
        else
            PyErr_Print();
        Py_XDECREF(message);
    }
    Py_XDECREF(code);
    Py_XDECREF(traceback);
    Py_XDECREF(value);
    Py_XDECREF(type);
    return status;
}

/// Runs the script as __main__.
/// @return the script's exit status
int Run(char *path)
{
    PyObject *const globals = PyModule_GetDict(PyImport_AddModule("__main__"));
    PyObject *const name = PyString_FromString(path);
    // Python opens the file: its C library may be another than this program's.
    PyObject *const file = PyFile_FromString(path, const_cast<char *>("rU"));
    PyObject *result = nullptr;
    if (file && name && PyDict_SetItemString(globals, "__file__", name) == 0)
        result = PyRun_FileEx(PyFile_AsFile(file), path, Py_file_input, globals, globals, false);
    Py_XDECREF(file);
    Py_XDECREF(name);
    Py_FlushLine();
    if (result) {
        Py_DECREF(result);
        return 0;
    }
    if (PyErr_ExceptionMatches(PyExc_SystemExit))
        return ExitStatus();
    PyErr_Print();
    return 1;
}

/// Python's exit function: calls the one before it (`previous`, or None), then lets go of the
/// script's data. Python collects cycles after this and never again, and would leave those that the
/// script's variables hold.
PyObject *ReleaseScript(PyObject *previous, PyObject *)
{
    PyObject *const result = previous == Py_None ? nullptr : PyObject_CallObject(previous, nullptr);
    if (!result && PyErr_Occurred())
        PyErr_Print();
    Py_XDECREF(result);
    for (const char *name : {"last_type", "last_value", "last_traceback"})
        PySys_SetObject(const_cast<char *>(name), nullptr);
    PyDict_Clear(PyModule_GetDict(PyImport_AddModule("__main__")));
    Py_RETURN_NONE;
}

PyMethodDef releaseScript = {"ReleaseScript", ReleaseScript, METH_NOARGS, nullptr};

void Finalize()
{
    char exitFunction[] = "exitfunc";
    PyObject *previous = PySys_GetObject(exitFunction);
    PyObject *const release = PyCFunction_New(&releaseScript, previous ? previous : Py_None);
    PySys_SetObject(exitFunction, release);
    Py_XDECREF(release);
    Py_Finalize();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s SCRIPT [ARGUMENT...]\n", argv[0]);
        return usageError;
    }
    if (std::FILE *const file = std::fopen(argv[1], "rb")) {
        std::fclose(file);
    } else {
        std::perror(argv[1]);
        return usageError;
    }

    // Whose libraries are used.
#if defined(_WIN32)
    if (!std::getenv("PYTHONHOME"))
        Py_SetPythonHome(const_cast<char *>(TESK_RUN_PYTHON));
#else
    Py_SetProgramName(const_cast<char *>(TESK_RUN_PYTHON));
#endif
    Py_Initialize();
    PySys_SetArgv(argc - 1, argv + 1);
    int status = 1;
    const void *const inHost = reinterpret_cast<const void *>(&TeskReportTotals);
    if (AddToModulePath(platform::LibraryFolder("tesk.dll", inHost)))
        status = Run(argv[1]);
    else
        PyErr_Print();
    Finalize();

    const TeskTotals left = TeskReportTotals();
    std::fputs(TeskReportText().c_str(), stderr);
    if (status != 0)
        return status;
    return left.liveObjects || left.allocations || left.assertionHits ? 1 : 0;
}
