#pragma once

// What the type of a native function says about the method in front of it, for both styles of
// entry functions: each brings a way to read the arguments, the rest is here.

#include "orvane/module/Conversion.h"

#include <array>
#include <cstddef>
#include <functional>
#include <tuple>
#include <type_traits>

namespace orvane::binding {

/// The types of a function's parameters, without references.
template <typename... Types> struct Parameters {
    static constexpr std::size_t count = sizeof...(Types);

    /// What a script passes for each, where Argument<T>::type says it for T.
    template <template <typename> class Argument>
    static constexpr std::array<ScriptType, maxArguments> scriptTypes{Argument<Types>::type...};
};

/// All parameters but the first.
template <typename List> struct WithoutFirst;
template <typename First, typename... Others> struct WithoutFirst<Parameters<First, Others...>> {
    using Type = Parameters<Others...>;
};

/// Class, result and parameters of a native function: a member, or a function whose first parameter
/// is the object.
template <typename Function> struct FunctionShape;

template <typename ResultType, typename ClassType, typename... Types>
struct FunctionShape<ResultType (*)(ClassType &, Types...)> {
    using Class = ClassType;
    using Result = ResultType;
    using Arguments = Parameters<std::remove_cvref_t<Types>...>;
};
template <typename Result, typename Class, typename... Types>
struct FunctionShape<Result (Class::*)(Types...)> : FunctionShape<Result (*)(Class &, Types...)> {
};
template <typename Result, typename Class, typename... Types>
struct FunctionShape<Result (Class::*)(Types...) const>
    : FunctionShape<Result (*)(Class &, Types...)> {
};

/// Calls `function` on the object with a tuple of arguments, and converts the result.
template <auto function, typename Class, typename Arguments>
PyObject *Call(Class &object, const Arguments &arguments)
{
    const auto call = [&](auto &...values) {
        return ResultOf([&] { return std::invoke(function, object, values...); });
    };
    return std::apply(call, arguments);
}

/// Calls `function` on the object, a new set and a tuple of arguments; the set is the result.
template <auto function, typename Class, typename Arguments>
PyObject *CallWithNewSet(Class &object, const Arguments &arguments)
{
    const auto call = [&](auto &...values) {
        return NewSet(
            [&](SphericalHarmonic &set) { std::invoke(function, object, set, values...); });
    };
    return ToPython(std::apply(call, arguments));
}

} // namespace orvane::binding
