#pragma once

// Importance sampling as plain loops and a tree of allocated cells.

#include "model/LiteralProjection.h"

#include <memory>
#include <vector>

namespace literal {

struct QuadCell {
    int count = 0;
    int depth = 0;
    std::unique_ptr<QuadCell> children[4];
};

struct ImportanceSample {
    double cosTheta;
    double theta;
    double phi;
    QuadCell *cell = nullptr; ///< the leaf that holds the sample
};

void BuildQuadCell(QuadCell &cell, const std::vector<ImportanceSample *> &samples, int maxDepth,
                   int depth, float phiMin, float cosMin, float phiMax, float cosMax);

/// Builds the whole tree over the samples; it owns the cells that they point to.
std::unique_ptr<QuadCell> BuildQuadTree(const std::vector<ImportanceSample *> &samples);

struct PdfSamples {
    struct Offset {
        double x;
        double y;
    };

    std::vector<Offset> offsets;
    std::vector<double> densities;
    std::vector<Sample> cover; ///< of the whole sphere
};

/// Seeds the calling thread's generator and draws.
PdfSamples GeneratePdfSamples(int seed, int sqrtNumSamples, int numGaussSamples);

/// The 900 coefficients of the Gaussian.
std::vector<float> ImportanceSampledGauss(const Tables &tables, const PdfSamples &pdf,
                                          double latitude, double longitude, double stdDev);

} // namespace literal
