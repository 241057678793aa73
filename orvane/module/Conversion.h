#pragma once

// What both styles of entry functions share: from Python objects to native ones and back.

#include <Python.h>

#include "orvane/module/ClassIdentity.h"
#include "orvane/module/HostFailure.h"
#include "orvane/module/MethodTable.h"
#include "orvane/module/PythonErrors.h"
#include "teskexposure/include/TeskHost"
#include "teskexposure/include/TeskPython"
#include "teskexposure/include/TeskSmartPtr"
#include "teskexposure/include/TeskWeakRef"

#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <typeinfo>

namespace orvane::binding {

// References: the caller holds self and the tuple, and the tuple its items, until the entry
// function returns; so do their Python objects hold the native ones. Nothing borrowed below can
// vanish while a conversion runs a script's __float__ or __int__. Its size and contents can change
// then, so that these are looked up only after the last conversion.

/// The object of class T behind a Python object, or null.
/// @throws ErrorAlreadySet where the host has set an error instead
template <typename T> T *Unwrap(PyObject *object)
{
    IRoot *const root = object ? TeskUnwrapObjectFromPython(object) : nullptr;
    if (!root) {
        if (object && PyErr_Occurred())
            throw ErrorAlreadySet();
        return nullptr;
    }
    // The class that the factory makes is told by a comparison; a search of the hierarchy is left
    // to objects made elsewhere. The host may hand out either IRoot of an object, its own or the
    // one inside IWeakObject: the complete object is where both lead.
    if (typeid(*root) == typeid(RootRefLockWR<T>))
        return static_cast<RootRefLockWR<T> *>(dynamic_cast<void *>(root));
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

/// The length of an argument tuple; anything else, which only native code can pass, is refused.
/// @throws ErrorAlreadySet (TypeError)
inline Py_ssize_t TupleSize(PyObject *tuple)
{
    if (!tuple || !PyTuple_Check(tuple))
        RaiseTypeError("Function expects a tuple of arguments.");
    return PyTuple_GET_SIZE(tuple);
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
    return FromHost(TeskWrapObjectForPython(set), "TeskWrapObjectForPython",
                    className<SphericalHarmonic>);
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
/// Nothing is left behind where `fill` throws or the host fails.
/// @throws where the host cannot create or wrap the set, as HostFailure.h says; whatever `fill`
/// throws
template <typename Fill> NewReference<ScriptType::Set> NewSet(const Fill &fill)
{
    TeskSmartPtr<SphericalHarmonic> set;
    ForgetFactoryFailure();
    if (!set.CreateInstance(ClassId<SphericalHarmonic>()))
        RaiseCreationFailure("TeskCreateInstance", className<SphericalHarmonic>);
    SphericalHarmonic *const object = set.operator->();
    if (!object)
        RaiseCreationFailure("TeskCreateInstance", className<SphericalHarmonic>);
    fill(*object);
    PyObject *const wrapper = PyOS ? PyOS->WrapObject(object) : nullptr;
    return {FromHost(wrapper, "ITeskPyOS::WrapObject", className<SphericalHarmonic>)};
}

} // namespace orvane::binding
