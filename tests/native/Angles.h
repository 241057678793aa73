#pragma once

#include "model/LiteralModel.h"

#include <cmath>
#include <random>
#include <vector>

/// Angles to fold: tiny ones, whole turns and parts of them with their neighbours, and others up to
/// `limit`.
inline std::vector<double> AnglesUpTo(double limit)
{
    std::vector<double> angles = {0.0, -0.0, -0.5, 7.0, 5e-324, -5e-324, 1e-300, -1e-300};
    for (int turns = -40; turns <= 40; ++turns) {
        const double whole = turns * literal::twoPi;
        for (const double angle : {whole, whole / 2, whole / 29, std::nextafter(whole, -1e9),
                                   std::nextafter(whole, 1e9)})
            angles.push_back(angle);
    }
    std::mt19937_64 random(1);
    for (const double range : {literal::twoPi, 200.0, limit})
        for (int i = 0; i < 200; ++i)
            angles.push_back(std::uniform_real_distribution<>(-range, range)(random));
    return angles;
}
