#include "tests/tesk/HostTest.h"
#include "vexcore/include/VEXMemory"

#include <cstdint>

namespace {

class WeakReferences : public HostTest {
protected:
    /// A new object with one reference, seen through its weak interface.
    IWeakObject *CreateWeak()
    {
        TestObject *const object = Create();
        IWeakObject *const weak = WeakInterface(object);
        object->Unlock();
        return weak;
    }

    std::string log;
    Listener a{'a', log}, b{'b', log}, c{'c', log};
};

TEST_F(WeakReferences, AreToldInReverseOrderOfRegistration)
{
    Object *const object = new Object;
    size_t left = 3;
    const auto check = [&](IWeakObject *told) {
        EXPECT_EQ(told, static_cast<IWeakObject *>(object));
        EXPECT_EQ(object->WeakReferenceCount(), --left);
        EXPECT_EQ(told->GetLockCount(), 1);
        EXPECT_EQ(TestObject::destroyed, 0);
    };
    Listener first('1', log, check), second('2', log, check), third('3', log, check);
    for (Listener *listener : {&first, &second, &third})
        object->AddWeakReference(listener);
    object->Unlock();
    EXPECT_EQ(log, "321");
    EXPECT_EQ(TestObject::destroyed, 1);
}

TEST_F(WeakReferences, OneThatTakesAReferenceKeepsTheObject)
{
    IWeakObject *const weak = CreateWeak();
    Listener keeper('k', log, [](IWeakObject *object) { object->Lock(); });
    for (WeakReference *reference :
         {static_cast<WeakReference *>(&a), static_cast<WeakReference *>(&keeper),
          static_cast<WeakReference *>(&c)})
        weak->AddWeakReference(reference);
    weak->Unlock();
    EXPECT_EQ(log, "cka"); // those after it are told as well
    EXPECT_EQ(TestObject::destroyed, 0);
    EXPECT_EQ(weak->GetLockCount(), 1);
    weak->Unlock(); // the list is empty: nobody is told again
    EXPECT_EQ(log, "cka");
    EXPECT_EQ(TestObject::destroyed, 1);
}

TEST_F(WeakReferences, ThoseAddedMeanwhileAreToldToo)
{
    IWeakObject *const weak = CreateWeak();
    // A reference taken and given back does not end the object in the middle of it all.
    Listener adder('+', log, [&](IWeakObject *object) {
        object->Lock();
        object->AddWeakReference(&b);
        object->Unlock();
    });
    weak->AddWeakReference(&a);
    weak->AddWeakReference(&adder);
    weak->Unlock();
    EXPECT_EQ(log, "+ba");
    EXPECT_EQ(TestObject::destroyed, 1);
}

TEST_F(WeakReferences, RemovalTakesTheOldestEntryAndKeepsTheOrder)
{
    struct Case {
        const char *added;
        const char *removed;
        const char *told;
    };
    for (const Case &row : {Case{"abc", "b", "ca"}, Case{"abab", "a", "bab"}, Case{"aa", "", "aa"},
                            Case{"ab", "c", "ba"}, Case{"ab", "aab", ""}, Case{"", "a", ""}}) {
        const auto listener = [this](char letter) {
            return letter == 'a' ? &a : letter == 'b' ? &b : &c;
        };
        log.clear();
        IWeakObject *const weak = CreateWeak();
        for (const char *letter = row.added; *letter; ++letter)
            weak->AddWeakReference(listener(*letter));
        for (const char *letter = row.removed; *letter; ++letter)
            weak->RemoveWeakReference(listener(*letter));
        weak->Unlock();
        EXPECT_EQ(log, row.told) << row.added << " without " << row.removed;
    }
}

TEST_F(WeakReferences, TheListIsStoredUnderItsTagAndGrowsByHalf)
{
    constexpr std::int64_t capacities[] = {1, 2, 3, 4, 6, 6, 9, 9, 9, 13};
    IWeakObject *const weak = CreateWeak();
    const TeskAccount *account = Account(TeskTagAccounts(), "WeakRefSite/mRefs");
    EXPECT_EQ(account ? account->allocations : 0, 0); // an empty list takes none
    for (const std::int64_t capacity : capacities) {
        weak->AddWeakReference(&a);
        account = Account(TeskTagAccounts(), "WeakRefSite/mRefs");
        ASSERT_TRUE(account);
        EXPECT_EQ(account->allocations, 1);
        EXPECT_EQ(account->bytes, capacity * 8);
    }
    EXPECT_STREQ(account->file, "vexcore/include/TrackableContainer");
    EXPECT_EQ(account->line, 54);
    EXPECT_NE(TeskReportText().find("tag WeakRefSite/mRefs: 104 bytes in 1 allocations"),
              std::string::npos)
        << TeskReportText();
    weak->Unlock();
    EXPECT_EQ(log, "aaaaaaaaaa");
}

TEST_F(WeakReferences, WithoutMemoryTheListStaysAsItWas)
{
    IWeakObject *const weak = CreateWeak();
    weak->AddWeakReference(&a);
    TeskFailAllocation(TeskContainerAllocation, 1);
    EXPECT_THROW(weak->AddWeakReference(&b), std::bad_alloc);
    for (const std::size_t size : {SIZE_MAX, SIZE_MAX / 2})
        EXPECT_THROW(VEXMallocWithTracking(size, "WeakRefSite/mRefs", "", 1), std::bad_alloc);
    weak->AddWeakReference(&c);
    weak->Unlock();
    EXPECT_EQ(log, "ca");
}

TEST_F(WeakReferences, AnObjectThatIsDeletedOutrightTellsNobodyAndFreesTheList)
{
    IWeakObject *const weak = CreateWeak();
    weak->AddWeakReference(&a);
    auto *const object = static_cast<TestObject *>(weak->GetRoot());
    static_cast<RootRefLockWR<TestObject> *>(object)->Object::Counting::Unlock();
    EXPECT_EQ(log, "");
    EXPECT_EQ(TestObject::destroyed, 1);
}

} // namespace
