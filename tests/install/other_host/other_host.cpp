// Another host library, written against the installed headers alone, and unlike the stand-in where
// the contract lets it: every wrapping makes a new Python object, which holds the weak interface of
// the native one and hands out the IRoot inside it; numbers must be floats and ints exactly.

#include <Python.h>

#include "teskexposure/include/TeskHost"
#include "teskexposure/include/TeskPython"
#include "vexcore/include/VEXAssert"
#include "vexcore/include/VEXMemory"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

/// What the host's own objects do with the operations of IRoot: nothing.
template <class Interface> struct Service : Interface {
    ClassDescriptor *GetClassDescriptor() override { return nullptr; }
    bool QueryInterface(const Tx::IID &, void **, int) override { return false; }
    void Lock() override {}
    void Unlock() override {}
    int ReservedQuery() override { return 0; }
    int GetLockCount() override { return 1; }
    IRoot *GetRoot() override { return this; }
    void DeleteThis() override {}
};

struct Classes : Service<ITeskClasses> {
    void RegisterClasses(const Tx::ClassRegistrationList &registrations) override
    {
        list = registrations;
        for (const Tx::ClassRegistration &registration : list)
            std::printf("other host: class %s\n", registration.descriptor->clsid->GetName());
    }
    bool FindInterface(IRoot *object, const Tx::IID &, void **out, ClassDescriptor *, int) override
    {
        object->Lock();
        *out = object;
        return true;
    }
    void TrackInstance(IRoot *, int, int) override {}

    Tx::ClassRegistrationList list;
} classes;

struct Services : Service<ITeskPyOS> {
    PyObject *WrapObject(IRoot *object) override { return TeskWrapObjectForPython(object); }
} services;

struct Wrapper {
    PyObject_HEAD
    IWeakObject *native;
};

void Destroy(PyObject *self)
{
    if (IWeakObject *const native = reinterpret_cast<Wrapper *>(self)->native)
        native->Unlock();
    PyObject_Del(self);
}

template <typename Value, typename Take>
bool Extract(PyObject *object, Value &value, PyTypeObject *type, Take take)
{
    if (Py_TYPE(object) != type) {
        PyErr_SetString(PyExc_TypeError, "other host: not that number");
        return false;
    }
    value = static_cast<Value>(take(object));
    return true;
}

} // namespace

ITeskClasses *TxClasses = &classes;
ITeskPyOS *PyOS = &services;

// clang-format off
namespace Tx {
Clsid::Clsid(const char *moduleName, const char *className) : module(moduleName), name(className) {}
const char *Clsid::GetName() const { return name; }
const char *Clsid::GetModule() const { return module; }
bool Clsid::IsEqual(const Clsid &other) const { return std::strcmp(name, other.name) == 0; }
IID::IID(const char *interfaceName) : name(interfaceName) {}
const char *IID::GetName() const { return name; }
bool IID::IsEqual(const IID &other) const { return std::strcmp(name, other.name) == 0; }
} // namespace Tx
// clang-format on

bool TeskCreateInstance(const Tx::Clsid &clsid, const Tx::IID &iid, void **out)
{
    for (const Tx::ClassRegistration &registration : classes.list) {
        if (registration.descriptor->clsid->IsEqual(clsid))
            return registration.factory(iid, out);
    }
    return false;
}

void *TeskInternalCreate(size_t size, const char *)
{
    return std::malloc(size);
}
void TeskInternalFreeObject(void *memory)
{
    std::free(memory);
}
void *VEXMallocWithTracking(size_t bytes, const char *, const char *, int)
{
    return std::malloc(bytes);
}
void VEXFreeWithTracking(void *memory)
{
    std::free(memory);
}
VEXAssertResult VEXAssertHelper::Handle(const char *, const char *, int)
{
    return VEXAssertContinue;
}

void TeskInitializePyType(_typeobject *type, const Tx::Clsid &clsid, const char *doc,
                          const Tx::InterfaceEntry *, TeskNewFunction newFunction)
{
    type->tp_name = clsid.GetName();
    type->tp_basicsize = sizeof(Wrapper);
    type->tp_dealloc = &Destroy;
    type->tp_flags = Py_TPFLAGS_DEFAULT;
    type->tp_doc = doc;
    type->tp_new = newFunction;
}
void TeskRegisterToModule(PyObject *module, const Tx::ClassRegistrationList &registrations,
                          const ModuleMethodList &, const ValueChooserMap &, const HostList &,
                          const HostList &, const MethodSignatureMap &)
{
    for (const Tx::ClassRegistration &registration : registrations) {
        _typeobject *const type = registration.descriptor->pyType;
        type->tp_methods = registration.descriptor->methods;
        if (PyType_Ready(type) != 0)
            return;
        PyModule_AddObject(module, type->tp_name, reinterpret_cast<PyObject *>(type));
    }
}
PyObject *TeskCreateInstanceFromPython(const Tx::Clsid &clsid, PyObject *, PyObject *)
{
    void *object = nullptr;
    if (!TeskCreateInstance(clsid, Tx::IID("IRoot"), &object))
        return nullptr;
    PyObject *const wrapper = TeskWrapObjectForPython(static_cast<IRoot *>(object));
    static_cast<IRoot *>(object)->Unlock();
    return wrapper;
}
IRoot *TeskUnwrapObjectFromPython(PyObject *object)
{
    return Py_TYPE(object)->tp_dealloc == &Destroy ? reinterpret_cast<Wrapper *>(object)->native
                                                   : nullptr;
}
PyObject *TeskWrapObjectForPython(IRoot *object)
{
    Wrapper *const wrapper = PyObject_New(Wrapper, object->GetClassDescriptor()->pyType);
    void *native = nullptr;
    if (!wrapper || !object->QueryInterface(Tx::IID("IWeakObject"), &native, 0))
        return nullptr;
    wrapper->native = static_cast<IWeakObject *>(native);
    return reinterpret_cast<PyObject *>(wrapper);
}
bool TeskExtractArgumentImpl(PyObject *object, int &value, unsigned int, bool)
{
    return Extract(object, value, &PyInt_Type, &PyInt_AsLong);
}
bool TeskExtractArgumentImpl(PyObject *object, unsigned int &value, unsigned int, bool)
{
    return Extract(object, value, &PyInt_Type, &PyInt_AsLong);
}
bool TeskExtractArgumentImpl(PyObject *object, float &value, unsigned int, bool)
{
    return Extract(object, value, &PyFloat_Type, &PyFloat_AsDouble);
}
bool TeskExtractArgumentImpl(PyObject *object, double &value, unsigned int, bool)
{
    return Extract(object, value, &PyFloat_Type, &PyFloat_AsDouble);
}
PyObject *PyThunkLeave(PyObject *result)
{
    return result;
}
