// Fuzzes the scripting surface. The bytes are read as a sequence of calls through the real Python
// entry points; a grammar keeps most of them legal, so that deep states are reached, and slips in a
// wrong or hostile argument now and then. A finding is a report of a sanitizer, a hang, a null
// result without an exception, or an exception of a kind that no method documents.

#include "fuzz/ScriptCalls.h"

#include <Python.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

extern "C" void init_Orvane();

namespace {

/// One owned reference to a Python object.
class Ref {
public:
    Ref() = default;
    explicit Ref(PyObject *owned) : object(owned) {}
    Ref(const Ref &other) : object(other.object) { Py_XINCREF(object); }
    Ref &operator=(Ref other)
    {
        std::swap(object, other.object);
        return *this;
    }
    ~Ref() { Py_XDECREF(object); }

    static Ref Borrowed(PyObject *object)
    {
        Py_XINCREF(object);
        return Ref(object);
    }
    PyObject *get() const { return object; }
    PyObject *release() { return std::exchange(object, nullptr); }
    explicit operator bool() const { return object != nullptr; }

private:
    PyObject *object = nullptr;
};

/// Python objects that run code of their own in the middle of a call: `action` is what they do.
const char *const hostileSource = R"(
class Hostile(object):
    def __init__(self, action, value):
        self.action, self.value = action, value
    def run(self):
        action, self.action = self.action, None
        if action is not None:
            action()
        return self.value
    def __float__(self): return self.run()
    def __int__(self): return self.run()
    def __index__(self): return self.run()
    def __long__(self): return self.run()
)";

struct Environment {
    Ref module;
    Ref setType;
    Ref builderType;
    Ref hostileType;
    Ref memoryView;
    Ref bytearrayType;
    Ref preparedBuilder; ///< has tables of 16 steps, samples and an image at the start of an input
};

Environment *environment;
std::uint64_t successes[methodCount];

void PrintSuccesses()
{
    std::fprintf(stderr, "successful calls per method:\n");
    for (int i = 0; i < methodCount; ++i)
        std::fprintf(stderr, "  %-36s %llu\n", methodCalls[i].name,
                     static_cast<unsigned long long>(successes[i]));
}

[[noreturn]] void Fail(const char *what)
{
    std::fprintf(stderr, "finding: %s\n", what);
    PyErr_Print();
    std::abort();
}

Ref Call(PyObject *object, const char *method, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    Ref tuple(Py_VaBuildValue(format, arguments));
    va_end(arguments);
    Ref bound(PyObject_GetAttrString(object, method));
    return Ref(PyObject_CallObject(bound.get(), tuple.get()));
}

void Prepare(PyObject *builder)
{
    if (!Call(builder, "GenerateLookUpTables", "(i)", 16) ||
        !Call(builder, "GenerateSphericalSamples", "(ii)", 1, 3) ||
        !Call(builder, "GeneratePDFSamples", "(iii)", 1, 2, 5) ||
        !Call(builder, "SetImageBuffer", "(ii)", 8, 4))
        Fail("the builder could not be prepared");
}

/// What one input works on.
class Session {
public:
    explicit Session(FuzzedDataProvider &bytes) : bytes(bytes)
    {
        for (int i = 0; i < 3; ++i)
            sets.emplace_back(PyObject_CallObject(environment->setType.get(), nullptr));
        Call(sets[1].get(), "SetNumBands", "(i)", 2);
        Call(sets[2].get(), "SetNumBands", "(i)", 4);
        if (Rarely(8)) {
            builder = Ref(PyObject_CallObject(environment->builderType.get(), nullptr));
        } else {
            builder = environment->preparedBuilder;
        }
        // The prepared builder is only replaced when an input has touched its state.
        prepared = builder.get() == environment->preparedBuilder.get();
    }

    ~Session()
    {
        if (prepared && touched) {
            environment->preparedBuilder =
                Ref(PyObject_CallObject(environment->builderType.get(), nullptr));
            Prepare(environment->preparedBuilder.get());
        }
    }

    void Run()
    {
        for (int i = 0; i < 24 && bytes.remaining_bytes() > 0; ++i)
            Step();
    }

private:
    void Step()
    {
        const int choice = bytes.ConsumeIntegral<std::uint8_t>();
        if (choice < 16) {
            ReadAView();
        } else if (choice < 28) {
            WriteNumBands();
        } else if (choice < 36) {
            DropASet();
        } else {
            CallAMethod();
        }
    }

