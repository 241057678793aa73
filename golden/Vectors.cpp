#include "golden/Vectors.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace golden {

namespace {

const std::string vectorMark = "\nvector ";
const std::string resultMark = "\nresult ";

std::vector<std::string> Words(const std::string &text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

Call ParseCall(const std::string &line)
{
    std::vector<std::string> words = Words(line);
    Call call;
    if (words.size() > 2 && words[1] == "=") {
        call.newSet = words[0];
        words.erase(words.begin(), words.begin() + 2);
    }
    call.method = words.at(0);
    call.arguments.assign(words.begin() + 1, words.end());
    return call;
}

/// Takes the words after the word `keyword` from the next line.
std::string Setting(std::istream &lines, const std::string &keyword)
{
    std::string line;
    std::getline(lines, line);
    if (line.rfind(keyword + " ", 0) != 0)
        throw std::runtime_error("'" + line + "' stands where '" + keyword + "' has to");
    return line.substr(keyword.size() + 1);
}

/// A vector from its text, without the word that opens it.
Vector ParseVector(const std::string &text)
{
    const std::size_t mark = text.find(resultMark);
    if (mark == std::string::npos)
        throw std::runtime_error("a vector has no result");
    Vector vector;
    vector.recipe = text.substr(0, mark);

    std::istringstream lines(vector.recipe);
    std::getline(lines, vector.name);
    vector.functions = Setting(lines, "functions");
    vector.tolerance = std::stod(Setting(lines, "tolerance"));
    for (std::string line; std::getline(lines, line);)
        vector.calls.push_back(ParseCall(line));

    const std::vector<std::string> words = Words(text.substr(mark + resultMark.size()));
    vector.target = words.at(0);
    for (std::size_t word = 2; word < words.size(); ++word) {
        if (!vector.IsImage())
            vector.expected.push_back(std::strtod(words[word].c_str(), nullptr));
        else
            for (std::size_t digit = 0; digit < words[word].size(); digit += 2)
                vector.expected.push_back(std::stoi(words[word].substr(digit, 2), nullptr, 16));
    }
    vector.expected.resize(std::stoul(words.at(1)));
    return vector;
}

void WriteNumbers(std::ostream &out, Values values)
{
    // Zeros at the end go without saying; a negative one does not.
    while (!values.empty() && values.back() == 0.0 && !std::signbit(values.back()))
        values.pop_back();
    for (std::size_t i = 0; i < values.size(); ++i) {
        char text[32];
        std::snprintf(text, sizeof text, "%a", values[i]);
        out << text << (i % 6 == 5 || i + 1 == values.size() ? '\n' : ' ');
    }
}

void WritePixels(std::ostream &out, const Values &values)
{
    for (std::size_t i = 0; i < values.size(); ++i) {
        char text[4];
        std::snprintf(text, sizeof text, "%02x", static_cast<unsigned>(values[i]) & 255u);
        out << text << (i % 48 == 47 || i + 1 == values.size() ? "\n" : "");
    }
}

/// From the magnitude of a finite value to the next larger one.
template <typename Float> double UnitInLastPlace(Float value)
{
    const Float magnitude = std::fabs(value);
    return static_cast<double>(std::nextafter(magnitude, std::numeric_limits<Float>::infinity())) -
           magnitude;
}

bool IsSame(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

} // namespace

File Read(const std::string &path)
{
    std::ifstream stream(path);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream)
        throw std::runtime_error("cannot read " + path);

    File file;
    std::size_t start = text.find(vectorMark);
    file.head = text.substr(0, start);
    while (start != std::string::npos) {
        const std::size_t end = text.find(vectorMark, start + 1);
        const std::size_t first = start + vectorMark.size();
        file.vectors.push_back(
            ParseVector(text.substr(first, end == std::string::npos ? end : end - first)));
        start = end;
    }
    return file;
}

void Write(const std::string &path, const File &file)
{
    std::ofstream out(path, std::ios::binary);
    out << file.head;
    for (const Vector &vector : file.vectors) {
        out << vectorMark << vector.recipe << resultMark << vector.target << ' '
            << vector.expected.size() << '\n';
        if (vector.IsImage())
            WritePixels(out, vector.expected);
        else
            WriteNumbers(out, vector.expected);
    }
    if (!out.flush())
        throw std::runtime_error("cannot write " + path);
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
        different += !IsSame(actual[i], expected[i]);
        // A value that is no number is infinitely far away.
        const double distance = std::fabs(actual[i] - expected[i]);
        largest = std::max(largest, std::isnan(distance) ? HUGE_VAL : distance);
        greatest = std::max(greatest, std::fabs(expected[i]));
    }
    if (different == 0)
        return {true, "equal to the bit"};
    if (!vector.IsImage())
        largest /= vector.IsResults() ? UnitInLastPlace(greatest)
                                      : UnitInLastPlace(static_cast<float>(greatest));
    char text[128];
    std::snprintf(text, sizeof text, "%d of %zu differ, by at most %.3g %s (tolerance %g)",
                  different, expected.size(), largest,
                  vector.IsImage() ? "grey levels" : "units in the last place", vector.tolerance);
    return {!vector.IsExact() && largest <= vector.tolerance, text};
}

} // namespace golden
