#include "teskexposure/include/TeskSmartPtr"
#include "tests/tesk/HostTest.h"

namespace {

class SmartPointer : public HostTest {};

TEST_F(SmartPointer, OwnsTheReferenceOfWhatItCreates)
{
    {
        TeskSmartPtr<TestObject> pointer;
        EXPECT_FALSE(pointer.CreateInstance(Tx::Clsid("Tests", "Nobody")));
        EXPECT_EQ(pointer.Get(), nullptr);
        ASSERT_TRUE(pointer.CreateInstance(TestObject::Class()));
        EXPECT_EQ(pointer->GetLockCount(), 1);
        pointer->Lock();
        TestObject *const object = pointer.Get();
        pointer.Release();
        EXPECT_EQ(pointer.Get(), nullptr);
        EXPECT_EQ(object->GetLockCount(), 1);
        object->Unlock();
        pointer.Release(); // has nothing to give back
    }
    EXPECT_EQ(TestObject::destroyed, 1);
}

TEST_F(SmartPointer, IsEmptyBeforeTheObjectHearsOfIt)
{
    TeskSmartPtr<TestObject> pointer;
    std::string log;
    Listener looker('l', log, [&](IWeakObject *) { EXPECT_EQ(pointer.Get(), nullptr); });
    ASSERT_TRUE(pointer.CreateInstance(TestObject::Class()));
    IWeakObject *const weak = WeakInterface(pointer.Get());
    weak->AddWeakReference(&looker);
    weak->Unlock();
    pointer.Release();
    EXPECT_EQ(log, "l");
    EXPECT_EQ(TestObject::destroyed, 1);
}

} // namespace
