// Which kernels run: the table that answers is the one that was asked for.

#include "orvane/kernels/InstructionSet.h"

#include "orvane/builder/SHBuilder.h"
#include "tests/native/EachInstructionSet.h"
#include "tests/native/MakeObject.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace orvane;

TEST(InstructionSets, AnswerWithKernelsOfTheirOwnAndAreTheBuildersToChoose)
{
    const auto builder = MakeObject<SHBuilder>();
    EXPECT_EQ(builder->kernels, &BestKernels());
    std::set<RotationKernel> rotations;
    std::set<RenderKernel> renders;
    for (const Kernels *kernels : SupportedKernels()) {
        EXPECT_EQ(&KernelsFor(kernels->instructionSet), kernels);
        EXPECT_TRUE(rotations.insert(kernels->rotation).second) << Name(kernels->instructionSet);
        EXPECT_TRUE(renders.insert(kernels->render).second) << Name(kernels->instructionSet);
        builder->UseInstructionSet(kernels->instructionSet);
        EXPECT_EQ(builder->kernels, kernels);
    }
    // The widest comes last, and is the best.
    EXPECT_EQ(&BestKernels(), SupportedKernels().back());
    for (const auto set : {InstructionSet::Avx2, InstructionSet::Avx512})
        if (!IsSupported(set)) {
            EXPECT_THROW(builder->UseInstructionSet(set), std::invalid_argument);
        }
}

} // namespace
