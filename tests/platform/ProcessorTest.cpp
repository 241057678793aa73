#include "platform/Processor.h"

#include "orvane/kernels/InstructionSet.h"

#include <gtest/gtest.h>

namespace {

TEST(Processor, AnswersAsTheCompilersLibraryDoes)
{
    const platform::ProcessorFeatures features = platform::AskProcessor();
    EXPECT_EQ(features.fma, __builtin_cpu_supports("fma") != 0);
    EXPECT_EQ(features.avx2, __builtin_cpu_supports("avx2") != 0);
    EXPECT_EQ(features.avx512f, __builtin_cpu_supports("avx512f") != 0);
    EXPECT_EQ(features.avx512dq, __builtin_cpu_supports("avx512dq") != 0);
    EXPECT_EQ(features.avx512bw, __builtin_cpu_supports("avx512bw") != 0);
    EXPECT_EQ(features.avx512vl, __builtin_cpu_supports("avx512vl") != 0);
}

TEST(Processor, EverySetNeedsAllOfItsFeatures)
{
    using orvane::InstructionSet;
    using orvane::IsSupported;
    const platform::ProcessorFeatures all{true, true, true, true, true, true};
    EXPECT_TRUE(IsSupported(InstructionSet::Avx512, all));
    EXPECT_TRUE(IsSupported(InstructionSet::Avx2, {.fma = true, .avx2 = true}));
    EXPECT_TRUE(IsSupported(InstructionSet::Baseline, {}));
    for (bool platform::ProcessorFeatures::*const missing :
         {&platform::ProcessorFeatures::fma, &platform::ProcessorFeatures::avx2,
          &platform::ProcessorFeatures::avx512f, &platform::ProcessorFeatures::avx512dq,
          &platform::ProcessorFeatures::avx512bw, &platform::ProcessorFeatures::avx512vl}) {
        EXPECT_FALSE(platform::ProcessorFeatures{}.*missing);
        platform::ProcessorFeatures some = all;
        some.*missing = false;
        EXPECT_FALSE(IsSupported(InstructionSet::Avx512, some));
        EXPECT_EQ(IsSupported(InstructionSet::Avx2, some), some.fma && some.avx2);
    }
}

} // namespace
