#include "tests/host/TryingHost.h"

#include <Python.h>

#include "teskexposure/include/TeskCollections"
#include "teskexposure/include/TeskHost"
#include "teskexposure/include/TeskPython"
#include "tests/module/FailingNew.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace {

// The layer's own books take no memory from operator new, which tests make fail.

struct {
    char operation[64];
    int order;
} expected;

char calls[1 << 16];
std::size_t length;

int OrderFor(const char *operation, const char *detail = "")
{
    const int written = std::snprintf(calls + length, sizeof calls - length, "%s%s%s\n", operation,
                                      *detail ? " " : "", detail);
    if (written > 0 && length + written < sizeof calls)
        length += written;
    calls[length] = '\0';
    if (std::strcmp(operation, expected.operation) != 0)
        return HostObeys;
    if (expected.order == HostSaysWhy || expected.order == HostSaysWhyAndThrows)
        PyErr_SetString(PyExc_ArithmeticError, "the host's own words");
    if (expected.order == HostThrows || expected.order == HostSaysWhyAndThrows)
        throw std::runtime_error("thrown by the host");
    return expected.order;
}

/// An order given by the environment: OPERATION NUMBER.
const bool ordered = [] {
    const char *const order = std::getenv("HOST_ORDER");
    return order && std::sscanf(order, "%63s %d", expected.operation, &expected.order) == 2;
}();

/// The stand-in's operation, which this program's own hides.
template <typename Function> Function *Next(Function *own)
{
    Dl_info info{};
    dladdr(reinterpret_cast<void *>(own), &info);
    void *const found = info.dli_sname ? dlsym(RTLD_NEXT, info.dli_sname) : nullptr;
    if (!found)
        std::abort();
    return reinterpret_cast<Function *>(found);
}

} // namespace

void HostExpect(const char *operation, int order)
{
    std::snprintf(expected.operation, sizeof expected.operation, "%s", operation);
    expected.order = order;
}

void HostObey(void)
{
    HostExpect("", HostObeys);
}

const char *HostLog(void)
{
    return calls;
}

void HostForgetLog(void)
{
    calls[length = 0] = '\0';
}

void HostFailNew(std::int64_t n)
{
    failing_new::Fail(n);
}

bool HostFailureIsPending(void)
{
    return failing_new::IsPending();
}

// Without Python.

bool TeskCreateInstance(const Tx::Clsid &clsid, const Tx::IID &iid, void **out)
{
    static const auto next = Next(&TeskCreateInstance);
    const int order = OrderFor("TeskCreateInstance", clsid.GetName());
    if (order == HostGivesNothing)
        return true;
    return order == HostObeys && next(clsid, iid, out);
}

void *TeskInternalCreate(size_t size, const char *name)
{
    static const auto next = Next(&TeskInternalCreate);
    return OrderFor("TeskInternalCreate", name) == HostObeys ? next(size, name) : nullptr;
}

void TeskInternalFreeObject(void *memory)
{
    static const auto next = Next(&TeskInternalFreeObject);
    next(memory); // a host that throws has done its work: nothing else would free it
    OrderFor("TeskInternalFreeObject");
}

// With Python.

void TeskInitializePyType(_typeobject *type, const Tx::Clsid &clsid, const char *doc,
                          const Tx::InterfaceEntry *interfaces, TeskNewFunction newFunction)
{
    static const auto next = Next(&TeskInitializePyType);
    OrderFor("TeskInitializePyType", clsid.GetName());
    next(type, clsid, doc, interfaces, newFunction);
}

void TeskRegisterToModule(PyObject *module, const Tx::ClassRegistrationList &registrations,
                          const ModuleMethodList &methods, const ValueChooserMap &choosers,
                          const HostList &first, const HostList &second,
                          const MethodSignatureMap &signatures)
{
    static const auto next = Next(&TeskRegisterToModule);
    if (OrderFor("TeskRegisterToModule") == HostObeys)
        next(module, registrations, methods, choosers, first, second, signatures);
}

PyObject *TeskCreateInstanceFromPython(const Tx::Clsid &clsid, PyObject *arguments,
                                       PyObject *keywords)
{
    static const auto next = Next(&TeskCreateInstanceFromPython);
    return OrderFor("TeskCreateInstanceFromPython", clsid.GetName()) == HostObeys
               ? next(clsid, arguments, keywords)
               : nullptr;
}

