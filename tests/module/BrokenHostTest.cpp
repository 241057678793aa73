// What is raised where the host, or native code beside the module, does not keep to the rules.

#include "orvane/module/SharedView.h"
#include "orvane/sh/SphericalHarmonic.h"
#include "teskexposure/include/TeskPython"
#include "tests/module/Interpreter.h"

#include <functional>
#include <utility>

namespace {

TEST(BrokenHost, IsReported)
{
    const struct {
        std::function<PyObject *()> call;
        const char *error;
    } cases[] = {
        {[] { return PyThunkLeave(nullptr); },
         "TypeError: The method does not apply to this object."},
        {[] { return TeskWrapObjectForPython(nullptr); },
         "SystemError: there is no host object to wrap"},
        {[] {
             return TeskCreateInstanceFromPython(Tx::Clsid("Orvane", "Unknown"), nullptr, nullptr);
         },
         "RuntimeError: class Unknown is not registered"},
        {[] {
             ClassDescriptor &descriptor = *SphericalHarmonic::StaticClassDescriptor();
             _typeobject *const type = std::exchange(descriptor.pyType, nullptr);
             PyObject *const result =
                 TeskCreateInstanceFromPython(*descriptor.clsid, nullptr, nullptr);
             descriptor.pyType = type;
             return result;
         },
         "TypeError: objects of class SphericalHarmonic have no Python type"},
        {[]() -> PyObject * {
             const Reference view(orvane::binding::SharedView(nullptr, 0).object);
             // A buffer stands on its owner, the first field behind the head.
             PyObject *const owner = *reinterpret_cast<PyObject **>(
                 reinterpret_cast<char *>(view.Get()) + sizeof(PyObject));
             void *data;
             EXPECT_EQ(Py_TYPE(owner)->tp_as_buffer->bf_getreadbuffer(owner, 1, &data), -1);
             return nullptr;
         },
         "SystemError: a view has one segment"},
    };
    const Reference module(PyImport_ImportModule("_Orvane"));
    for (const auto &test : cases) {
        EXPECT_EQ(test.call(), nullptr) << test.error;
        EXPECT_EQ(TakeError(), test.error);
    }
}

} // namespace
