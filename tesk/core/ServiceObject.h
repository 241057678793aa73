#pragma once

#include "teskexposure/include/TeskInterfaces"

namespace tesk {

/// A part of the host itself, as an object: one of a kind, there from load to exit whatever its
/// count, without a class of its own.
template <class Interface> class ServiceObject : public Interface {
public:
    ClassDescriptor *GetClassDescriptor() override { return nullptr; }
    bool QueryInterface(const Tx::IID &, void **out, int) override
    {
        *out = nullptr;
        return false;
    }
    void Lock() override { ++lockCount; }
    void Unlock() override { --lockCount; }
    int ReservedQuery() override { return 0; }
    int GetLockCount() override { return lockCount; }
    IRoot *GetRoot() override { return this; }
    void DeleteThis() override {}

private:
    int lockCount = 1;
};

} // namespace tesk
