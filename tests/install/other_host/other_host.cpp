// Another host library, written against the installed headers alone. It can register classes and
// create their objects; of Python it knows nothing, so that the module imports but stays empty.

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
    PyObject *WrapObject(IRoot *) override { return nullptr; }
} services;

} // namespace

ITeskClasses *TxClasses = &classes;
ITeskPyOS *PyOS = &services;

namespace Tx {
Clsid::Clsid(const char *moduleName, const char *className) : module(moduleName), name(className) {}
const char *Clsid::GetName() const
{
    return name;
}
bool Clsid::IsEqual(const Clsid &other) const
{
    return std::strcmp(name, other.name) == 0;
}
IID::IID(const char *interfaceName) : name(interfaceName) {}
const char *IID::GetName() const
{
    return name;
}
bool IID::IsEqual(const IID &other) const
{
    return std::strcmp(name, other.name) == 0;
}
const char *Clsid::GetModule() const
{
    return module;
}
} // namespace Tx

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

void TeskInitializePyType(_typeobject *, const Tx::Clsid &, const char *,
                          const Tx::InterfaceEntry *, TeskNewFunction)
{
}
void TeskRegisterToModule(PyObject *, const Tx::ClassRegistrationList &, const ModuleMethodList &,
                          const ValueChooserMap &, const HostList &, const HostList &,
                          const MethodSignatureMap &)
{
}
PyObject *TeskCreateInstanceFromPython(const Tx::Clsid &, PyObject *, PyObject *)
{
    return nullptr;
}
IRoot *TeskUnwrapObjectFromPython(PyObject *)
{
    return nullptr;
}
PyObject *TeskWrapObjectForPython(IRoot *)
{
    return nullptr;
}
bool TeskExtractArgumentImpl(PyObject *, int &, unsigned int, bool)
{
    return false;
}
bool TeskExtractArgumentImpl(PyObject *, unsigned int &, unsigned int, bool)
{
    return false;
}
bool TeskExtractArgumentImpl(PyObject *, float &, unsigned int, bool)
{
    return false;
}
bool TeskExtractArgumentImpl(PyObject *, double &, unsigned int, bool)
{
    return false;
}
PyObject *PyThunkLeave(PyObject *result)
{
    return result;
}
