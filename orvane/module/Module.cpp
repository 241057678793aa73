// The module: registers its classes while the library is loaded, and hands them over on import.

#include "orvane/module/Module.h"

#include "orvane/builder/SHBuilder.h"
#include "orvane/module/PythonErrors.h"
#include "platform/LibraryEntry.h"
#include "teskexposure/include/TeskHost"
#include "teskexposure/include/TeskPython"
#include "teskexposure/include/TeskWeakRef"

#if defined(_WIN32)
#define ORVANE_EXPORT __declspec(dllexport)
#else
#define ORVANE_EXPORT __attribute__((visibility("default")))
#endif

namespace orvane::binding {

Tx::ClassRegistrationList &ClassRegistrations()
{
    static Tx::ClassRegistrationList registrations;
    return registrations;
}

namespace {

template <typename T> bool Register()
{
    ClassRegistrations().push_back({T::StaticClassDescriptor(), &ClassFactory<T>, 0});
    return true;
}

// In one file, for only there is the order of these certain.
[[maybe_unused]] const bool builderRegistered = Register<SHBuilder>();
[[maybe_unused]] const bool setRegistered = Register<SphericalHarmonic>();

platform::LibraryHandle libraryHandle = nullptr;

void Attach(platform::LibraryHandle library)
{
    libraryHandle = library;
    platform::DisableThreadLibraryCalls(libraryHandle);
}

} // namespace

} // namespace orvane::binding

PLATFORM_LIBRARY_ENTRY(orvane::binding::Attach)

extern "C" ORVANE_EXPORT void init_Orvane()
{
    using namespace orvane::binding;
    static_assert(PYTHON_API_VERSION == 1013);
    Guarded([]() -> PyObject * {
        const Tx::ClassRegistrationList &registrations = ClassRegistrations();
        TxClasses->RegisterClasses(registrations);
        PyObject *const module =
            Py_InitModule4("_Orvane", nullptr, nullptr, nullptr, PYTHON_API_VERSION);
        TeskRegisterToModule(module, registrations, ModuleMethodList(), ValueChooserMap(),
                             HostList(), HostList(), MethodSignatureMap());
        return module;
    });
}
