#include "teskexposure/include/TeskSmartPtr"
#include "tests/tesk/HostTest.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

class Assertions : public HostTest {
protected:
    /// The hits since the last call, sorted by file and line, as "file:line expression".
    static std::vector<std::string> TakeHits()
    {
        std::vector<std::string> hits;
        for (const TeskAssertionCount *count = TeskAssertionCounts(); count; count = count->next) {
            hits.insert(hits.end(), static_cast<size_t>(count->hits),
                        std::string(count->file) + ":" + std::to_string(count->line) + " " +
                            count->expression);
        }
        std::sort(hits.begin(), hits.end());
        EXPECT_EQ(static_cast<std::int64_t>(hits.size()), TeskReportTotals().assertionHits);
        TeskResetReport();
        return hits;
    }
};

using Hits = std::vector<std::string>;

TEST_F(Assertions, WrongReferenceCountsAreReported)
{
    {
        Object object;
        object.mLockCount = 0;
        object.Unlock();
        EXPECT_EQ(object.mLockCount, -1); // and it is still there
        EXPECT_EQ(TakeHits(), Hits{"teskexposure/include/TeskWeakRef:118 this->mLockCount > 0"});

        object.Lock();
        EXPECT_EQ(object.mLockCount, 0);
        EXPECT_EQ(TakeHits(), Hits{"teskexposure/include/TeskClass:86 mLockCount >= 0"});

        object.Counting::Unlock();
        EXPECT_EQ(object.mLockCount, -1);
        EXPECT_EQ(TakeHits(), Hits{"teskexposure/include/TeskClass:92 mLockCount > 0"});
        EXPECT_EQ(TestObject::destroyed, 0);
    }
    EXPECT_EQ(TestObject::destroyed, 1);
    EXPECT_EQ(TakeHits(), Hits{});

    (new Object)->DeleteIfUnreferenced(); // with one reference
    EXPECT_EQ(TestObject::destroyed, 2);
    EXPECT_EQ(TakeHits(), (Hits{"teskexposure/include/TeskClass:148 mLockCount == 0",
                                "teskexposure/include/TeskClass:79 mLockCount<=0"}));

    {
        Object object; // leaves its scope with one reference
    }
    EXPECT_EQ(TestObject::destroyed, 3);
    EXPECT_EQ(TakeHits(), Hits{"teskexposure/include/TeskClass:79 mLockCount<=0"});
}

TEST_F(Assertions, MisusedSmartPointersAreReported)
{
    TeskSmartPtr<TestObject> pointer;
    EXPECT_EQ(pointer.operator->(), nullptr);
    pointer.operator->();
    EXPECT_NE(TeskReportText().find("assertion \"this->p\" failed 2 times, "
                                    "teskexposure/include/TeskSmartPtr:316\n"),
              std::string::npos);
    EXPECT_EQ(TakeHits(), Hits(2, "teskexposure/include/TeskSmartPtr:316 this->p"));

    EXPECT_TRUE(pointer.CreateInstance(TestObject::Class()));
    TestObject *const first = pointer.Get();
    pointer.Fill();
    EXPECT_EQ(TakeHits(), Hits{"teskexposure/include/TeskSmartPtr:107 !p"});

    EXPECT_TRUE(pointer.CreateInstance(TestObject::Class()));
    EXPECT_NE(pointer.Get(), first); // overwritten: its reference is now ours
    EXPECT_EQ(TakeHits(), (Hits{"teskexposure/include/TeskSmartPtr:107 !p",
                                "teskexposure/include/TeskSmartPtr:370 !this->p"}));
    first->Unlock();
}

} // namespace
