// The Python types of host classes: prepared while a module's library loads, finished when the
// module is imported.

#include "tesk/python/Attributes.h"
#include "tesk/python/Wrapper.h"

#include <cstring>
#include <memory>
#include <new>
#include <string>

namespace {

std::unique_ptr<char[]> Copy(const std::string &text)
{
    auto copy = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(copy.get(), text.c_str(), text.size() + 1);
    return copy;
}

/// Completes the type of one class and puts it into the module.
/// @return false with a Python error set
bool Finish(PyObject *module, const char *moduleName, const ClassDescriptor &descriptor)
{
    PyTypeObject &type = *descriptor.pyType;
    const char *const className = descriptor.clsid->GetName();
    if (!(type.tp_flags & Py_TPFLAGS_READY)) {
        auto name = Copy(std::string(moduleName) + "." + className);
        type.tp_getset = tesk::MakeAttributes(descriptor.attributes);
        type.tp_methods = descriptor.methods;
        type.tp_name = name.release(); // lives as long as the type
        if (PyType_Ready(&type) < 0)
            return false;
    }
    Py_INCREF(&type);
    return PyModule_AddObject(module, className, reinterpret_cast<PyObject *>(&type)) == 0;
}

} // namespace

void TeskInitializePyType(PyTypeObject *type, const Tx::Clsid &clsid, const char *doc,
                          const Tx::InterfaceEntry *, TeskNewFunction newFunction)
{
    type->tp_name = clsid.GetName();
    type->tp_basicsize = sizeof(tesk::Wrapper);
    type->tp_dealloc = tesk::DestroyWrapper;
    type->tp_flags = Py_TPFLAGS_DEFAULT;
    type->tp_doc = doc;
    type->tp_weaklistoffset = offsetof(tesk::Wrapper, weakrefs);
    type->tp_new = newFunction;
}

// The tables besides the classes are empty in every module there is.
void TeskRegisterToModule(PyObject *module, const Tx::ClassRegistrationList &registrations,
                          const ModuleMethodList &, const ValueChooserMap &, const HostList &,
                          const HostList &, const MethodSignatureMap &)
{
    const char *const moduleName = module ? PyModule_GetName(module) : nullptr;
    if (!moduleName)
        return; // with the error of whoever failed to make the module
    try {
        for (const Tx::ClassRegistration &registration : registrations) {
            if (!Finish(module, moduleName, *registration.descriptor))
                return;
        }
    } catch (const std::bad_alloc &) {
        PyErr_NoMemory();
    }
}
