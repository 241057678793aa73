#include "tests/tesk/HostTest.h"

#include <cstdlib>

namespace {

class ObjectLifetime : public HostTest {};

TEST_F(ObjectLifetime, TheCreatorOwnsOneReferenceAndTheLastUnlockDestroysAtOnce)
{
    TestObject *const object = Create();
    ASSERT_TRUE(object);
    EXPECT_EQ(object->GetLockCount(), 1);
    EXPECT_EQ(object->GetRoot(), object);
    EXPECT_EQ(object->ReservedQuery(), 0);
    object->Lock();
    EXPECT_EQ(object->GetLockCount(), 2);
    object->Unlock();
    EXPECT_EQ(object->GetLockCount(), 1);
    EXPECT_EQ(TestObject::destroyed, 0);
    object->Unlock();
    EXPECT_EQ(TestObject::destroyed, 1);
}

TEST_F(ObjectLifetime, InterfacesAreFoundByName)
{
    TestObject *const object = Create("TestObject");
    ASSERT_TRUE(object);
    for (const char *name : {"IRoot", "TestObject"}) {
        void *out = nullptr;
        EXPECT_TRUE(object->QueryInterface(Tx::IID(name), &out, 0)) << name;
        EXPECT_EQ(out, object) << name;
    }
    IWeakObject *const weak = WeakInterface(object);
    EXPECT_EQ(object->GetLockCount(), 4);
    EXPECT_EQ(weak->GetRoot(), object);
    EXPECT_EQ(weak->GetClassDescriptor(), object->GetClassDescriptor());
    void *out = &out;
    EXPECT_FALSE(object->QueryInterface(Tx::IID("INobody"), &out, 0));
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(object->GetLockCount(), 4);
    for (int i = 0; i < 4; ++i)
        weak->Unlock();
    EXPECT_EQ(TestObject::destroyed, 1);
}

TEST_F(ObjectLifetime, AFailedCreationLeavesNothing)
{
    EXPECT_FALSE(Create("INobody"));
    EXPECT_EQ(TestObject::destroyed, 1);

    void *out = &out;
    for (const Tx::Clsid &unknown :
         {Tx::Clsid("Tests", "Nobody"), Tx::Clsid("Nowhere", "TestObject")}) {
        EXPECT_FALSE(TeskCreateInstance(unknown, Tx::IID("IRoot"), &out));
        EXPECT_EQ(out, nullptr);
    }

    TeskFailAllocation(TeskContainerAllocation, 1); // not what creation needs
    TestObject *const object = Create();
    EXPECT_TRUE(object && TeskFailureIsPending());
    TeskFailAllocation(TeskObjectAllocation | TeskContainerAllocation, 1);
    EXPECT_FALSE(Create());
    object->Unlock();

    TestObject::constructorFails = true;
    EXPECT_FALSE(Create());
    TestObject::constructorFails = false;
    EXPECT_EQ(TestObject::destroyed, 2);
}

TEST_F(ObjectLifetime, MemoryIsAccountedToTheClass)
{
    TestObject *const objects[] = {Create(), Create()};
    const TeskAccount *const account = Account(TeskClassAccounts(), "TestObject");
    ASSERT_TRUE(account);
    constexpr std::int64_t size = sizeof(RootRefLockWR<TestObject>);
    EXPECT_EQ(account->liveObjects, 2);
    EXPECT_EQ(account->bytes, 2 * size);
    objects[0]->Unlock();
    EXPECT_EQ(account->liveObjects, 1);
    EXPECT_EQ(account->bytes, size);
    EXPECT_EQ(account->peakBytes, 2 * size);
    EXPECT_EQ(account->peakAllocations, 2);
    TeskResetReport();
    EXPECT_EQ(account->peakAllocations, 1);
    EXPECT_EQ(TeskReportTotals().peakBytes, size);
    objects[1]->Unlock();
}

TEST_F(ObjectLifetime, WithoutAClassTableOnlyTheCountingOfInstancesIsMissing)
{
    ITeskClasses *const classes = TxClasses;
    TxClasses = nullptr;
    auto *const object = new RootRefLockWR<TestObject>;
    EXPECT_EQ(object->GetLockCount(), 1);
    EXPECT_EQ(TeskReportTotals().liveObjects, 0);
    void *out = nullptr;
    EXPECT_FALSE(object->QueryInterface(Tx::IID("IRoot"), &out, 0));
    object->Unlock();
    TxClasses = classes;
    EXPECT_EQ(TestObject::destroyed, 1);
}

/// An object before the first line of main and one after its last.
struct LoadAndExit {
    LoadAndExit() : createdAtLoad(UseOne()) {}
    ~LoadAndExit()
    {
        if (!UseOne())
            std::abort();
    }
    static bool UseOne()
    {
        auto *const object = new RootRefLockWR<TestObject>;
        const bool counted = TeskReportTotals().liveObjects == 1;
        object->Unlock();
        return counted && TeskReportTotals().liveObjects == 0;
    }
    bool createdAtLoad;
};
LoadAndExit loadAndExit;

TEST_F(ObjectLifetime, ObjectsMayComeAndGoDuringLoadAndExit)
{
    EXPECT_TRUE(loadAndExit.createdAtLoad);
}

} // namespace
