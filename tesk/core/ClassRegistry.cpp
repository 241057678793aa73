// The class table: which classes there are, what interfaces they have, how many objects live.

#include "tesk/core/ClassRegistry.h"

#include "tesk/core/Accounts.h"
#include "tesk/core/NeverDestroyed.h"
#include "tesk/core/ServiceObject.h"
#include "teskexposure/include/TeskCollections"
#include "teskexposure/include/TeskHost"

namespace tesk {
namespace {

/// Objects may be created while the process ends.
std::vector<Tx::ClassRegistration> &Classes()
{
    static NeverDestroyed<std::vector<Tx::ClassRegistration>> classes;
    return classes.object;
}

class ClassRegistry final : public ServiceObject<ITeskClasses> {
public:
    /// A class that registers again (its module was loaded anew) replaces its old registration.
    /// @throws std::bad_alloc; no class is registered then
    void RegisterClasses(const Tx::ClassRegistrationList &registrations) override
    {
        Classes().reserve(Classes().size() + registrations.size());
        for (const Tx::ClassRegistration &registration : registrations) {
            std::erase_if(Classes(), [&](const Tx::ClassRegistration &known) {
                return known.descriptor->clsid->IsEqual(*registration.descriptor->clsid);
            });
            Classes().push_back(registration);
        }
    }

    bool FindInterface(IRoot *object, const Tx::IID &iid, void **out, ClassDescriptor *descriptor,
                       int) override
    {
        for (const Tx::InterfaceEntry *entry = descriptor->interfaces; entry->iid; ++entry) {
            if (!entry->iid->IsEqual(iid))
                continue;
            *out = reinterpret_cast<char *>(object) + entry->offset;
            object->Lock();
            return true;
        }
        *out = nullptr;
        return false;
    }

    void TrackInstance(IRoot *root, int delta, int) override
    {
        const Tx::Clsid &clsid = *root->GetClassDescriptor()->clsid;
        if (TeskAccount *const account = ClassAccount(clsid.GetName()))
            account->liveObjects += delta;
    }
};

constinit ClassRegistry classRegistry;

} // namespace

const Tx::ClassRegistration *FindClass(const Tx::Clsid &clsid)
{
    for (const Tx::ClassRegistration &registration : Classes()) {
        if (registration.descriptor->clsid->IsEqual(clsid))
            return &registration;
    }
    return nullptr;
}

} // namespace tesk

constinit ITeskClasses *TxClasses = &tesk::classRegistry;

bool TeskCreateInstance(const Tx::Clsid &clsid, const Tx::IID &iid, void **out)
{
    *out = nullptr;
    const Tx::ClassRegistration *const registration = tesk::FindClass(clsid);
    return registration && registration->factory(iid, out);
}
