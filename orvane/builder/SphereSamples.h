#pragma once

// Samples of the sphere, each for the same area: the points of every quadrature.

#include <cstdint>
#include <vector>

/// One point of the sphere: polar angle 0 to pi, azimuth 0 to 2 pi, in radians.
struct SphericalSample {
    double theta;
    double phi;
};

namespace orvane {

/// Replaces `target` by n * n jittered samples, row by row in theta and uniform in area, each from
/// two draws, theta's first; none for n below 1. Draws from the thread's generator as it stands. A
/// phi may lie a hair above 2 pi.
/// @param n samples per axis, at most maxSamplesPerAxis
/// @throws std::bad_alloc where target has no room reserved; nothing is drawn then
void GenerateStratifiedSamples(std::int32_t n, std::vector<SphericalSample> &target);

} // namespace orvane
