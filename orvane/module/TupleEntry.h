#pragma once

// Tuple style and direct style: entry functions around hand-written functions. The parser's format
// stands in the method's row, and is checked against the parameters of the function behind it.

#include "orvane/module/Conversion.h"
#include "orvane/module/ReadBuffer.h"
#include "orvane/module/RotationMatrix.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>

namespace orvane::binding {

/// A format string as a template argument.
template <std::size_t size> struct Format {
    consteval Format(const char (&source)[size])
    {
        for (std::size_t i = 0; i < size; ++i)
            text[i] = source[i];
    }
    char text[size];
    static constexpr std::size_t length = size - 1;
};

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
        RaiseNoSet(index);
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

/// The arguments of a method, from the tuple.
template <typename... Parameters> struct TupleArguments {
    static constexpr std::size_t count = sizeof...(Parameters);
    static constexpr std::array<ScriptType, maxArguments> types{TupleArgument<Parameters>::type...};

    /// Parses the tuple, then makes the arguments in order: sets, buffers and matrices are looked
    /// at when no conversion can run Python code any more.
    /// @throws ErrorAlreadySet
    template <Format format> static auto Parse(PyObject *tuple)
    {
        static_assert(format.length == count);
        return Parse<format>(tuple, std::index_sequence_for<Parameters...>());
    }

private:
    template <typename T, typename Stored>
    using Argument = decltype(TupleArgument<T>::From(std::declval<Stored>(), 0u));

    template <Format format, std::size_t... index>
    static auto Parse(PyObject *tuple, std::index_sequence<index...>)
    {
        RequireItems(tuple, TupleSize(tuple));
        std::tuple<typename Parsed<format.text[index]>::Type...> parsed{};
        if (!PyArg_ParseTuple(tuple, format.text, &std::get<index>(parsed)...))
            throw ErrorAlreadySet();
        return std::tuple<Argument<Parameters, typename Parsed<format.text[index]>::Type>...>{
            TupleArgument<Parameters>::From(std::get<index>(parsed), index)...};
    }
};

/// The class and the parameters of a native function: a member, or a function whose first parameter
/// is the object.
template <typename Function> struct FunctionShape;

template <typename ResultType, typename ClassType, typename... Parameters>
struct FunctionShape<ResultType (*)(ClassType &, Parameters...)> {
    using Class = ClassType;
    using Result = ResultType;
    using Arguments = TupleArguments<std::remove_cvref_t<Parameters>...>;
};
template <typename Result, typename Class, typename... Parameters>
struct FunctionShape<Result (Class::*)(Parameters...)>
    : FunctionShape<Result (*)(Class &, Parameters...)> {
};
template <typename Result, typename Class, typename... Parameters>
struct FunctionShape<Result (Class::*)(Parameters...) const>
    : FunctionShape<Result (*)(Class &, Parameters...)> {
};

/// All but the first.
template <typename Arguments> struct WithoutFirst;
template <typename First, typename... Others>
struct WithoutFirst<TupleArguments<First, Others...>> {
    using Type = TupleArguments<Others...>;
};

/// Runs an entry function's work with the object that the method was called on. Every hand-written
/// method leaves through the host's exit.
template <typename Class, typename Work> PyObject *Enter(PyObject *self, const Work &work) noexcept
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

template <Format format, auto function>
PyObject *CallTuple(PyObject *self, PyObject *tuple) noexcept
{
    using Shape = FunctionShape<decltype(function)>;
    return Enter<typename Shape::Class>(self, [&](auto &object) {
        return std::apply(
            [&](auto &&...arguments) {
                return ResultOf([&] { return std::invoke(function, object, arguments...); });
            },
            Shape::Arguments::template Parse<format>(tuple));
    });
}

template <Format format, auto function>
PyObject *CallCreator(PyObject *self, PyObject *tuple) noexcept
{
    using Shape = FunctionShape<decltype(function)>;
    // cppcheck-suppress throwInNoexceptFunction ; Enter catches what its work throws
    return Enter<typename Shape::Class>(self, [&](auto &object) {
        return std::apply(
            [&](auto &&...arguments) {
                return ToPython(NewSet([&](SphericalHarmonic &set) {
                    std::invoke(function, object, set, arguments...);
                }));
            },
            WithoutFirst<typename Shape::Arguments>::Type::template Parse<format>(tuple));
    });
}

template <auto function> PyObject *CallDirect(PyObject *self, PyObject *) noexcept
{
    using Shape = FunctionShape<decltype(function)>;
    return Enter<typename Shape::Class>(
        self, [](auto &object) { return ToPython(std::invoke(function, object)); });
}

/// The entry of a row in tuple style: calls `function`.
template <Format format, auto function> consteval Entry Tuple()
{
    using Shape = FunctionShape<decltype(function)>;
    using Arguments = typename Shape::Arguments;
    return {.function = &CallTuple<format, function>,
            .style = Style::Tuple,
            .format = format.text,
            .result = scriptResult<typename Shape::Result>,
            .argumentCount = Arguments::count,
            .arguments = Arguments::types};
}

/// The same for a function that fills a new set: its first parameter is the set, the others come
/// from the tuple.
template <Format format, auto function> consteval Entry Creates()
{
    using Shape = FunctionShape<decltype(function)>;
    using Arguments = typename WithoutFirst<typename Shape::Arguments>::Type;
    return {.function = &CallCreator<format, function>,
            .style = Style::Tuple,
            .format = format.text,
            .result = ScriptType::Set,
            .argumentCount = Arguments::count,
            .arguments = Arguments::types};
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