    /// Once in n times; never where the input has ended.
    bool Rarely(int n) { return bytes.ConsumeIntegralInRange(1, n) == n; }

    PyObject *AnySet() { return sets[bytes.ConsumeIntegralInRange<std::size_t>(0, 2)].get(); }

    void CallAMethod()
    {
        const int index = bytes.ConsumeIntegralInRange(0, methodCount - 1);
        const MethodCall &call = methodCalls[index];
        // The costliest method would take all the time.
        if (call.rare && !Rarely(64))
            return;
        Ref self = Ref::Borrowed(call.onSet ? AnySet() : builder.get());
        Ref arguments = Arguments(call, self.get());
        if (!arguments)
            return Forgive("argument");
        touched = touched || call.changesBuilder;
        Ref method(PyObject_GetAttrString(Rarely(64) ? environment->setType.get() : self.get(),
                                          call.name));
        if (!method)
            return Forgive(call.name);
        Ref result(PyObject_CallObject(method.get(), arguments.get()));
        if (!result)
            return Forgive(call.name);
        if (PyErr_Occurred())
            Fail("a result with an exception set");
        ++successes[index];
        Keep(result);
    }

    /// Clears the pending exception, which must be of a documented kind.
    void Forgive(const char *what)
    {
        if (!PyErr_Occurred())
            Fail(what);
        for (PyObject *kind : {PyExc_TypeError, PyExc_ValueError, PyExc_IndexError,
                               PyExc_RuntimeError, PyExc_OverflowError, PyExc_MemoryError,
                               PyExc_AttributeError, PyExc_ZeroDivisionError})
            if (PyErr_ExceptionMatches(kind))
                return PyErr_Clear();
        Fail(what);
    }

    void Keep(const Ref &result)
    {
        if (Py_TYPE(result.get()) == reinterpret_cast<PyTypeObject *>(environment->setType.get())) {
            sets[bytes.ConsumeIntegralInRange<std::size_t>(0, 2)] = result;
        } else if (PyBuffer_Check(result.get())) {
            if (views.size() < 8)
                views.push_back(result);
        }
    }

    /// Every byte of a view must be readable, whatever became of the set or builder it came from.
    void ReadAView()
    {
        if (views.empty())
            return;
        Ref view = views[bytes.ConsumeIntegralInRange<std::size_t>(0, views.size() - 1)];
        if (bytes.ConsumeBool()) {
            Ref memory(
                PyObject_CallFunctionObjArgs(environment->memoryView.get(), view.get(), nullptr));
            if (!memory)
                return Forgive("memoryview");
            view = memory;
        }
        Ref copy(
            PyObject_CallFunctionObjArgs(environment->bytearrayType.get(), view.get(), nullptr));
        if (!copy)
            Forgive("bytearray of a view");
    }

    void WriteNumBands()
    {
        Ref value(PyInt_FromLong(bytes.ConsumeIntegralInRange(-3, 40)));
        if (PyObject_SetAttrString(AnySet(), "numBands", value.get()) < 0)
            Fail("numBands cannot be written");
    }

    void DropASet()
    {
        sets[bytes.ConsumeIntegralInRange<std::size_t>(0, 2)] =
            Ref(PyObject_CallObject(environment->setType.get(), nullptr));
    }

    double Real()
    {
        static const double special[] = {
            0.0,         -0.0, 1.0,   -1.0,   6.2831854820251465, 3.2,       1e-40, 1e-310,
            3.4e38,      1e39, 1e308, -1e308, HUGE_VAL,           -HUGE_VAL, NAN,   4294967296.0,
            2147483648.0};
        if (Rarely(4))
            return special[bytes.ConsumeIntegralInRange<std::size_t>(0, std::size(special) - 1)];
        return bytes.ConsumeFloatingPointInRange(-8.0, 8.0);
    }

    long Integer(long low, long high)
    {
        // None that is legal and asks for gigabytes.
        static const long special[] = {0, -1, INT32_MIN, INT32_MAX, 46341, 65536, 30, 31};
        if (Rarely(16))
            return special[bytes.ConsumeIntegralInRange<std::size_t>(0, std::size(special) - 1)];
        return bytes.ConsumeIntegralInRange(low, high);
    }

