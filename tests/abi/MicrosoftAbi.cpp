// The binary interface as a Microsoft compiler lays it out. Compiled for that target without a
// standard library, never linked or run: what compiles has passed, and the virtual tables that the
// compiler prints are compared by CheckVirtualTables.cmake.

#include "teskexposure/include/TeskRecords"
#include "teskexposure/include/TeskSmartPtr"
#include "teskexposure/include/TeskWeakRef"

#include <stddef.h>

#define ORVANE_OFFSET(type, field, offset) static_assert(offsetof(type, field) == offset)

static_assert(sizeof(Tx::Clsid) == 16);
static_assert(sizeof(Tx::IID) == 8);

static_assert(sizeof(Tx::InterfaceEntry) == 16);
ORVANE_OFFSET(Tx::InterfaceEntry, iid, 0);
ORVANE_OFFSET(Tx::InterfaceEntry, offset, 8);

static_assert(sizeof(Tx::ClassRegistration) == 24);
ORVANE_OFFSET(Tx::ClassRegistration, descriptor, 0);
ORVANE_OFFSET(Tx::ClassRegistration, factory, 8);
ORVANE_OFFSET(Tx::ClassRegistration, reserved, 16);

static_assert(sizeof(AttributeRecord) == 80);
ORVANE_OFFSET(AttributeRecord, name, 0);
ORVANE_OFFSET(AttributeRecord, typeCode, 8);
ORVANE_OFFSET(AttributeRecord, fieldOffset, 16);
ORVANE_OFFSET(AttributeRecord, fieldSize, 24);
ORVANE_OFFSET(AttributeRecord, reserved1, 32);
ORVANE_OFFSET(AttributeRecord, doc, 40);
ORVANE_OFFSET(AttributeRecord, flags, 48);
ORVANE_OFFSET(AttributeRecord, alignment, 52);
ORVANE_OFFSET(AttributeRecord, reserved2, 56);
ORVANE_OFFSET(AttributeRecord, reserved4, 72);

static_assert(sizeof(MethodSignature) == 144);
ORVANE_OFFSET(MethodSignature, types, 0);
ORVANE_OFFSET(MethodSignature, argumentCount, 136);
ORVANE_OFFSET(MethodSignature, optionalCount, 140);

static_assert(sizeof(ClassDescriptor) == 96);
ORVANE_OFFSET(ClassDescriptor, clsid, 0);
ORVANE_OFFSET(ClassDescriptor, iid, 8);
ORVANE_OFFSET(ClassDescriptor, doc, 16);
ORVANE_OFFSET(ClassDescriptor, interfaces, 24);
ORVANE_OFFSET(ClassDescriptor, attributes, 32);
ORVANE_OFFSET(ClassDescriptor, methods, 40);
ORVANE_OFFSET(ClassDescriptor, reserved1, 48);
ORVANE_OFFSET(ClassDescriptor, reserved3, 64);
ORVANE_OFFSET(ClassDescriptor, pyType, 72);
ORVANE_OFFSET(ClassDescriptor, counterA, 80);
ORVANE_OFFSET(ClassDescriptor, counterB, 84);
ORVANE_OFFSET(ClassDescriptor, signatures, 88);

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
ORVANE_OFFSET(Exposed, field, 8);
static_assert(sizeof(TrackableContainer<WeakReference *>) == 3 * 8 + 64);
static_assert(sizeof(RootRefLockWR<Exposed>) == 16 + 8 + 88 + 8);

// What a thunk is handed: an object and one of its operations.
static_assert(sizeof(Exposed *) + sizeof(double(Exposed::*)(int, double, double)) == 16);

static_assert(sizeof(TeskSmartPtr<Exposed>) == 8);

template class RootRefLockWR<Exposed>;
template class TeskSmartPtr<Exposed>;
