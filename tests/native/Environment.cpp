#include "tests/tesk/NothingIsLeft.h"

namespace {

class Environment : public testing::Environment {
    void TearDown() override { ExpectNothingIsLeft(); }
};

[[maybe_unused]] const auto *const environment = testing::AddGlobalTestEnvironment(new Environment);

} // namespace
