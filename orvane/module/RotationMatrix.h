#pragma once

#include <Python.h>

namespace orvane::binding {

/// The upper left 3x3 part of a script's matrix, a tuple of 4 tuples of 4 floats. The fourth row
/// and column are not looked at; integers are refused.
struct RotationMatrix {
    /// @throws ErrorAlreadySet (TypeError) at the first thing that is wrong
    explicit RotationMatrix(PyObject *object);

    double rows[3][3];
};

} // namespace orvane::binding
