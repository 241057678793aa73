#pragma once

// The Python objects that stand for host objects.

#include <Python.h>

#include "teskexposure/include/TeskPython"

namespace tesk {

/// One per host object, as long as it lives. It owns one reference to the host object and none to
/// Python objects, so that it takes no part in garbage collection.
struct Wrapper {
    PyObject_HEAD
    IRoot *native;      ///< the object's GetRoot()
    PyObject *weakrefs; ///< Python's list of weak references to the wrapper
};

/// The destructor of every wrapper, and thereby the mark of their types: they cannot be subclassed,
/// so that no other type has it.
void DestroyWrapper(PyObject *self);

} // namespace tesk
