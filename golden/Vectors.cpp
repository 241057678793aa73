#include "golden/Vectors.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace golden {

namespace {

Words Split(const std::string &text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// A vector from its text, without the word that opens it.
Vector Parse(const std::string &text)
{
    const std::size_t mark = text.find("\nresult ");
    std::istringstream lines(text.substr(0, mark));
    Vector vector;
    std::getline(lines, vector.name);
    std::string line;
    lines >> line >> std::ws;
    std::getline(lines, vector.functions);
    lines >> line >> vector.tolerance >> std::ws;
    while (std::getline(lines, line))
        vector.calls.push_back(Split(line));

    const Words words = Split(text.substr(mark));
    vector.target = words.at(1);
    for (std::size_t i = 3; i < words.size(); ++i) {
        if (vector.target != "image")
            vector.expected.push_back(std::stod(words[i]));
        else
            for (std::size_t digit = 0; digit < words[i].size(); digit += 2)
                vector.expected.push_back(std::stoi(words[i].substr(digit, 2), nullptr, 16));
    }
    vector.expected.resize(std::stoul(words.at(2)));
    return vector;
}

/// From a finite value to the next larger one.
template <typename Float> double UnitInLastPlace(Float value)
{
    return static_cast<double>(std::nextafter(value, std::numeric_limits<Float>::max())) - value;
}

} // namespace

std::vector<Vector> Read(const std::string &path)
{
    std::ifstream stream(path);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream)
        throw std::runtime_error("cannot read " + path);

    const std::string mark = "\nvector ";
    std::vector<Vector> vectors;
    for (std::size_t start = text.find(mark); start != std::string::npos;) {
        const std::size_t end = text.find(mark, start + 1);
        start += mark.size();
        vectors.push_back(Parse(text.substr(start, end - start)));
        start = end;
    }
    return vectors;
}

Verdict Compare(const Vector &vector, const Values &actual)
{
    const Values &expected = vector.expected;
    if (actual.size() != expected.size())
        return {false, std::to_string(actual.size()) + " values instead of " +
                           std::to_string(expected.size())};
    int different = 0;
    double largest = 0.0;
    double greatest = 0.0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        different +=
            std::bit_cast<std::uint64_t>(actual[i]) != std::bit_cast<std::uint64_t>(expected[i]);
        // What is no number is infinitely far away.
        const double distance = std::fabs(actual[i] - expected[i]);
        largest = std::max(largest, std::isnan(distance) ? HUGE_VAL : distance);
        greatest = std::max(greatest, std::fabs(expected[i]));
    }
    if (different == 0)
        return {true, "equal to the bit"};
    const bool isImage = vector.target == "image";
    if (!isImage)
        largest /= vector.target == "results" ? UnitInLastPlace(greatest)
                                              : UnitInLastPlace(static_cast<float>(greatest));
    char text[128];
    std::snprintf(text, sizeof text, "%d of %zu differ, by at most %.3g %s (tolerance %g)",
                  different, expected.size(), largest,
                  isImage ? "grey levels" : "units in the last place", vector.tolerance);
    return {vector.functions != "none" && largest <= vector.tolerance, text};
}

} // namespace golden
