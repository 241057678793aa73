#pragma once

// Two ways to run a recipe: with the library, and with the literal model.

#include "golden/Vectors.h"

#include <cstdint>

namespace golden {

/// What the library gives.
Values RunShipped(const Vector &vector);
/// What the literal model gives.
Values RunLiteral(const Vector &vector);

/// A call's arguments by index, as the type that the method takes.
class Arguments {
public:
    explicit Arguments(const Call &call) : call(call) {}

    const std::string &NewSet() const { return call.newSet; }
    const std::string &Name(int index) const { return call.arguments.at(index); }
    int Int(int index) const { return std::stoi(Name(index)); }
    double Double(int index) const { return std::stod(Name(index)); }
    /// Read as a double and rounded once more, as a script's argument is.
    float Float(int index) const { return static_cast<float>(Double(index)); }

private:
    const Call &call;
};

/// The buffer that stands for a seed: numBands * numBands coefficients.
std::vector<float> DrawCoefficients(int seed, int numBands);
/// The image that stands for a seed.
std::vector<std::uint8_t> DrawPixels(int seed, int width, int height);

} // namespace golden
