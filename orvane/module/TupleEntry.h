#pragma once

// Tuple style and direct style: entry functions around hand-written functions. The parser's format
// stands in the method's row, and is checked against the parameters of the function behind it.

#include "orvane/module/FunctionShape.h"
#include "orvane/module/ReadBuffer.h"
#include "orvane/module/RotationMatrix.h"
#include "orvane/module/Text.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <utility>

namespace orvane::binding {

/// What the parser stores for one character of the format.
template <char code> struct Parsed;
template <> struct Parsed<'i'> {
    using Type = std::int32_t;
};
template <> struct Parsed<'f'> {
    using Type = float;
};
template <> struct Parsed<'d'> {
    using Type = double;
};
template <> struct Parsed<'O'> {
    using Type = PyObject *;
};

/// Makes the argument for a parameter of type T of what the parser stored. A number may be widened;
/// a format that does not fit does not compile.
template <typename T> struct TupleArgument {
    static constexpr ScriptType type = std::integral<T> ? ScriptType::Int : ScriptType::Float;

    template <typename Number> static T From(Number value, unsigned int) { return T{value}; }
};

template <> struct TupleArgument<SphericalHarmonic> {
    static constexpr ScriptType type = ScriptType::Set;

    static SphericalHarmonic &From(PyObject *object, unsigned int index)
    {
        if (SphericalHarmonic *set = Unwrap<SphericalHarmonic>(object))
            return *set;
        RaiseNotASet(index);
    }
};

template <> struct TupleArgument<ReadBuffer> {
    static constexpr ScriptType type = ScriptType::ReadBuffer;

    static ReadBuffer From(PyObject *object, unsigned int) { return ReadBuffer(object); }
};

template <> struct TupleArgument<RotationMatrix> {
    static constexpr ScriptType type = ScriptType::Matrix;

    static RotationMatrix From(PyObject *object, unsigned int) { return RotationMatrix(object); }
};

/// Parses the tuple, then makes the arguments in order: sets, buffers and matrices are looked at
/// when no conversion can run Python code any more.
/// @throws ErrorAlreadySet
template <Text format, typename... Types, std::size_t... index>
auto ParseArguments(PyObject *tuple, Parameters<Types...>, std::index_sequence<index...>)
{
    static_assert(format.length == sizeof...(Types));
    RequireItems(tuple, TupleSize(tuple));
    std::tuple<typename Parsed<format.text[index]>::Type...> parsed{};
    if (!PyArg_ParseTuple(tuple, format.text, &std::get<index>(parsed)...))
        throw ErrorAlreadySet();
    return std::tuple<decltype(TupleArgument<Types>::From(std::get<index>(parsed), index))...>{
        TupleArgument<Types>::From(std::get<index>(parsed), index)...};
}
template <Text format, typename... Types>
auto ParseArguments(PyObject *tuple, Parameters<Types...> parameters)
{
    return ParseArguments<format>(tuple, parameters, std::index_sequence_for<Types...>());
}

/// Runs an entry function's work with the object that the method was called on. Every hand-written
/// method leaves through the host's exit.
template <typename Class, typename Work>
PyObject *RunAndLeave(PyObject *self, const Work &work) noexcept
{
    PyObject *const result = Guarded([&] { return work(Self<Class>(self)); });
    try {
        return PyThunkLeave(result);
    } catch (...) {
        Py_XDECREF(result);
        SetPythonError();
        return nullptr;
    }
}

template <Text format, auto function> PyObject *CallTuple(PyObject *self, PyObject *tuple) noexcept
{
    using Shape = FunctionShape<decltype(function)>;
    // cppcheck-suppress throwInNoexceptFunction ; RunAndLeave catches what its work throws
    return RunAndLeave<typename Shape::Class>(self, [&](auto &object) {
        return Call<function>(object, ParseArguments<format>(tuple, typename Shape::Arguments()));
    });
}

template <Text format, auto function>
PyObject *CallTupleNewSet(PyObject *self, PyObject *tuple) noexcept
{
    using Shape = FunctionShape<decltype(function)>;
    using Arguments = typename WithoutFirst<typename Shape::Arguments>::Type;
    // cppcheck-suppress throwInNoexceptFunction ; RunAndLeave catches what its work throws
    return RunAndLeave<typename Shape::Class>(self, [&](auto &object) {
        return CallWithNewSet<function>(object, ParseArguments<format>(tuple, Arguments()));
    });
}

template <auto function> PyObject *CallDirect(PyObject *self, PyObject *) noexcept
{
    using Shape = FunctionShape<decltype(function)>;
    return RunAndLeave<typename Shape::Class>(
        self, [](auto &object) { return Call<function>(object, std::tuple<>()); });
}

/// The entry of a row in tuple style: calls `function`.
template <Text format, auto function> consteval Entry Tuple()
{
    using Shape = FunctionShape<decltype(function)>;
    using Arguments = typename Shape::Arguments;
    return {.function = &CallTuple<format, function>,
            .style = Style::Tuple,
            .format = format.text,
            .result = scriptResult<typename Shape::Result>,
            .argumentCount = Arguments::count,
            .arguments = Arguments::template scriptTypes<TupleArgument>};
}

/// The same for a function that fills a new set: its first parameter is the set, the others come
/// from the tuple.
template <Text format, auto function> consteval Entry TupleNewSet()
{
    using Shape = FunctionShape<decltype(function)>;
    using Arguments = typename WithoutFirst<typename Shape::Arguments>::Type;
    return {.function = &CallTupleNewSet<format, function>,
            .style = Style::Tuple,
            .format = format.text,
            .result = ScriptType::Set,
            .argumentCount = Arguments::count,
            .arguments = Arguments::template scriptTypes<TupleArgument>};
}

/// The entry of a row in direct style: `function` takes the object only, the tuple is ignored.
template <auto function> consteval Entry Direct()
{
    using Shape = FunctionShape<decltype(function)>;
    return {.function = &CallDirect<function>,
            .style = Style::Direct,
            .result = scriptResult<typename Shape::Result>};
}

} // namespace orvane::binding
