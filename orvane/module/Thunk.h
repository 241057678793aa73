#pragma once

// Thunk style: the arguments and the result of a method follow from the type of the native member
// function. Counting, conversion and result are written once, as templates over that type.

#include "orvane/module/FunctionShape.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <tuple>

namespace orvane::binding {

/// Converts one argument of native type T.
template <typename T> struct ThunkArgument;

/// A number is the host's to convert.
template <typename T>
requires std::same_as<T, std::int32_t> || std::same_as<T, std::uint32_t> ||
    std::same_as<T, float> || std::same_as<T, double>
struct ThunkArgument<T> {
    static constexpr ScriptType type = std::integral<T> ? ScriptType::Int : ScriptType::Float;

    static T From(PyObject *object, unsigned int index)
    {
        T value{};
        if (!TeskExtractArgumentImpl(object, value, index, false))
            RaiseHostFailure("TeskExtractArgumentImpl", index);
        return value;
    }
};

/// A coefficient set; None is passed on as null, and the operation decides.
template <> struct ThunkArgument<SphericalHarmonic *> {
    static constexpr ScriptType type = ScriptType::Set;

    static SphericalHarmonic *From(PyObject *object, unsigned int index)
    {
        SphericalHarmonic *const set = Unwrap<SphericalHarmonic>(object);
        if (!set && object != Py_None)
            RaiseNotASet(index);
        return set;
    }
};

/// The argument at `index`, which is then the next one's.
template <typename T> T Converted(PyObject *tuple, unsigned int &index)
{
    PyObject *const object = PyTuple_GET_ITEM(tuple, index);
    return ThunkArgument<T>::From(object, index++);
}

/// Refuses a call with any other number of arguments than `expected`. A missing tuple has none.
/// @throws ErrorAlreadySet (TypeError)
inline void RequireArguments(PyObject *arguments, std::size_t expected)
{
    const Py_ssize_t given = arguments ? TupleSize(arguments) : 0;
    const int count = static_cast<int>(expected);
    if (given < count) {
        if (count == 1)
            RaiseTypeError("Function expects 1 argument.");
        RaiseTypeError("Function expects %i arguments.", count);
    }
    if (given > count) {
        if (count == 1)
            RaiseTypeError("Function expects 1 argument (%d optional).", 0);
        RaiseTypeError("Function expects %i arguments (%d optional).", count, 0);
    }
    RequireItems(arguments, given);
}

/// Converts all arguments, in order, before the operation sees the first.
/// @throws ErrorAlreadySet
template <typename... Types>
std::tuple<Types...> ThunkArguments(PyObject *tuple, Parameters<Types...>)
{
    RequireArguments(tuple, sizeof...(Types));
    [[maybe_unused]] unsigned int index = 0;
    return {Converted<Types>(tuple, index)...};
}

/// The function that Python calls for a member function.
template <auto member> PyObject *CallThunk(PyObject *self, PyObject *tuple) noexcept
{
    using Shape = FunctionShape<decltype(member)>;
    return Guarded([&] {
        auto &object = Self<typename Shape::Class>(self);
        return Call<member>(object, ThunkArguments(tuple, typename Shape::Arguments()));
    });
}

/// The entry of a row in thunk style.
template <auto member> consteval Entry Thunk()
{
    using Shape = FunctionShape<decltype(member)>;
    using Arguments = typename Shape::Arguments;
    return {.function = &CallThunk<member>,
            .style = Style::Thunk,
            .result = scriptResult<typename Shape::Result>,
            .argumentCount = Arguments::count,
            .arguments = Arguments::template scriptTypes<ThunkArgument>};
}

} // namespace orvane::binding
