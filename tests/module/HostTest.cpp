// What the host's Python half refuses and no script can ask for.

#include "tests/tesk/HostTest.h"

#include "teskexposure/include/TeskPython"
#include "tests/module/Interpreter.h"

namespace {

class PythonHost : public HostTest {};

TEST_F(PythonHost, RefusesWhatHasNoPythonType)
{
    EXPECT_EQ(TeskWrapObjectForPython(nullptr), nullptr);
    EXPECT_EQ(TakeError(), "SystemError: there is no host object to wrap");
    TestObject *const object = Create();
    EXPECT_EQ(TeskWrapObjectForPython(object), nullptr);
    EXPECT_EQ(TakeError(), "TypeError: objects of class TestObject have no Python type");
    object->Unlock();
    const Tx::Clsid unknown("Tests", "Unknown");
    EXPECT_EQ(TeskCreateInstanceFromPython(unknown, nullptr, nullptr), nullptr);
    EXPECT_EQ(TakeError(), "RuntimeError: class Unknown is not registered");
}

TEST_F(PythonHost, ExitOfMethodsSeesToAnError)
{
    EXPECT_EQ(PyThunkLeave(nullptr), nullptr);
    EXPECT_EQ(TakeError(), "TypeError: The method does not apply to this object.");
    PyErr_NoMemory();
    EXPECT_EQ(PyThunkLeave(nullptr), nullptr);
    EXPECT_EQ(TakeError(), "MemoryError: ");
    EXPECT_EQ(PyThunkLeave(Py_None), Py_None);
}

} // namespace
