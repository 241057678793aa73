// What a binding cannot go below: functions that parse the same arguments as the module's methods
// and return the same kind of result, and do nothing else.

#include <Python.h>

namespace {

PyObject *NoArgument(PyObject *, PyObject *arguments)
{
    if (!PyArg_ParseTuple(arguments, ""))
        return nullptr;
    return PyInt_FromLong(0);
}

PyObject *OneInt(PyObject *, PyObject *arguments)
{
    int value;
    if (!PyArg_ParseTuple(arguments, "i", &value))
        return nullptr;
    Py_RETURN_NONE;
}

PyObject *TwoObjects(PyObject *, PyObject *arguments)
{
    PyObject *target;
    PyObject *source;
    if (!PyArg_ParseTuple(arguments, "OO", &target, &source))
        return nullptr;
    Py_INCREF(target);
    return target;
}

PyObject *ObjectAndAngles(PyObject *, PyObject *arguments)
{
    PyObject *set;
    double phi;
    double theta;
    if (!PyArg_ParseTuple(arguments, "Odd", &set, &phi, &theta))
        return nullptr;
    return PyFloat_FromDouble(0.0);
}

PyMethodDef methods[] = {
    {"NoArgument", NoArgument, METH_VARARGS, nullptr},
    {"OneInt", OneInt, METH_VARARGS, nullptr},
    {"TwoObjects", TwoObjects, METH_VARARGS, nullptr},
    {"ObjectAndAngles", ObjectAndAngles, METH_VARARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

} // namespace

PyMODINIT_FUNC initminimal()
{
    Py_InitModule("minimal", methods);
}
