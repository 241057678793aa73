// The classes as a Microsoft compiler lays it out. Compiled for that target without a
// standard library, never linked or run: what compiles has passed, and the virtual tables that the
// compiler prints are compared by CheckVirtualTables.cmake.

#include "teskexposure/include/TeskSmartPtr"
#include "teskexposure/include/TeskWeakRef"

#include <stddef.h>

/// Stands for the exposed classes: one interface, then its own data.
class Exposed : public IRoot {
public:
    static ClassDescriptor *StaticClassDescriptor();
    ClassDescriptor *GetClassDescriptor() override;

    double field;
};

/// Virtual-table pointer, fields; then the second interface, the list of weak references and the
/// count.
static_assert(sizeof(Exposed) == 16);
static_assert(offsetof(Exposed, field) == 8);
static_assert(sizeof(TrackableContainer<WeakReference *>) == 3 * 8 + 64);
static_assert(sizeof(RootRefLockWR<Exposed>) == 16 + 8 + 88 + 8);

// What a thunk is handed: an object and one of its operations.
static_assert(sizeof(Exposed *) + sizeof(double(Exposed::*)(int, double, double)) == 16);

static_assert(sizeof(TeskSmartPtr<Exposed>) == 8);

template class RootRefLockWR<Exposed>;
template class TeskSmartPtr<Exposed>;
