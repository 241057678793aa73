// The module: describes its classes while the library is loaded, and hands them over on import.

#include "orvane/module/Module.h"

#include "orvane/builder/SHBuilder.h"
#include "orvane/module/ClassDescription.h"
#include "orvane/module/ClassIdentity.h"
#include "orvane/module/HostFailure.h"
#include "orvane/module/Immortal.h"
#include "orvane/module/PythonErrors.h"
#include "platform/LibraryEntry.h"
#include "teskexposure/include/TeskHost"
#include "teskexposure/include/TeskPython"
#include "teskexposure/include/TeskWeakRef"

#include <stdexcept>

#if defined(_WIN32)
#define ORVANE_EXPORT __declspec(dllexport)
#else
#define ORVANE_EXPORT __attribute__((visibility("default")))
#endif

namespace orvane::binding {

Tx::ClassRegistrationList &ClassRegistrations()
{
    static Immortal<Tx::ClassRegistrationList> registrations;
    return registrations.object;
}

namespace {

template <typename T> Tx::ClassRegistration Registration()
{
    return {T::StaticClassDescriptor(), &ClassFactory<T, &NoteFactoryFailure>, 0};
}

/// Describes both classes and lists them, unless that has been done: both or neither.
/// @throws std::bad_alloc, or what the host throws
void RegisterClasses()
{
    Tx::ClassRegistrationList &registrations = ClassRegistrations();
    if (registrations.empty())
        registrations = {Registration<SHBuilder>(), Registration<SphericalHarmonic>()};
}

/// Where this fails, nobody can be told yet: the import tries again.
bool RegisteredAtLoad() noexcept
{
    try {
        RegisterClasses();
        return true;
    } catch (...) {
        return false;
    }
}

[[maybe_unused]] const bool registeredAtLoad = RegisteredAtLoad();

platform::LibraryHandle libraryHandle = nullptr;

void Attach(platform::LibraryHandle library)
{
    libraryHandle = library;
    platform::DisableThreadLibraryCalls(libraryHandle);
}

void ReleaseMemory()
{
    ForgetFactoryFailure();
    if (ClassRegistrations().empty())
        return;
    Tx::ClassRegistrationList().swap(ClassRegistrations());
    ReleaseDescriptions();
}

/// Makes the Python module and has the host fill it.
/// @throws where the host has not put both types into it
void FillModule(PyObject *module, const Tx::ClassRegistrationList &registrations)
{
    TeskRegisterToModule(module, registrations, ModuleMethodList(), ValueChooserMap(), HostList(),
                         HostList(), MethodSignatureMap());
    if (PyErr_Occurred())
        throw ErrorAlreadySet();
    for (const Tx::ClassRegistration &registration : registrations) {
        const char *const name = registration.descriptor->clsid->GetName();
        PyObject *const type =
            module ? PyDict_GetItemString(PyModule_GetDict(module), name) : nullptr;
        if (!type || !PyType_Check(type))
            RaiseHostFailure("TeskRegisterToModule", name);
    }
}

/// Takes a module that could not be filled out of Python's table: the next import begins anew. The
/// error at hand stays.
void ForgetModule(PyObject *module)
{
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    const char *const name = PyModule_GetName(module);
    if (!name || PyDict_DelItemString(PyImport_GetModuleDict(), name) != 0)
        PyErr_Clear();
    PyErr_Restore(type, value, traceback);
}

void Import()
{
    RegisterClasses();
    const Tx::ClassRegistrationList &registrations = ClassRegistrations();
    if (!TxClasses)
        throw std::runtime_error("the host has no class table (TxClasses)");
    TxClasses->RegisterClasses(registrations);
    const Py_ssize_t modulesBefore = PyDict_Size(PyImport_GetModuleDict());
    PyObject *const module =
        Py_InitModule4("_Orvane", nullptr, nullptr, nullptr, PYTHON_API_VERSION);
    const bool isNew = PyDict_Size(PyImport_GetModuleDict()) > modulesBefore;
    try {
        FillModule(module, registrations);
    } catch (...) {
        SetPythonError();
        if (module && isNew)
            ForgetModule(module);
    }
}

} // namespace

} // namespace orvane::binding

PLATFORM_LIBRARY_ENTRY(orvane::binding::Attach, orvane::binding::ReleaseMemory)

extern "C" ORVANE_EXPORT void init_Orvane()
{
    using namespace orvane::binding;
    static_assert(PYTHON_API_VERSION == 1013);
    Guarded([]() -> PyObject * {
        Import();
        return nullptr;
    });
}
