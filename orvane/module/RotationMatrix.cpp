#include "orvane/module/RotationMatrix.h"

#include "orvane/module/PythonErrors.h"

namespace orvane::binding {

namespace {

// An item is null in a tuple that is still being built.

bool IsTuple(PyObject *object)
{
    return object && PyTuple_Check(object);
}

bool IsFloat(PyObject *object)
{
    return object && PyFloat_Check(object);
}

} // namespace

RotationMatrix::RotationMatrix(PyObject *object)
{
    if (!IsTuple(object))
        RaiseTypeError("Second argument must be a tuple");
    if (PyTuple_GET_SIZE(object) != 4)
        RaiseTypeError("matrix tuple should have 4 sub-tuples");
    for (int i = 0; i < 3; ++i) {
        PyObject *const row = PyTuple_GET_ITEM(object, i);
        if (!IsTuple(row))
            RaiseTypeError("matrix tuple should contain more tuples");
        if (PyTuple_GET_SIZE(row) != 4)
            RaiseTypeError("inner matrix tuples should have 4 values");
        for (int j = 0; j < 3; ++j) {
            PyObject *const value = PyTuple_GET_ITEM(row, j);
            if (!IsFloat(value))
                RaiseTypeError("inner matrix tuples should contain floats");
            // Read from the object itself: a subclass's __float__ is not called.
            rows[i][j] = PyFloat_AS_DOUBLE(value);
        }
    }
}

} // namespace orvane::binding
