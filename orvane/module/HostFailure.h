#pragma once

// What a script hears when an operation of the host fails: the host's own Python error where it has
// set one, else the cause as far as the module knows it.

#include <Python.h>

namespace orvane::binding {

/// Throws ErrorAlreadySet with the Python error that the host has set, or else with a RuntimeError
/// that names the operation and the class.
[[noreturn]] void RaiseHostFailure(const char *operation, const char *className);
/// The same for the conversion of the argument with the given 0-based index.
[[noreturn]] void RaiseHostFailure(const char *operation, unsigned int argument);
/// The same for the creation of an object. Where the host has set no error, throws what made the
/// class's factory fail since ForgetFactoryFailure, such as std::bad_alloc, if that was it.
[[noreturn]] void RaiseCreationFailure(const char *operation, const char *className);

/// A new reference from the host, passed on.
/// @throws as RaiseHostFailure where it is null
inline PyObject *FromHost(PyObject *result, const char *operation, const char *className)
{
    if (!result)
        RaiseHostFailure(operation, className);
    return result;
}

/// A factory fails without a Python error, for the host may call it where none is wanted. It notes
/// here the exception being handled, or that there is no memory for the object.
void NoteFactoryFailure();
void ForgetFactoryFailure() noexcept;

} // namespace orvane::binding
