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
    class Looker : public WeakReference {
    public:
        void Invalidate(IWeakObject *) override { seen = pointer.Get(); }
        TeskSmartPtr<TestObject> pointer;
        TestObject *seen = nullptr;
    } looker;
    ASSERT_TRUE(looker.pointer.CreateInstance(TestObject::Class()));
    looker.seen = looker.pointer.Get();
    IWeakObject *const weak = WeakInterface(looker.pointer.Get());
    weak->AddWeakReference(&looker);
    weak->Unlock();
    looker.pointer.Release();
    EXPECT_EQ(looker.seen, nullptr);
    EXPECT_EQ(TestObject::destroyed, 1);
}

} // namespace
