#include "model/LiteralMipMaps.h"
#include "orvane/sh/LegendreIntegrals.h"
#include "tests/builder/BuilderCase.h"

namespace {

TEST(IntegralMipMaps, HoldEveryBandAndWedge)
{
    for (const int numSteps : {5, 256, 1024}) {
        BuilderCase model(numSteps);
        const literal::Tables &tables = model.tables;
        SHBuilder &builder = model.builder;
        EXPECT_EQ(builder.integrals.totalIntegral, 0.0);
        for (int call = 0; call < 2; ++call)
            builder.GenerateImporanceIntegralMipMaps();
        const auto &theta = builder.integrals.thetaIntegralMipMap;
        const auto &phi = builder.integrals.phiIntegralMipMap;
        ASSERT_EQ(theta.size(), 12u);
        ASSERT_EQ(phi.size(), 12u);
        std::vector<double> band;
        for (int level = 0; level < 12; ++level) {
            const int n = 1 << level;
            const double d = 2.0 / n;
            const double dphi = 6.2831855f / static_cast<float>(n);
            ASSERT_EQ(theta[level].size(), static_cast<std::size_t>(n));
            ASSERT_EQ(phi[level].size(), static_cast<std::size_t>(n));
            for (int k = 0; k < n; ++k) {
                const double x1 = k * d - 1.0;
                const double x2 = (k + 1) * d - 1.0;
                const auto integrals = orvane::IntegrateLegendre(x1, x2);
                band.assign(integrals.begin(), integrals.end());
                ASSERT_EQ(theta[level][k], literal::SumBand(x1, x2, band)) << level << ", " << k;
                ASSERT_EQ(phi[level][k], literal::PhiAntiderivative(tables, (k + 1) * dphi) -
                                             literal::PhiAntiderivative(tables, k * dphi))
                    << level << ", " << k;
            }
        }
        EXPECT_EQ(builder.integrals.integralScratch, band);
        double total = phi[1][0] * theta[1][0];
        total += phi[1][1] * theta[1][0];
        total += theta[1][1] * phi[1][0];
        total += phi[1][1] * theta[1][1];
        EXPECT_EQ(builder.integrals.totalIntegral, total);
    }
}

} // namespace
