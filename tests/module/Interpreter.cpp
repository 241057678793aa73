#include "tests/module/Interpreter.h"

#include "tests/tesk/NothingIsLeft.h"

extern "C" void init_Orvane();

namespace {

/// One interpreter for all tests, with the module imported. When it has ended, nothing is left.
class Interpreter : public ::testing::Environment {
public:
    void SetUp() override
    {
        Py_NoSiteFlag = 1;
        Py_InitializeEx(0);
        init_Orvane();
        ASSERT_EQ(TakeError(), "");
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
