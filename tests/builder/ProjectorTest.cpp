#include "orvane/builder/Projector.h"

#include "orvane/builder/LookUpTables.h"
#include "tests/builder/ProjectionCases.h"

#include <limits>
#include <random>

namespace {

using orvane::Projector;

struct WeightedPoint {
    double theta, phi, value;
};

/// A first run of ordinary values with zeros and extremes among them, then one that ends in `last`.
std::vector<WeightedPoint> Points(std::size_t count, double last)
{
    const double special[] = {0.0, -0.0, 1e-310, -1e-46, 255.0, 1e30, -1e30};
    std::mt19937 random(static_cast<unsigned>(count));
    std::uniform_real_distribution<> unit;
    std::vector<WeightedPoint> points;
    for (std::size_t i = 0; i < count; ++i)
        points.push_back({unit(random) * 3.14159265, unit(random) * literal::twoPi,
                          i % 3 == 1 ? special[i / 3 % std::size(special)] : unit(random) - 0.3});
    if (count > 0)
        points.back() = {std::acos(-1.0), std::nextafter(literal::twoPi, 10.0), last};
    return points;
}

TEST(Projector, AddsLikeThePlainLoop)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct {
        std::size_t points;
        std::int32_t coefficients;
        double last;
    } cases[] = {{0, 900, 0},    {1, 900, 1},           {2, 1, 1},
                 {3, 4, 0.0},    {4, 5, -0.0},          {5, 17, 2},
                 {63, 9, 1},     {64, 100, 1},          {65, 441, 1},
                 {131, 900, -1}, {9, 900, infinity},    {6, 25, -infinity},
                 {7, 64, 1e300}, {8, 16, std::nan("")}, {13, 898, 1},
                 {12, 0, 1}};
    for (const int numSteps : projectionTableSizes) {
        ProjectionCase model(numSteps);
        for (const auto &[numPoints, numCoefficients, last] : cases)
            for (const auto rounding :
                 {Projector::Rounding::Weighted, Projector::Rounding::Pixels}) {
                const auto points = Points(numPoints, last);
                std::vector<float> expected(numCoefficients);
                for (const auto &[theta, phi, value] : points)
                    if (rounding == Projector::Rounding::Weighted)
                        literal::AddWeighted(model.tables, phi, theta, value, expected);
                    else
                        literal::AddPixel(model.tables, phi, theta, static_cast<float>(value),
                                          expected);
                for (float &coefficient : expected)
                    coefficient = 0.1f * coefficient;
                EXPECT_TRUE(model.Gives(
                    expected,
                    [&, count = numCoefficients] {
                        Projector projector(*model.builder, count, rounding);
                        for (const auto &[theta, phi, value] : points)
                            projector.Add(orvane::PolarStep(*model.builder, theta), phi, value);
                        projector.Store(0.1f, 77, *model.set);
                    }))
                    << numPoints << " points, " << numCoefficients << " coefficients, last value "
                    << last;
                EXPECT_EQ(model.set->numBands, 77);
            }
    }
}

} // namespace