    /// Code that changes what the call works on while its arguments are converted.
    Ref HostileNumber(double value)
    {
        static const struct {
            bool onBuilder;
            const char *method;
            int argument;
        } actions[] = {{false, "SetNumBands", 0},
                       {false, "SetNumBands", 12},
                       {false, "Clean", -1},
                       {true, "ClearImageBuffer", -1},
                       {true, "SetImageBuffer", 3},
                       {true, "GenerateLookUpTables", 2},
                       {true, "GenerateSphericalSamples", 1}};
        const auto &action =
            actions[bytes.ConsumeIntegralInRange<std::size_t>(0, std::size(actions) - 1)];
        touched = touched || action.onBuilder;
        Ref bound(
            PyObject_GetAttrString(action.onBuilder ? builder.get() : AnySet(), action.method));
        Ref functools(PyImport_ImportModule("functools"));
        Ref code =
            action.argument < 0
                ? bound
                : (std::string(action.method) == "SetImageBuffer" ||
                           std::string(action.method) == "GenerateSphericalSamples"
                       ? Call(functools.get(), "partial", "(Oii)", bound.get(), action.argument,
                              action.argument)
                       : Call(functools.get(), "partial", "(Oi)", bound.get(), action.argument));
        return Ref(PyObject_CallFunction(environment->hostileType.get(), const_cast<char *>("Od"),
                                         code.get(), value));
    }

    Ref WrongArgument()
    {
        switch (bytes.ConsumeIntegralInRange(0, 11)) {
        case 0:
            return Ref::Borrowed(Py_None);
        case 1:
            return Ref(PyString_FromString("text"));
        case 2:
            return Ref(PyTuple_New(0));
        case 3:
            return Ref(PyLong_FromString(
                const_cast<char *>("-340282366920938463463374607431768211456"), nullptr, 10));
        case 4:
            return builder;
        case 5:
            return Ref::Borrowed(environment->setType.get());
        case 6:
            return Ref(PyFloat_FromDouble(Real()));
        case 7:
            return Ref(PyInt_FromLong(bytes.ConsumeBool() ? INT32_MIN : 3000000000));
        case 8:
            return Ref(PyList_New(0));
        case 9:
            return Ref(PyUnicode_FromString("text"));
        case 10:
            return Ref(PyByteArray_FromStringAndSize("0123456789abcdef", 16));
        default:
            return HostileNumber(Real());
        }
    }

    /// Bytes of a set of so many bands; of a small one where that is beyond any buffer made here.
    static long SetBytes(long bands) { return std::abs(bands) < 100 ? bands * bands * 4 : 16; }

    /// `length` bytes of some object with a read buffer.
    Ref Buffer(Py_ssize_t length)
    {
        if (length < 0 || length > 4096)
            length = 16;
        if (!views.empty() && Rarely(4))
            return views[bytes.ConsumeIntegralInRange<std::size_t>(0, views.size() - 1)];
        std::string content =
            bytes.ConsumeBytesAsString(std::min<std::size_t>(static_cast<std::size_t>(length), 24));
        content.resize(static_cast<std::size_t>(length), static_cast<char>(length));
        if (bytes.ConsumeBool())
            return Ref(PyByteArray_FromStringAndSize(content.data(), length));
        return Ref(PyString_FromStringAndSize(content.data(), length));
    }

    Ref Matrix()
    {
        Ref rows(PyTuple_New(4));
        for (int row = 0; row < 4; ++row) {
            PyObject *values = PyTuple_New(4);
            for (int column = 0; column < 4; ++column)
                PyTuple_SET_ITEM(values, column,
                                 Rarely(128) ? WrongArgument().release()
                                             : PyFloat_FromDouble(row == column ? 1.0 : Real()));
            PyTuple_SET_ITEM(rows.get(), row, values);
        }
        return rows;
    }

