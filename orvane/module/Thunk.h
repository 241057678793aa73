#pragma once

// Thunk style: the arguments and the result of a method follow from the type of the native member
// function. Counting, conversion and result are written once, as templates over that type.

#include "orvane/module/Conversion.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

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
            RaiseNoSet(index);
        return set;
    }
};

/// A method and the object it was called on.
template <typename Class, typename Member> struct BoundMethod {
    Class *object;
    Member member;
};

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

/// Everything that follows from the type of a member function.
template <typename Member> struct ThunkShape;

template <typename ResultType, typename ClassType, typename... Arguments>
struct ThunkShape<ResultType (ClassType::*)(Arguments...)> {
    using Class = ClassType;
    using Result = ResultType;
    static constexpr std::size_t argumentCount = sizeof...(Arguments);
    static constexpr std::array<ScriptType, maxArguments> arguments{
        ThunkArgument<std::remove_cvref_t<Arguments>>::type...};

    /// Converts all arguments, in order, before the operation sees the first.
    template <typename Member>
    static PyObject *Call(const BoundMethod<Class, Member> &method, PyObject *tuple)
    {
        RequireArguments(tuple, argumentCount);
        return std::apply(
            [&](const auto &...values) {
                return ResultOf([&] { return (method.object->*method.member)(values...); });
            },
            Convert(tuple, std::index_sequence_for<Arguments...>()));
    }

private:
    template <std::size_t... index>
    static std::tuple<std::remove_cvref_t<Arguments>...> Convert([[maybe_unused]] PyObject *tuple,
                                                                 std::index_sequence<index...>)
    {
        return {ThunkArgument<std::remove_cvref_t<Arguments>>::From(PyTuple_GET_ITEM(tuple, index),
                                                                    index)...};
    }
};

template <typename Result, typename Class, typename... Arguments>
struct ThunkShape<Result (Class::*)(Arguments...) const>
    : ThunkShape<Result (Class::*)(Arguments...)> {
};

/// The function that Python calls for a member function.
template <auto member> PyObject *CallThunk(PyObject *self, PyObject *tuple) noexcept
{
    using Shape = ThunkShape<decltype(member)>;
    using Class = typename Shape::Class;
    return Guarded([&] {
        const BoundMethod<Class, decltype(member)> method{&Self<Class>(self), member};
        return Shape::Call(method, tuple);
    });
}

/// The entry of a row in thunk style.
template <auto member> consteval Entry Thunk()
{
    using Shape = ThunkShape<decltype(member)>;
    return {.function = &CallThunk<member>,
            .style = Style::Thunk,
            .result = scriptResult<typename Shape::Result>,
            .argumentCount = Shape::argumentCount,
            .arguments = Shape::arguments};
}

} // namespace orvane::binding
