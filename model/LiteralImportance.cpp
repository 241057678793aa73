#include "model/LiteralImportance.h"

#include "platform/RuntimeRandom.h"

#include <cmath>

namespace literal {

void BuildQuadCell(QuadCell &cell, const std::vector<ImportanceSample *> &samples, int maxDepth,
                   int depth, float phiMin, float cosMin, float phiMax, float cosMax)
{
    cell.depth = depth;
    if (samples.empty())
        return;
    if (samples.size() == 1 || depth >= maxDepth - 1) {
        for (ImportanceSample *sample : samples)
            sample->cell = &cell;
        cell.count = static_cast<int>(samples.size());
        return;
    }
    const float midPhi = (phiMin + phiMax) * 0.5f;
    const float midCos = (cosMin + cosMax) * 0.5f;
    std::vector<ImportanceSample *> lists[4];
    for (ImportanceSample *sample : samples) {
        const bool right = sample->phi > midPhi;
        const bool upper = sample->cosTheta > midCos;
        lists[upper ? (right ? 2 : 3) : (right ? 1 : 0)].push_back(sample);
    }
    for (int quadrant = 0; quadrant < 4; ++quadrant) {
        if (lists[quadrant].empty())
            continue;
        const bool right = quadrant == 1 || quadrant == 2;
        const bool upper = quadrant >= 2;
        cell.children[quadrant] = std::make_unique<QuadCell>();
        BuildQuadCell(*cell.children[quadrant], lists[quadrant], maxDepth, depth + 1,
                      right ? midPhi : phiMin, upper ? midCos : cosMin, right ? phiMax : midPhi,
                      upper ? cosMax : midCos);
    }
}

std::unique_ptr<QuadCell> BuildQuadTree(const std::vector<ImportanceSample *> &samples)
{
    auto root = std::make_unique<QuadCell>();
    BuildQuadCell(*root, samples, 12, 0, 0.0f, -1.0f, 6.2831855f, 1.0f);
    return root;
}

PdfSamples GeneratePdfSamples(int seed, int sqrtNumSamples, int numGaussSamples)
{
    PdfSamples pdf;
    platform::srand(static_cast<std::uint32_t>(seed));
    pdf.offsets.push_back({0.0, 0.0});
    pdf.densities.push_back(1.0);
    for (int i = 1; i < numGaussSamples; ++i) {
        const double g = RandomGauss();
        const double a = platform::rand() * 3.051850947599719e-05 * twoPi;
        pdf.offsets.push_back({std::sin(a) * g, std::cos(a) * g});
        pdf.densities.push_back(std::exp((g - 0.0) * (g - 0.0) * -0.5) * 0.3989422803558185);
    }
    pdf.cover = StratifiedSamples(sqrtNumSamples);
    pdf.densities.resize(pdf.densities.size() + pdf.cover.size(), 0.0);
    return pdf;
}

std::vector<float> ImportanceSampledGauss(const Tables &tables, const PdfSamples &pdf,
                                          double latitude, double longitude, double stdDev)
{
    double cellAreas[12];
    for (int depth = 0; depth < 12; ++depth)
        cellAreas[depth] = 12.566370964050293 / std::pow(4.0, depth);

    std::vector<std::unique_ptr<ImportanceSample>> owned;
    std::vector<ImportanceSample *> samples;
    const auto place = [&](double theta, double phi) {
        owned.push_back(std::make_unique<ImportanceSample>());
        samples.push_back(owned.back().get());
        *samples.back() = {std::cos(theta), theta, phi};
    };
    for (const PdfSamples::Offset &offset : pdf.offsets) {
        const double t = stdDev * offset.x + latitude;
        if (t < 0)
            place(-t, WrapAngle(stdDev * offset.y + longitude + 3.1415927410125732));
        else
            place(t, WrapAngle(stdDev * offset.y + longitude));
    }
    for (const Sample &sample : pdf.cover)
        place(sample.theta, sample.phi);
    const std::unique_ptr<QuadCell> root = BuildQuadTree(samples);

    std::vector<float> coefficients(900);
    double total = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const ImportanceSample &sample = *samples[i];
        const double area = cellAreas[sample.cell->depth];
        total = total + area;
        double weight = area * pdf.densities[i];
        if (sample.cell->count > 1)
            weight = weight / static_cast<double>(sample.cell->count);
        // A polar angle beyond one turn is looked up as an azimuth is: folded, at most the last.
        const int thetaStep = tables.PhiIndex(sample.theta);
        for (int k = 0; k < 900; ++k) {
            const double b = tables.BasisAtStep(k, sample.phi, thetaStep);
            coefficients[k] = static_cast<float>(b * weight) + coefficients[k];
        }
        owned[i].reset();
    }
    const float scale = static_cast<float>(12.566370964050293 / total);
    for (float &coefficient : coefficients)
        coefficient = scale * coefficient;
    return coefficients;
}

} // namespace literal
