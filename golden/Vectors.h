#pragma once

// Golden vectors: recipes and what they have to give. tests/golden/README.md states the format.

#include <string>
#include <vector>

namespace golden {

using Words = std::vector<std::string>;
/// What a recipe gives: coefficients, grey levels or the methods' results.
using Values = std::vector<double>;

struct Vector {
    std::string name;
    std::string functions; ///< the library functions that take part, or "none"
    double tolerance = 0.0;
    std::vector<Words> calls; ///< `method arguments...` or `newSet = method arguments...`
    std::string target;       ///< name of a set, "image" or "results"
    Values expected;
};

/// The vectors of a file, in its order.
/// @throws std::runtime_error where it cannot be read
std::vector<Vector> Read(const std::string &path);

/// What the library gives.
Values Run(const Vector &vector);

struct Verdict {
    bool passes;
    std::string text;
};

/// How far `actual` is from what the vector expects.
Verdict Compare(const Vector &vector, const Values &actual);

} // namespace golden
