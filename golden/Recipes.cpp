#include "golden/Recipes.h"

#include "platform/RuntimeRandom.h"

namespace golden {

std::vector<float> DrawCoefficients(int seed, int numBands)
{
    platform::RuntimeRandom random{static_cast<std::uint32_t>(seed)};
    std::vector<float> coefficients(numBands * numBands);
    for (float &coefficient : coefficients)
        coefficient = static_cast<float>(random.Next() - 16384) / 16384.0f;
    return coefficients;
}

std::vector<std::uint8_t> DrawPixels(int seed, int width, int height)
{
    platform::RuntimeRandom random{static_cast<std::uint32_t>(seed)};
    std::vector<std::uint8_t> pixels(width * height);
    for (std::uint8_t &pixel : pixels)
        pixel = static_cast<std::uint8_t>(random.Next() & 255);
    return pixels;
}

} // namespace golden