IRoot *TeskUnwrapObjectFromPython(PyObject *object)
{
    static const auto next = Next(&TeskUnwrapObjectFromPython);
    const int order = OrderFor("TeskUnwrapObjectFromPython");
    if (order != HostObeys && order != HostShowsWeakRoot)
        return nullptr;
    IRoot *const root = next(object);
    void *weak = nullptr;
    if (order == HostObeys || !root || !root->QueryInterface(Tx::IID("IWeakObject"), &weak, 0))
        return root;
    root->Unlock(); // the query's reference
    return static_cast<IWeakObject *>(weak);
}

PyObject *TeskWrapObjectForPython(IRoot *object)
{
    static const auto next = Next(&TeskWrapObjectForPython);
    return OrderFor("TeskWrapObjectForPython") == HostObeys ? next(object) : nullptr;
}

namespace {

template <typename Value> bool Extract(PyObject *object, Value &value, unsigned int index, bool tag)
{
    using Function = bool(PyObject *, Value &, unsigned int, bool);
    static const auto next = Next(static_cast<Function *>(&TeskExtractArgumentImpl));
    return OrderFor("TeskExtractArgumentImpl") == HostObeys && next(object, value, index, tag);
}

} // namespace

bool TeskExtractArgumentImpl(PyObject *object, int &value, unsigned int index, bool tag)
{
    return Extract(object, value, index, tag);
}
bool TeskExtractArgumentImpl(PyObject *object, unsigned int &value, unsigned int index, bool tag)
{
    return Extract(object, value, index, tag);
}
bool TeskExtractArgumentImpl(PyObject *object, float &value, unsigned int index, bool tag)
{
    return Extract(object, value, index, tag);
}
bool TeskExtractArgumentImpl(PyObject *object, double &value, unsigned int index, bool tag)
{
    return Extract(object, value, index, tag);
}

PyObject *PyThunkLeave(PyObject *result)
{
    static decltype(&PyThunkLeave) const next = Next(&PyThunkLeave);
    OrderFor("PyThunkLeave");
    return next(result);
}

namespace {

/// Stands before one of the stand-in's own objects.
template <class Interface> class Before : public Interface {
public:
    explicit Before(Interface *next) : next(next) {}
    ClassDescriptor *GetClassDescriptor() override { return nullptr; }
    bool QueryInterface(const Tx::IID &, void **, int) override { return false; }
    void Lock() override {}
    void Unlock() override {}
    int ReservedQuery() override { return 0; }
    int GetLockCount() override { return 1; }
    IRoot *GetRoot() override { return this; }
    void DeleteThis() override {}

protected:
    Interface *const next;
};

class Classes : public Before<ITeskClasses> {
public:
    using Before::Before;
    void RegisterClasses(const Tx::ClassRegistrationList &registrations) override
    {
        OrderFor("ITeskClasses::RegisterClasses");
        next->RegisterClasses(registrations);
    }
    bool FindInterface(IRoot *object, const Tx::IID &iid, void **out, ClassDescriptor *descriptor,
                       int flags) override
    {
        const int order = OrderFor("ITeskClasses::FindInterface", iid.GetName());
        if (order == HostLeavesPointer)
            *out = object;
        return order == HostObeys && next->FindInterface(object, iid, out, descriptor, flags);
    }
    void TrackInstance(IRoot *root, int delta, int reserved) override
    {
        // A birth that is refused is not counted; a death is.
        if (delta > 0)
            OrderFor("ITeskClasses::TrackInstance", "+1");
        next->TrackInstance(root, delta, reserved);
        if (delta < 0)
            OrderFor("ITeskClasses::TrackInstance", "-1");
    }
};

class Services : public Before<ITeskPyOS> {
public:
    using Before::Before;
    PyObject *WrapObject(IRoot *object) override
    {
        return OrderFor("ITeskPyOS::WrapObject") == HostObeys ? next->WrapObject(object) : nullptr;
    }
};

const bool standsBefore = [] {
    static Classes classes(TxClasses);
    static Services services(PyOS);
    TxClasses = &classes;
    PyOS = &services;
    return true;
}();

} // namespace
