// Conversion of Python arguments, and the exit of hand-written methods.

#include <Python.h>

#include "teskexposure/include/TeskPython"

#include <limits>

namespace {

/// @return false, for the caller to return
bool RefuseType(unsigned int index, const char *expected)
{
    PyErr_Format(PyExc_TypeError, "Could not match argument %i to expected type: %s.",
                 static_cast<int>(index), expected);
    return false;
}

/// Takes ints and longs, their subclasses included; runs no Python code.
template <class Integer> bool ExtractInteger(PyObject *object, Integer &value, unsigned int index)
{
    using Limits = std::numeric_limits<Integer>;
    static_assert(sizeof(Integer) < sizeof(long long));
    long long wide = 0;
    int overflow = 0;
    if (PyInt_Check(object))
        wide = PyInt_AS_LONG(object);
    else if (PyLong_Check(object))
        wide = PyLong_AsLongLongAndOverflow(object, &overflow);
    else
        return RefuseType(index, "int");
    if (overflow || wide < Limits::min() || wide > Limits::max()) {
        PyErr_Format(PyExc_OverflowError, "Argument %i is out of the range %lld to %lld.",
                     static_cast<int>(index), static_cast<long long>(Limits::min()),
                     static_cast<long long>(Limits::max()));
        return false;
    }
    value = static_cast<Integer>(wide);
    return true;
}

/// Whether `object` offers a float value. Old-style instances have every slot of a number, and
/// complex numbers have this one only to refuse. False with a Python error set where the look at an
/// instance raises anything but AttributeError.
bool HasFloatValue(PyObject *object)
{
    if (PyComplex_Check(object))
        return false;
    if (PyInstance_Check(object)) {
        PyObject *const method = PyObject_GetAttrString(object, "__float__");
        if (!method && PyErr_ExceptionMatches(PyExc_AttributeError))
            PyErr_Clear();
        Py_XDECREF(method);
        return method;
    }
    const PyNumberMethods *const number = Py_TYPE(object)->tp_as_number;
    return number && number->nb_float;
}

} // namespace

bool TeskExtractArgumentImpl(PyObject *object, int &value, unsigned int index, bool)
{
    return ExtractInteger(object, value, index);
}

bool TeskExtractArgumentImpl(PyObject *object, unsigned int &value, unsigned int index, bool)
{
    return ExtractInteger(object, value, index);
}

bool TeskExtractArgumentImpl(PyObject *object, double &value, unsigned int index, bool)
{
    if (PyFloat_Check(object)) {
        value = PyFloat_AS_DOUBLE(object);
        return true;
    }
    if (!HasFloatValue(object))
        return !PyErr_Occurred() && RefuseType(index, "float");
    const double converted = PyFloat_AsDouble(object);
    if (converted == -1.0 && PyErr_Occurred())
        return false;
    value = converted;
    return true;
}

bool TeskExtractArgumentImpl(PyObject *object, float &value, unsigned int index, bool tag)
{
    double wide = 0.0;
    if (!TeskExtractArgumentImpl(object, wide, index, tag))
        return false;
    value = static_cast<float>(wide); // beyond the range of single precision: an infinity
    return true;
}

/// Sees to an error where a method failed without one.
PyObject *PyThunkLeave(PyObject *result)
{
    if (!result && !PyErr_Occurred())
        PyErr_SetString(PyExc_TypeError, "The method does not apply to this object.");
    return result;
}
