#include "tests/module/Interpreter.h"

#include "tesk/TeskReport.h"

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
        EXPECT_EQ(TeskReportTotals().liveObjects, 0);
        EXPECT_EQ(TeskReportTotals().bytes, 0);
    }
};

[[maybe_unused]] const auto *const environment =
    ::testing::AddGlobalTestEnvironment(new Interpreter);

} // namespace
