#include "tesk/python/Wrapper.h"

#include "tesk/core/NeverDestroyed.h"
#include "tesk/core/ServiceObject.h"

#include <cstddef>
#include <new>
#include <unordered_map>

namespace tesk {
namespace {

using WrapperMap = std::unordered_map<IRoot *, Wrapper *>;

/// Host object (its GetRoot()) to living wrapper. Wrappers may outlive static destruction.
WrapperMap &Wrappers()
{
    static NeverDestroyed<WrapperMap> wrappers;
    return wrappers.object;
}

/// The type that stands for the objects of `root`'s class; null with a Python error set where no
/// module has registered it.
PyTypeObject *WrapperType(IRoot *root)
{
    const ClassDescriptor *const descriptor = root->GetClassDescriptor();
    PyTypeObject *const type = descriptor ? descriptor->pyType : nullptr;
    if (type && type->tp_dealloc == DestroyWrapper && (type->tp_flags & Py_TPFLAGS_READY))
        return type;
    PyErr_Format(PyExc_TypeError, "objects of class %s have no Python type",
                 descriptor ? descriptor->clsid->GetName() : "(none)");
    return nullptr;
}

PyObject *MakeWrapper(IRoot *root)
{
    PyTypeObject *const type = WrapperType(root);
    if (!type)
        return nullptr;
    Wrapper *const wrapper = PyObject_New(Wrapper, type);
    if (!wrapper)
        return nullptr;
    wrapper->native = nullptr;
    wrapper->weakrefs = nullptr;
    try {
        Wrappers().emplace(root, wrapper);
    } catch (const std::bad_alloc &) {
        Py_DECREF(wrapper);
        return PyErr_NoMemory();
    }
    wrapper->native = root;
    root->Lock();
    return reinterpret_cast<PyObject *>(wrapper);
}

class PythonServices final : public ServiceObject<ITeskPyOS> {
public:
    PyObject *WrapObject(IRoot *object) override { return TeskWrapObjectForPython(object); }
};

constinit PythonServices pythonServices;

} // namespace

void DestroyWrapper(PyObject *self)
{
    auto *const wrapper = reinterpret_cast<Wrapper *>(self);
    IRoot *const native = wrapper->native;
    // Out of the map first: whoever wraps the object again from here on gets a wrapper of its own.
    if (native)
        Wrappers().erase(native);
    if (wrapper->weakrefs)
        PyObject_ClearWeakRefs(self);
    PyObject_Del(self);
    if (native)
        native->Unlock();
}

} // namespace tesk

constinit ITeskPyOS *PyOS = &tesk::pythonServices;

IRoot *TeskUnwrapObjectFromPython(PyObject *object)
{
    if (!object || Py_TYPE(object)->tp_dealloc != tesk::DestroyWrapper)
        return nullptr;
    return reinterpret_cast<tesk::Wrapper *>(object)->native;
}

PyObject *TeskWrapObjectForPython(IRoot *object)
{
    if (!object) {
        PyErr_SetString(PyExc_SystemError, "there is no host object to wrap");
        return nullptr;
    }
    IRoot *const root = object->GetRoot();
    const auto known = tesk::Wrappers().find(root);
    if (known == tesk::Wrappers().end())
        return tesk::MakeWrapper(root);
    Py_INCREF(known->second);
    return reinterpret_cast<PyObject *>(known->second);
}
