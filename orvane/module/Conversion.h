#pragma once

// What both styles of entry functions share: from Python objects to native ones and back.

#include <Python.h>

#include "orvane/module/ClassIdentity.h"
#include "orvane/module/MethodTable.h"
#include "orvane/module/PythonErrors.h"
#include "teskexposure/include/TeskHost"
#include "teskexposure/include/TeskPython"
#include "teskexposure/include/TeskSmartPtr"
#include "teskexposure/include/TeskWeakRef"

#include <cstddef>
#include <cstdint>
#include <new>
#include <tuple>
#include <type_traits>
#include <typeinfo>

namespace orvane::binding {

// References: the caller holds self and the tuple, and the tuple its items, until the entry
// function returns; so do their Python objects hold the native ones. Nothing borrowed below can
// vanish while a conversion runs a script's __float__ or __int__. Its size and contents can change
// then, so that these are looked up only after the last conversion.

/// The object of class T behind a Python object, or null.
template <typename T> T *Unwrap(PyObject *object)
{
    IRoot *const root = object ? TeskUnwrapObjectFromPython(object) : nullptr;
    if (!root)
        return nullptr;
    // The class that the factory makes is told by a comparison; a search of the hierarchy is left
    // to objects made elsewhere.
    if (typeid(*root) == typeid(RootRefLockWR<T>))
        return static_cast<T *>(root);
    return dynamic_cast<T *>(root);
}

/// The object on which a method was called.
/// @throws ErrorAlreadySet (TypeError) where it is not of class T
template <typename T> T &Self(PyObject *self)
{
    if (T *object = Unwrap<T>(self))
        return *object;
    RaiseTypeError("Could not match self to expected type: class %s.", className<T>);
}

/// Refuses a tuple with empty places, which a script can get hold of through the garbage collector
/// while the tuple is being built.
/// @throws ErrorAlreadySet (TypeError)
inline void RequireItems(PyObject *tuple, Py_ssize_t count)
{
    for (Py_ssize_t i = 0; i < count; ++i)
        if (!PyTuple_GET_ITEM(tuple, i))
            RaiseTypeError("argument %zd is missing", i);
}

// The script type of a native function's result.

template <typename T>
inline constexpr ScriptType scriptResult = std::is_void_v<T>       ? ScriptType::None
                                           : std::is_integral_v<T> ? ScriptType::Int
                                                                   : ScriptType::Float;
template <> inline constexpr ScriptType scriptResult<SphericalHarmonic *> = ScriptType::Set;

/// A result that is a Python object already: a new reference, or null with an exception set.
template <ScriptType type> struct NewReference {
    PyObject *object;
};
template <ScriptType type> inline constexpr ScriptType scriptResult<NewReference<type>> = type;

// A result as a new reference.

inline PyObject *ToPython(std::int32_t value)
{
    return PyInt_FromLong(value);
}
/// A float is widened without change.
inline PyObject *ToPython(double value)
{
    return PyFloat_FromDouble(value);
}
inline PyObject *ToPython(SphericalHarmonic *set)
{
    if (!set)
        Py_RETURN_NONE;
    return TeskWrapObjectForPython(set);
}
template <ScriptType type> PyObject *ToPython(NewReference<type> result)
{
    return result.object;
}

/// Calls a native function and converts its result.
template <typename Call> PyObject *ResultOf(const Call &call)
{
    if constexpr (std::is_void_v<decltype(call())>) {
        call();
        Py_RETURN_NONE;
    } else {
        return ToPython(call());
    }
}

/// A new coefficient set, filled by `fill(set)`, as a Python object that owns the only reference.
/// Nothing is left behind where `fill` throws.
/// @throws std::bad_alloc where the host cannot create the set, and whatever `fill` throws
template <typename Fill> NewReference<ScriptType::Set> NewSet(const Fill &fill)
{
    TeskSmartPtr<SphericalHarmonic> set;
    if (!set.CreateInstance(ClassId<SphericalHarmonic>()))
        throw std::bad_alloc();
    fill(*set.Get());
    return {PyOS->WrapObject(set.Get())};
}

} // namespace orvane::binding
