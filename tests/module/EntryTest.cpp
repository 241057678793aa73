// Entry functions called as no script can call them.

#include "orvane/base/Errors.h"
#include "orvane/builder/SHBuilder.h"
#include "orvane/module/PythonErrors.h"
#include "orvane/module/SharedView.h"
#include "teskexposure/include/TeskHost"
#include "tests/module/Interpreter.h"

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

extern "C" void init_Orvane();

namespace {

/// A new object of a class of the module.
PyObject *New(const char *className)
{
    const Reference module(PyImport_ImportModule("_Orvane"));
    const Reference type(PyObject_GetAttrString(module.Get(), className));
    return PyObject_CallObject(type.Get(), nullptr);
}

/// The entry function behind a method.
PyCFunction Entry(ClassDescriptor *descriptor, const std::string &name)
{
    const PyMethodDef *method = descriptor->methods;
    while (method->ml_name != name)
        ++method;
    return method->ml_meth;
}

TEST(Entry, TakesATupleOrNothing)
{
    const Reference set(New("SphericalHarmonic")), builder(New("SHBuilder")), list(PyList_New(1));
    ClassDescriptor *const sets = SphericalHarmonic::StaticClassDescriptor();
    const PyCFunction clean = Entry(sets, "Clean"), view = Entry(sets, "GetAsBuffer");
    const PyCFunction copy = Entry(SHBuilder::StaticClassDescriptor(), "CopySH");
    const char *const noTuple = "TypeError: Function expects a tuple of arguments.";
    const Reference cleaned(clean(set.Get(), nullptr));
    EXPECT_EQ(cleaned.Get(), Py_None);
    const struct {
        PyCFunction entry;
        const Reference &self;
        PyObject *arguments;
        const char *error;
    } cases[] = {
        {Entry(sets, "SetNumBands"), set, nullptr, "TypeError: Function expects 1 argument."},
        {Entry(sets, "SetCoefficient"), set, nullptr, "TypeError: Function expects 2 arguments."},
        {clean, set, list.Get(), noTuple},
        {copy, builder, list.Get(), noTuple},
        {copy, builder, nullptr, noTuple}};
    for (const auto &[entry, self, arguments, error] : cases) {
        EXPECT_EQ(entry(self.Get(), arguments), nullptr);
        EXPECT_EQ(TakeError(), error);
    }
    // Direct style looks at no arguments.
    for (PyObject *arguments : {static_cast<PyObject *>(nullptr), list.Get()})
        EXPECT_EQ(PyObject_Size(Reference(view(set.Get(), arguments)).Get()), 0);
}

TEST(Entry, RefusesAForeignSelf)
{
    const Reference set(New("SphericalHarmonic")), builder(New("SHBuilder")), none(PyTuple_New(0));
    for (ClassDescriptor *descriptor :
         {SphericalHarmonic::StaticClassDescriptor(), SHBuilder::StaticClassDescriptor()}) {
        const bool isSet = descriptor == SphericalHarmonic::StaticClassDescriptor();
        const std::string name = descriptor->clsid->GetName();
        for (PyObject *self : {Py_None, none.Get(), isSet ? builder.Get() : set.Get()})
            for (const PyMethodDef *method = descriptor->methods; method->ml_name; ++method) {
                EXPECT_EQ(method->ml_meth(self, none.Get()), nullptr) << method->ml_name;
                EXPECT_EQ(TakeError(),
                          "TypeError: Could not match self to expected type: class " + name + ".");
            }
    }
}

Py_ssize_t reportedLength;

Py_ssize_t ReportLength(PyObject *, Py_ssize_t, void **data)
{
    *data = nullptr;
    return reportedLength;
}

TEST(Entry, NegativeLengthsOfBuffersMatchNoSize)
{
    // Python remembers types for ever.
    static PyBufferProcs procedures{};
    procedures.bf_getreadbuffer = &ReportLength;
    static PyTypeObject type{};
    Py_REFCNT(&type) = 1;
    type.tp_name = "Liar";
    type.tp_basicsize = sizeof(PyObject);
    type.tp_flags = Py_TPFLAGS_DEFAULT;
    type.tp_as_buffer = &procedures;
    ASSERT_EQ(PyType_Ready(&type), 0);
    PyObject liar{};
    Py_REFCNT(&liar) = 1;
    Py_TYPE(&liar) = &type;

    const struct {
        const char *method;
        Py_ssize_t length;
        Reference arguments;
        const char *error;
    } cases[] = {
        {"CreateSHFromBuffer", -1, Reference(Py_BuildValue("(Oi)", &liar, 0)),
         "TypeError: The buffer of -1 bytes doesn't match a float array for 0 band SH (0*0*4)"},
        {"ExtendSHFromBuffer", -20,
         Reference(Py_BuildValue("(NOii)", New("SphericalHarmonic"), &liar, 3, 2)),
         "TypeError: The buffer of -20 bytes doesn't match a float array extending SH from 3 band "
         "SH to 2 bands (-5*4)"},
        {"CreateSHFromImageBuffer", -8, Reference(Py_BuildValue("(iiiO)", -4, 2, 1, &liar)),
         "TypeError: The buffer of -8 bytes doesn't match a image byte array with width -4 and "
         "height 2"},
    };
    const Reference builder(New("SHBuilder"));
    for (const auto &test : cases) {
        reportedLength = test.length;
        const PyCFunction entry = Entry(SHBuilder::StaticClassDescriptor(), test.method);
        EXPECT_EQ(entry(builder.Get(), test.arguments.Get()), nullptr);
        EXPECT_EQ(TakeError(), test.error);
    }
}

TEST(Import, NeedsAClassTable)
{
    ITeskClasses *const table = std::exchange(TxClasses, nullptr);
    init_Orvane();
    TxClasses = table;
    EXPECT_EQ(TakeError(), "RuntimeError: the host has no class table (TxClasses)");
}

TEST(Import, GivesTheModuleAReferenceToEachType)
{
    const PyTypeObject *const type = SHBuilder::StaticClassDescriptor()->pyType;
    const Py_ssize_t count = Py_REFCNT(type);
    init_Orvane(); // puts it into the place of itself
    EXPECT_EQ(TakeError(), "");
    EXPECT_EQ(Py_REFCNT(type), count);
}

TEST(SharedView, GivesItsShareBack)
{
    const auto block = std::make_shared<int>(5);
    {
        const Reference view(orvane::binding::SharedView(block, sizeof(int)).object);
        const Reference part(PyBuffer_FromObject(view.Get(), 0, 2));
        EXPECT_EQ(block.use_count(), 2); // both stand on the same owner
    }
    EXPECT_EQ(block.use_count(), 1);
}

TEST(SharedView, HasOneSegment)
{
    const Reference view(orvane::binding::SharedView(nullptr, 0).object);
    // A buffer's first field is the object that it stands on.
    PyObject *const owner = *reinterpret_cast<PyObject **>(view.Get() + 1);
    void *data;
    EXPECT_EQ(Py_TYPE(owner)->tp_as_buffer->bf_getreadbuffer(owner, 1, &data), -1);
    EXPECT_EQ(TakeError(), "SystemError: a view has one segment");
}

TEST(PythonErrors, StandForCppExceptions)
{
    using namespace orvane;
    const struct {
        std::function<void()> thrower;
        const char *error;
    } cases[] = {
        {[] { throw std::out_of_range("index"); }, "IndexError: index"},
        {[] { throw std::invalid_argument("100%s"); }, "ValueError: 100%s"},
        {[] { throw NotReady("tables"); }, "RuntimeError: tables"},
        {[] { throw MissingSet(2); },
         "TypeError: Could not match argument 2 to expected type: class SphericalHarmonic."},
        {[] { throw std::bad_alloc(); }, "MemoryError: "},
        {[] { throw std::length_error("too long"); }, "MemoryError: "},
        {[] { throw std::range_error("other"); }, "RuntimeError: other"},
        {[] { throw 5; }, "SystemError: unknown C++ exception"},
        {[] { binding::RaiseTypeError("%d of %zd", 3, Py_ssize_t{1} << 40); },
         "TypeError: 3 of 1099511627776"},
    };
    for (const auto &test : cases) {
        PyObject *const result = binding::Guarded([&]() -> PyObject * {
            test.thrower();
            return Py_None;
        });
        EXPECT_EQ(result, nullptr);
        EXPECT_EQ(TakeError(), test.error);
    }
}

} // namespace