    Ref Argument(char kind, PyObject *self)
    {
        switch (kind) {
        case 's':
            return Ref::Borrowed(AnySet());
        case 'a':
            return Ref(PyFloat_FromDouble(Real()));
        case 't':
            return Ref(PyFloat_FromDouble(bytes.ConsumeFloatingPointInRange(0.0, 3.15)));
        case 'f':
            return Ref(PyFloat_FromDouble(Real()));
        case 'b':
            return Ref(PyInt_FromLong(Integer(0, 5)));
        case 'i': {
            Ref count = Call(self, "GetNumCoefficients", "()");
            return Ref(PyInt_FromLong(Integer(0, std::max(0L, PyInt_AsLong(count.get()) - 1))));
        }
        case 'k':
            return Ref(PyInt_FromLong(Integer(0, 899)));
        case 'n':
            return Ref(PyInt_FromLong(bytes.ConsumeIntegralInRange(-1, 20)));
        case 'q':
            return Ref(PyInt_FromLong(bytes.ConsumeIntegralInRange(-1, 6)));
        case 'g':
            return Ref(PyInt_FromLong(bytes.ConsumeIntegralInRange(-1, 40)));
        case 'r':
            return Ref(PyInt_FromLong(bytes.ConsumeIntegral<std::int16_t>()));
        case 'w':
            return Ref(PyInt_FromLong(bytes.ConsumeIntegralInRange(-1, 20)));
        case 'o':
            return Ref(PyInt_FromLong(Integer(-300, 300)));
        case 'z':
            return Ref(PyInt_FromLong(bytes.ConsumeIntegralInRange(-1, 3)));
        case 'x':
            return Ref(PyInt_FromLong(bytes.ConsumeIntegralInRange(-1, 9)));
        case 'm':
            return Matrix();
        default:
            Fail("unknown kind of argument");
        }
    }

    Ref Arguments(const MethodCall &call, PyObject *self)
    {
        const std::string kinds = call.arguments;
        std::vector<Ref> values;
        if (kinds == "B") {
            const long bands = Integer(-3, 5);
            values = {Buffer(SetBytes(bands)), Ref(PyInt_FromLong(bands))};
        } else if (kinds == "E") {
            const long from = Integer(0, 4);
            const long to = from + bytes.ConsumeIntegralInRange(0, 2);
            values = {Ref::Borrowed(AnySet()), Buffer(SetBytes(to) - SetBytes(from)),
                      Ref(PyInt_FromLong(from)), Ref(PyInt_FromLong(to))};
        } else if (kinds == "I") {
            const long width = bytes.ConsumeIntegralInRange(-1, 9);
            const long height = bytes.ConsumeIntegralInRange(-1, 9);
            values = {Ref(PyInt_FromLong(width)), Ref(PyInt_FromLong(height)),
                      Ref(PyInt_FromLong(Integer(0, 5))), Buffer(width * height)};
        } else {
            for (const char kind : kinds)
                values.push_back(Argument(kind, self));
        }
        if (!values.empty() && Rarely(16))
            values[bytes.ConsumeIntegralInRange<std::size_t>(0, values.size() - 1)] =
                WrongArgument();
        if (Rarely(128))
            values.push_back(WrongArgument());
        Ref tuple(PyTuple_New(static_cast<Py_ssize_t>(values.size())));
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (!values[i])
                return Ref();
            PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), values[i].release());
        }
        return tuple;
    }

    FuzzedDataProvider &bytes;
    std::vector<Ref> sets;
    std::vector<Ref> views;
    Ref builder;
    bool prepared = false;
    bool touched = false;
};

void Start()
{
    Py_InitializeEx(0);
    init_Orvane();
    environment = new Environment;
    environment->module = Ref(PyImport_ImportModule("_Orvane"));
    if (!environment->module)
        Fail("import");
    environment->setType =
        Ref(PyObject_GetAttrString(environment->module.get(), "SphericalHarmonic"));
    environment->builderType = Ref(PyObject_GetAttrString(environment->module.get(), "SHBuilder"));
    Ref globals(PyDict_New());
    PyDict_SetItemString(globals.get(), "__builtins__", PyEval_GetBuiltins());
    Ref ran(PyRun_String(hostileSource, Py_file_input, globals.get(), globals.get()));
    environment->hostileType = Ref::Borrowed(PyDict_GetItemString(globals.get(), "Hostile"));
    environment->memoryView =
        Ref::Borrowed(PyDict_GetItemString(PyEval_GetBuiltins(), "memoryview"));
    environment->bytearrayType =
        Ref::Borrowed(PyDict_GetItemString(PyEval_GetBuiltins(), "bytearray"));
    environment->preparedBuilder =
        Ref(PyObject_CallObject(environment->builderType.get(), nullptr));
    if (!ran || !environment->preparedBuilder)
        Fail("start");
    Prepare(environment->preparedBuilder.get());
    std::atexit(PrintSuccesses);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (!environment)
        Start();
    FuzzedDataProvider bytes(data, size);
    Session(bytes).Run();
    return 0;
}
