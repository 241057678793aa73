#pragma once

// A class of objects to try the host with, and a fixture that sees to it that nothing is left.

#include "teskexposure/include/TeskCollections"
#include "teskexposure/include/TeskWeakRef"
#include "tests/native/Describe.h"
#include "tests/tesk/NothingIsLeft.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <utility>

class TestObject : public IRoot {
public:
    static ClassDescriptor *StaticClassDescriptor()
    {
        return Describe<TestObject>("Tests", "TestObject");
    }
    static const Tx::Clsid &Class() { return *StaticClassDescriptor()->clsid; }

    TestObject()
    {
        if (constructorFails)
            throw std::bad_alloc();
    }
    ~TestObject() { ++destroyed; }
    ClassDescriptor *GetClassDescriptor() override { return StaticClassDescriptor(); }

    static inline bool constructorFails = false;
    static inline int destroyed = 0; ///< since the test began
};

/// The complete object, its count open to tests.
class Object : public RootRefLockWR<TestObject> {
public:
    using Counting = RootRefLock<TeskWeakAdapter<TestObject>>;
    using Counting::mLockCount;
    WeakReference **WeakReferences() { return weakRefSite.mRefs.begin(); }
    size_t WeakReferenceCount() const { return weakRefSite.mRefs.size(); }
};

/// Writes its letter into a log when it is told, then does what it was given to do.
class Listener : public WeakReference {
public:
    Listener(char letter, std::string &log, std::function<void(IWeakObject *)> action = {})
        : letter(letter), log(log), action(std::move(action))
    {
    }
    void Invalidate(IWeakObject *object) override
    {
        log += letter;
        if (action)
            action(object);
    }

private:
    char letter;
    std::string &log;
    std::function<void(IWeakObject *)> action;
};

class HostTest : public testing::Test {
protected:
    void SetUp() override
    {
        TestObject::destroyed = 0;
        ExpectNothingIsLeft(); // of the tests before
        TeskResetReport();
        TxClasses->RegisterClasses(
            {{TestObject::StaticClassDescriptor(), &ClassFactory<TestObject>, 0}});
    }

    /// A test that provokes assertions looks at them and resets the report.
    void TearDown() override { ExpectNothingIsLeft(); }

    /// A new object through its factory; null where that fails.
    static TestObject *Create(const char *interface = "IRoot")
    {
        void *out = nullptr;
        const bool created = TeskCreateInstance(TestObject::Class(), Tx::IID(interface), &out);
        EXPECT_EQ(created, out != nullptr);
        return static_cast<TestObject *>(static_cast<IRoot *>(out));
    }

    static IWeakObject *WeakInterface(IRoot *object)
    {
        void *out = nullptr;
        EXPECT_TRUE(object->QueryInterface(Tx::IID("IWeakObject"), &out, 0));
        return static_cast<IWeakObject *>(out);
    }

    static const TeskAccount *Account(const TeskAccount *list, const std::string &name)
    {
        while (list && list->name != name)
            list = list->next;
        return list;
    }
};
