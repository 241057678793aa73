#include "orvane/builder/QuadTree.h"
#include "model/LiteralImportance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using orvane::QuadPoint;

/// Used again and again, as builders do.
orvane::QuadTree tree;

void ExpectLiteralLeaves(const std::vector<QuadPoint> &points)
{
    std::vector<literal::ImportanceSample> samples(points.size());
    std::vector<literal::ImportanceSample *> pointers(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        samples[i] = {points[i].cosTheta, 0.0, points[i].phi};
        pointers[i] = &samples[i];
    }
    const auto root = literal::BuildQuadTree(pointers);
    const std::vector<orvane::QuadLeaf> &leaves = tree.FindLeaves(points);
    ASSERT_EQ(leaves.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        ASSERT_EQ(leaves[i].depth, samples[i].cell->depth) << "point " << i;
        ASSERT_EQ(leaves[i].count, samples[i].cell->count) << "point " << i;
    }
}

/// A bound of some cell on the way down from the root, or its neighbour among the doubles.
double NearMidline(float low, float high, std::mt19937 &random)
{
    float middle = 0;
    for (auto depth = random() % 11 + 1; depth > 0; --depth) {
        middle = (low + high) * 0.5f;
        (random() % 2 ? low : high) = middle;
    }
    const double sides[] = {middle, std::nextafter(middle, -9.0), std::nextafter(middle, 9.0)};
    return sides[random() % 3];
}

TEST(QuadTree, LeavesAreThoseOfTheLiteralTree)
{
    std::mt19937 random(7);
    std::normal_distribution<double> normal;
    const auto spread = [&](double width) {
        return QuadPoint{literal::WrapAngle(width * normal(random)),
                         std::cos(width * normal(random))};
    };
    const auto midline = [&] {
        return QuadPoint{std::abs(NearMidline(0.0f, 6.2831855f, random)),
                         NearMidline(-1.0f, 1.0f, random)};
    };
    // Wide, narrow, on the midlines, and mixtures of these.
    for (const std::size_t count : {0, 1, 2, 3, 50, 3000})
        for (const unsigned kinds : {1u, 2u, 4u, 7u}) {
            std::vector<QuadPoint> points;
            while (points.size() < count)
                if (const auto kind = random() % 3; kinds >> kind & 1)
                    points.push_back(kind == 2 ? midline() : spread(kind == 0 ? 4.0 : 0.01));
            ExpectLiteralLeaves(points);
        }
    // What lies at the ends of the ranges belongs to the outer cells.
    const double turn = literal::twoPi;
    std::vector<QuadPoint> points;
    for (const double phi : {0.0, 5e-324, turn / 2, std::nextafter(turn, 0.0), turn,
                             std::nextafter(turn, 7.0), turn * (1 + 1e-7)})
        for (const double cosTheta : {-1.0, std::nextafter(-1.0, 0.0), -5e-324, 0.0, 1e-20, 1.0})
            points.insert(points.end(), 2, {phi, cosTheta});
    ExpectLiteralLeaves(points);
}

} // namespace
