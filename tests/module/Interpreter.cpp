#include "tests/module/Interpreter.h"

#include "tests/module/FailingNew.h"
#include "tests/tesk/NothingIsLeft.h"

#include <cstdint>

extern "C" void init_Orvane();

namespace {

/// One interpreter for all tests, with the module imported. When it has ended, nothing is left.
class Interpreter : public ::testing::Environment {
public:
    void SetUp() override
    {
        Py_NoSiteFlag = 1;
        Py_InitializeEx(0);
        // An import that runs out of memory can be tried again.
        for (std::int64_t n = 1;; ++n) {
            failing_new::Fail(n);
            init_Orvane();
            const bool hasFailed = !failing_new::IsPending();
            failing_new::Fail(0);
            ASSERT_EQ(TakeError(), hasFailed ? "MemoryError: " : "");
            if (!hasFailed)
                break;
        }
    }
    void TearDown() override
    {
        Py_Finalize();
        ExpectNothingIsLeft();
    }
};

[[maybe_unused]] const auto *const environment =
    ::testing::AddGlobalTestEnvironment(new Interpreter);

} // namespace
