#pragma once

// Arithmetic on coefficient sets, element by element. Operands are taken by value, so that a target
// that is also an operand cannot disturb it.

#include <vector>

namespace literal {

struct Set {
    int numBands = 0;
    std::vector<float> coefficients;
};

void Add(Set &t, Set s);
void AddScaled(Set &t, Set s, float k);
void Subtract(Set &t, Set s);
void SubtractScaled(Set &t, Set s, float k);
void Scale(Set &t, float k);
void CopyScaleAndSubtract(Set &t, Set toCopy, double scale, Set toSubtract);
void Lerp(Set &t, Set from, Set to, double alpha);

} // namespace literal
