#pragma once

// Samples and projections as plain loops.

#include "model/LiteralModel.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace literal {

struct Sample {
    double theta;
    double phi;
};

double RandomUnit();
double RandomGauss();
double GaussDensity(double x, double mean, double stdDev);

std::vector<Sample> StratifiedSamples(int n);

using Function = std::function<double(double phi, double theta)>;
Function Latitude(const Tables &tables);
Function Longitude(const Tables &tables);
Function Gauss(double stdDev, double latitude, double longitude);

/// Adds one point to the coefficients: (float)(basis * value) + coefficient.
void AddWeighted(const Tables &tables, double phi, double theta, double value,
                 std::vector<float> &coefficients);
/// The same as coefficient + (float)basis * pixel.
void AddPixel(const Tables &tables, double phi, double theta, float pixel,
              std::vector<float> &coefficients);

std::vector<float> Project(const Tables &tables, const std::vector<Sample> &samples, int bands,
                           const Function &function);
std::vector<float> ProjectImage(const Tables &tables, const std::vector<Sample> &samples, int width,
                                int height, std::size_t count, const std::uint8_t *pixels);

} // namespace literal
