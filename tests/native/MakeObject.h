#pragma once

// Objects of the exposed classes, made without the host's class table.

#include "teskexposure/include/TeskWeakRef"

#include <memory>

/// The last owner gives the object's one reference back.
template <class T> std::shared_ptr<T> MakeObject()
{
    return {new RootRefLockWR<T>, [](T *object) { object->Unlock(); }};
}
