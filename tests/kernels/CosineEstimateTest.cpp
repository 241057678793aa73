#include "tests/native/EachInstructionSet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using namespace orvane;

TEST(CosineEstimate, StaysWithinItsBoundAndSaysWhereItHasNone)
{
    const double beyond[][2] = {{-0.1, 1}, {3.2, 1}, {1, -0.1}, {1, 6.4}, {1, std::nan("")}};
    std::mt19937 random(3);
    std::uniform_real_distribution<long double> theta(0, 3.1415927L), phi(0, 6.283186L);
    CosineBlock block;
    for (int round = 0; round < 100; ++round) {
        const long double theta0 = theta(random), phi0 = phi(random);
        const Direction direction{static_cast<double>(std::cos(phi0) * std::sin(theta0)),
                                  static_cast<double>(std::cos(theta0)),
                                  static_cast<double>(std::sin(phi0) * std::sin(theta0))};
        for (int i = 0; i < cosineBlock; ++i) {
            block.theta[i] = static_cast<double>(theta(random));
            block.phi[i] = static_cast<double>(phi(random));
        }
        block.theta[7] = beyond[round % 5][0];
        block.phi[7] = beyond[round % 5][1];
        for (const Kernels *kernels : SupportedKernels()) {
            kernels->cosineEstimate(direction, block);
            EXPECT_TRUE(std::isnan(block.cosine[7]));
            for (int i = 0; i < cosineBlock; ++i) {
                const long double t = block.theta[i];
                const long double exact =
                    std::cos(theta0) * std::cos(t) +
                    std::sin(theta0) * std::sin(t) * std::cos(block.phi[i] - phi0);
                ASSERT_TRUE(i == 7 || std::fabs(block.cosine[i] - exact) < cosineEstimateError)
                    << Name(kernels->instructionSet) << ", theta " << t;
            }
        }
    }
}

} // namespace
