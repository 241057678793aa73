#include "orvane/sh/Basis.h"
#include "tests/native/Angles.h"
#include "tests/native/EachInstructionSet.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace orvane;

TEST(AngleFactors, AreTheTableEntriesOfTheFoldedMultiples)
{
    std::vector<double> azimuths = AnglesUpTo(3e8);
    for (const double large : {1e15, -1e18, 1e300, -1e99, 0x1p26, 0x1p31, 0x1p32})
        azimuths.push_back(large);
    for (const int numSteps : {1, 5, 7, 10, 256, 1000, 1024}) {
        const literal::Tables literalTables(numSteps);
        const AngleTables tables{literalTables.cosLut.data(), literalTables.sinLut.data(),
                                 literalTables.angleScale, numSteps};
        for (const Kernels *kernels : SupportedKernels())
            for (const int orders : {1, 2, 3, 9, 30})
                for (const double azimuth : azimuths) {
                    AngleFactors factors;
                    kernels->angleFactors(tables, azimuth, orders, factors);
                    ASSERT_EQ(factors.cosine[0], 1.0);
                    for (int m = 1; m < orders; ++m) {
                        // The literal fold would take seconds where an angle is large.
                        const int index =
                            std::min(literalTables.Index(WrapAngle(m * azimuth)), numSteps - 1);
                        ASSERT_EQ(factors.cosine[m], literalTables.cosLut[index])
                            << numSteps << " steps, " << m << " * " << azimuth;
                        ASSERT_EQ(factors.sine[m], literalTables.sinLut[index]);
                    }
                }
    }
}

} // namespace
