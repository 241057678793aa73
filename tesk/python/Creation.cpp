// Host objects for scripts.

#include <Python.h>

#include "tesk/core/ClassRegistry.h"
#include "teskexposure/include/TeskPython"
#include "teskexposure/include/TeskSmartPtr"

PyObject *TeskCreateInstanceFromPython(const Tx::Clsid &clsid, PyObject *arguments,
                                       PyObject *keywords)
{
    if ((arguments && PyTuple_GET_SIZE(arguments) > 0) || (keywords && PyDict_Size(keywords) > 0)) {
        PyErr_Format(PyExc_TypeError, "%s() takes no arguments", clsid.GetName());
        return nullptr;
    }
    TeskSmartPtr<IRoot> object;
    if (!object.CreateInstance(clsid)) {
        if (PyErr_Occurred())
            return nullptr;
        if (tesk::FindClass(clsid))
            return PyErr_NoMemory();
        PyErr_Format(PyExc_RuntimeError, "class %s is not registered", clsid.GetName());
        return nullptr;
    }
    return TeskWrapObjectForPython(object.Get());
}
