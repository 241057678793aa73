#include "model/LiteralModel.h"
#include "orvane/sh/Basis.h"
#include "tests/native/EachInstructionSet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using namespace orvane;

std::vector<double> Azimuths()
{
    const double hair = std::nextafter(literal::twoPi, 10.0);
    std::vector<double> azimuths = {0.0,   -0.0,  -0.5,  7.0,    5e-324, -5e-324, -1e-300,
                                    1e4,   -1e4,  1e7,   -1e7,   2e8,    -2e8,    1e15,
                                    -1e18, 1e300, -1e99, 0x1p26, 0x1p31, hair,    0x1p32};
    for (int turns = 1; turns <= 30; ++turns)
        for (const double sign : {1.0, -1.0}) {
            const double whole = sign * turns * literal::twoPi;
            for (const double azimuth : {whole, whole / 2, whole / 29, std::nextafter(whole, 0.0),
                                         std::nextafter(whole, 100.0 * whole)})
                azimuths.push_back(azimuth);
        }
    std::mt19937 random(1);
    for (const double range : {literal::twoPi, 200.0, 3e8})
        for (int i = 0; i < 100; ++i)
            azimuths.push_back(std::uniform_real_distribution<>(-range, range)(random));
    return azimuths;
}

TEST(AngleFactors, AreTheTableEntriesOfTheFoldedMultiples)
{
    for (const int numSteps : {1, 5, 7, 10, 256, 1000, 1024}) {
        const literal::Tables literalTables(numSteps);
        const AngleTables tables{literalTables.cosLut.data(), literalTables.sinLut.data(),
                                 literalTables.angleScale, numSteps};
        for (const Kernels *kernels : SupportedKernels())
            for (const int orders : {1, 2, 3, 9, 30})
                for (const double azimuth : Azimuths()) {
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
