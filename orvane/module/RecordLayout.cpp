// The layout of the records that the module hands to the host. Compiling this file is the check.

#include "teskexposure/include/TeskRecords"

#include <stddef.h> // also compiled where there is no C++ library

namespace {

static_assert(sizeof(void *) == 8);

static_assert(sizeof(Tx::InterfaceEntry) == 16);
static_assert(offsetof(Tx::InterfaceEntry, iid) == 0);
static_assert(offsetof(Tx::InterfaceEntry, offset) == 8);

static_assert(sizeof(AttributeRecord) == 80);
static_assert(offsetof(AttributeRecord, name) == 0);
static_assert(offsetof(AttributeRecord, typeCode) == 8);
static_assert(offsetof(AttributeRecord, fieldOffset) == 16);
static_assert(offsetof(AttributeRecord, fieldSize) == 24);
static_assert(offsetof(AttributeRecord, reserved1) == 32);
static_assert(offsetof(AttributeRecord, doc) == 40);
static_assert(offsetof(AttributeRecord, flags) == 48);
static_assert(offsetof(AttributeRecord, alignment) == 52);
static_assert(offsetof(AttributeRecord, reserved2) == 56);
static_assert(offsetof(AttributeRecord, reserved4) == 72);

static_assert(sizeof(MethodSignature) == 144);
static_assert(offsetof(MethodSignature, types) == 0);
static_assert(offsetof(MethodSignature, argumentCount) == 136);
static_assert(offsetof(MethodSignature, optionalCount) == 140);

static_assert(sizeof(Tx::ClassRegistration) == 24);
static_assert(offsetof(Tx::ClassRegistration, descriptor) == 0);
static_assert(offsetof(Tx::ClassRegistration, factory) == 8);
static_assert(offsetof(Tx::ClassRegistration, reserved) == 16);

static_assert(sizeof(ClassDescriptor) == 96);
static_assert(offsetof(ClassDescriptor, clsid) == 0);
static_assert(offsetof(ClassDescriptor, iid) == 8);
static_assert(offsetof(ClassDescriptor, doc) == 16);
static_assert(offsetof(ClassDescriptor, interfaces) == 24);
static_assert(offsetof(ClassDescriptor, attributes) == 32);
static_assert(offsetof(ClassDescriptor, methods) == 40);
static_assert(offsetof(ClassDescriptor, reserved1) == 48);
static_assert(offsetof(ClassDescriptor, reserved3) == 64);
static_assert(offsetof(ClassDescriptor, pyType) == 72);
static_assert(offsetof(ClassDescriptor, counterA) == 80);
static_assert(offsetof(ClassDescriptor, counterB) == 84);
static_assert(offsetof(ClassDescriptor, signatures) == 88);

} // namespace
