#include "orvane/module/PythonErrors.h"

#include "orvane/base/Errors.h"

#include <cstdarg>
#include <new>
#include <stdexcept>

namespace orvane::binding {

namespace {

/// The class is named as the Microsoft compiler's type information names it.
void SetNotASetError(unsigned int argument) noexcept
{
    PyErr_Format(PyExc_TypeError, "Could not match argument %i to expected type: %s.",
                 static_cast<int>(argument), "class SphericalHarmonic");
}

/// Sets the Python exception for the C++ exception being handled.
void TranslateException() noexcept
{
    try {
        throw;
    } catch (const MissingSet &error) {
        SetNotASetError(static_cast<unsigned int>(error.argument));
    } catch (const NotReady &error) {
        PyErr_SetString(PyExc_RuntimeError, error.what());
    } catch (const std::out_of_range &error) {
        PyErr_SetString(PyExc_IndexError, error.what());
    } catch (const std::invalid_argument &error) {
        PyErr_SetString(PyExc_ValueError, error.what());
    } catch (const std::bad_alloc &) {
        PyErr_NoMemory();
    } catch (const std::length_error &) {
        PyErr_NoMemory();
    } catch (const std::exception &error) {
        PyErr_SetString(PyExc_RuntimeError, error.what());
    } catch (...) {
        PyErr_SetString(PyExc_SystemError, "unknown C++ exception");
    }
}

} // namespace

void RaiseTypeError(const char *format, ...)
{
    va_list values;
    va_start(values, format);
    PyObject *text = PyString_FromFormatV(format, values);
    va_end(values);
    if (text) {
        PyErr_SetObject(PyExc_TypeError, text);
        Py_DECREF(text);
    }
    throw ErrorAlreadySet();
}

void RaiseNotASet(unsigned int argument)
{
    SetNotASetError(argument);
    throw ErrorAlreadySet();
}

void SetPythonError() noexcept
{
    // Where there is one, whoever threw has said why: the module itself, or a host with an
    // exception of its own.
    if (!PyErr_Occurred())
        TranslateException();
}

} // namespace orvane::binding
