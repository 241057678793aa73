#include "model/LiteralRender.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace literal {

std::uint8_t ToByte(double scaled, int offset)
{
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    const double whole = std::isnan(scaled) ? 0.0 : std::clamp(std::trunc(scaled), low, high);
    return static_cast<std::uint8_t>(std::clamp(whole + offset, 0.0, 255.0));
}

void Render(const Tables &tables, const float *coefficients, int bands, float scale, int offset,
            int slices, int slice, int width, int height, std::uint8_t *image)
{
    const double dPhi = 6.2831855f / static_cast<float>(width);
    const double dTheta = 3.1415927f / static_cast<float>(height);
    const int tileWidth = width / slices;
    const int tileHeight = height / slices;
    const int firstColumn = slice % slices * tileWidth;
    const int firstRow = slice / slices * tileHeight;
    for (int y = firstRow; y < firstRow + tileHeight; ++y)
        for (int x = firstColumn; x < firstColumn + tileWidth; ++x) {
            const double value = tables.Evaluate(coefficients, bands, static_cast<double>(x) * dPhi,
                                                 static_cast<double>(y) * dTheta);
            image[y * width + x] = ToByte(value * static_cast<double>(scale), offset);
        }
}

} // namespace literal
