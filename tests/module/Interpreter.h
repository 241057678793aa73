#pragma once

// Python for native tests.

#include <Python.h>

#include <gtest/gtest.h>

#include <string>

/// An owned reference.
class Reference {
public:
    explicit Reference(PyObject *object) : object(object) {}
    ~Reference() { Py_XDECREF(object); }
    Reference(const Reference &) = delete;
    Reference &operator=(const Reference &) = delete;
    PyObject *Get() const { return object; }

private:
    PyObject *object;
};

/// "TypeError: text" of the Python exception at hand, which is cleared; empty where there is none.
inline std::string TakeError()
{
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    if (!type)
        return "";
    PyErr_NormalizeException(&type, &value, &traceback);
    const Reference ownedType(type), ownedValue(value), ownedTraceback(traceback);
    const Reference text(PyObject_Str(value));
    return std::string(PyExceptionClass_Name(type)).substr(sizeof("exceptions.") - 1) + ": " +
           PyString_AsString(text.Get());
}
