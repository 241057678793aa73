#include "orvane/base/PolarRow.h"
#include "orvane/sh/Basis.h"
#include "tests/native/Angles.h"
#include "tests/native/EachInstructionSet.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace orvane;

TEST(Evaluation, TakesTheTableEntriesOfTheFoldedMultiples)
{
    std::vector<double> azimuths = AnglesUpTo(3e8);
    for (const double large : {1e15, -1e18, 1e300, -1e99, 0x1p26, 0x1p31, 0x1p32})
        azimuths.push_back(large);
    for (const int numSteps : {1, 5, 7, 10, 256, 1000, 1024}) {
        const literal::Tables literalTables(numSteps);
        const AngleTables tables{literalTables.cosLut.data(), literalTables.sinLut.data(),
                                 literalTables.angleScale, numSteps};
        for (const Kernels *kernels : SupportedKernels())
            for (const double azimuth : azimuths)
                for (int m = 0; m < tableBands; ++m) {
                    // Of the term of one coefficient nothing but the factor is left.
                    double polarRow[polarRowLength] = {};
                    polarRow[PolarIndex(m, m)] = 1.0;
                    const auto factor = [&](int order) {
                        float coefficients[tableCoefficients] = {};
                        coefficients[CoefficientIndex(m, order)] = 1.0F;
                        return kernels->evaluation(tables, azimuth, polarRow, coefficients,
                                                   CoefficientCount(m + 1), m + 1);
                    };
                    // The literal fold would take seconds where an angle is large.
                    const int index =
                        std::min(literalTables.Index(WrapAngle(m * azimuth)), numSteps - 1);
                    ASSERT_EQ(factor(m), m == 0 ? 1.0 : literalTables.cosLut[index])
                        << numSteps << " steps, " << m << " * " << azimuth;
                    if (m > 0) {
                        ASSERT_EQ(factor(-m), literalTables.sinLut[index]);
                    }
                }
    }
}

} // namespace
