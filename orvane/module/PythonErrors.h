#pragma once

// The border between C++ exceptions and Python's: nothing is thrown into C.

#include <Python.h>

namespace orvane::binding {

/// Thrown where a Python exception has been set already.
struct ErrorAlreadySet {};

/// Sets a TypeError, its text formatted as by PyErr_Format, and throws ErrorAlreadySet.
[[noreturn]] void RaiseTypeError(const char *format, ...);

/// TypeError: the argument with the given 0-based index is not a coefficient set.
[[noreturn]] void RaiseNotASet(unsigned int argument);

/// Sets the Python exception that corresponds to the C++ exception being handled. One that is set
/// already stays.
void SetPythonError() noexcept;

/// The result of `call`, or null with a Python exception set where it throws.
template <typename Call> PyObject *Guarded(const Call &call) noexcept
{
    try {
        return call();
    } catch (...) {
        SetPythonError();
        return nullptr;
    }
}

} // namespace orvane::binding
