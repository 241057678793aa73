#include "orvane/sh/Rotation.h"

#include "model/LiteralRotation.h"
#include "orvane/sh/Basis.h"
#include "tests/native/EachInstructionSet.h"
#include "tests/native/SameBits.h"
#include "tests/native/Sets.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

using namespace orvane;

namespace {

using Matrix = std::array<std::array<double, 3>, 3>;
constexpr double infinity = std::numeric_limits<double>::infinity();

const double (*Rows(const Matrix &matrix))[3]
{
    return reinterpret_cast<const double(*)[3]>(matrix.data());
}

Matrix Product(const Matrix &a, const Matrix &b)
{
    Matrix product{};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            for (int k = 0; k < 3; ++k)
                product[i][j] += a[i][k] * b[k][j];
    return product;
}

/// About one axis, 0 to 2 for x to z.
Matrix About(int axis, double angle)
{
    Matrix matrix{};
    const int next = (axis + 1) % 3;
    const int last = (axis + 2) % 3;
    matrix[axis][axis] = 1.0;
    matrix[next][next] = matrix[last][last] = std::cos(angle);
    matrix[next][last] = -std::sin(angle);
    matrix[last][next] = std::sin(angle);
    return matrix;
}

Matrix Mixed(double a, double b, double c)
{
    return Product(Product(About(2, a), About(0, b)), About(1, c));
}

std::vector<float> Rotated(const std::vector<float> &in, const Matrix &matrix,
                           const Kernels &kernels = BestKernels())
{
    const auto out = MakeObject<SphericalHarmonic>();
    RotateSH(*MakeSet(0, in), Rows(matrix), *out, kernels);
    EXPECT_EQ(out->numBands, 30);
    return Values(*out);
}

TEST(RotateZ, GivesTheLiteralBits)
{
    const auto out = MakeObject<SphericalHarmonic>(); // old contents leave no trace
    const std::pair<int, int> sizes[] = {{0, 0}, {1, 1}, {2, 4}, {30, 900}, {35, 1225},
                                         {4, 9}, {4, 7}, {2, 9}, {-2, 4}};
    for (const double angle : {0.0, 0.1, -2.5, 3.1415927410125732, 1000.0, 1e300, -0.0, infinity})
        for (const auto &[bands, count] : sizes) {
            const std::vector<float> in = RandomCoefficients(count, count);
            RotateZ(*MakeSet(bands, in), angle, *out);
            EXPECT_EQ(out->numBands, bands);
            EXPECT_TRUE(SameBits(out->coefficients, literal::RotateZ(in, bands, angle)));
        }
}

TEST(RotateSH, GivesTheLiteralBitsAtEveryInstructionSet)
{
    std::vector<Matrix> matrices = {About(0, 0.0), // the identity
                                    About(0, 1.1),        About(1, -2.2),
                                    About(2, 0.7),        About(0, std::acos(-1.0)),
                                    Mixed(0.3, 2.0, -1.2)};
    std::mt19937 random(3);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (int i = 0; i < 4; ++i)
        matrices.push_back(Mixed(3 * uniform(random), 3 * uniform(random), 3 * uniform(random)));
    // Matrices that are no rotations: every zero factor must be multiplied where the rule says so.
    matrices.push_back({{{0.0, 0.0, 1.0}, {0.0, -1.0, 0.0}, {-0.0, 0.0, 0.0}}});
    for (const double value : {infinity, std::nan(""), 1e200})
        for (int element = 0; element < 9; ++element) {
            matrices.push_back(Mixed(1.0, 2.0, 3.0));
            matrices.back()[element / 3][element % 3] = value;
        }

    for (std::size_t i = 0; i < matrices.size(); ++i)
        for (const int count : {0, 1, 3, 4, 9, 17, 64, 81, 100, 256, 289, 900, 961}) {
            const std::vector<float> in = RandomCoefficients(count, count + i);
            const std::vector<float> expected = literal::RotateSH(in, Rows(matrices[i]));
            for (const Kernels *kernels : SupportedKernels()) {
                SCOPED_TRACE(testing::Message() << Name(kernels->instructionSet) << ", " << count
                                                << " coefficients, matrix " << i);
                EXPECT_TRUE(SameBits(Rotated(in, matrices[i], *kernels), expected));
            }
        }
}

// The target's storage is used again unless a reader holds it.
TEST(RotateSH, LeavesNoTraceOfTheTargetAndReadersWhatTheyHold)
{
    const Matrix matrix = Mixed(0.3, 2.0, -1.2);
    for (const int old : {0, 4, 900, 961})
        for (const bool isHeld : {false, true}) {
            const std::vector<float> held = RandomCoefficients(old, 1);
            const auto out = MakeSet(0, held);
            const auto reader = isHeld ? out->coefficients.Share() : nullptr;
            for (const int count : {9, 900, 64, 0}) {
                const std::vector<float> in = RandomCoefficients(count, 2);
                RotateSH(*MakeSet(0, in), Rows(matrix), *out);
                EXPECT_TRUE(SameBits(out->coefficients, literal::RotateSH(in, Rows(matrix))));
            }
            EXPECT_TRUE(!reader || *reader == held);
        }
}

/// The value at a unit vector by the formulas of the functions.
double ValueAt(const std::vector<float> &coefficients, const std::array<double, 3> &point)
{
    const double phi = std::atan2(point[1], point[0]);
    double sum = 0.0;
    for (int l = 0; l < 30; ++l)
        for (int m = -l; m <= l; ++m) {
            const int i = CoefficientIndex(l, m);
            // The standard library's Legendre functions leave out the sign (-1)^m.
            sum += coefficients[i] * NormalisationTable()[i] *
                   std::assoc_legendre(l, std::abs(m), point[2]) * (m % 2 ? -1 : 1) *
                   (m < 0 ? std::sin(-m * phi) : std::cos(m * phi));
        }
    return sum;
}

// Band 1 is (x, y, z) = (c[3], c[1], c[2]) and its functions are -x, -y and z times a constant, so
// the rotated set has at p the value that the set has at S M S p, with S = diag(-1, -1, 1).
TEST(Rotations, MoveTheFunctionWithTheAxes)
{
    const double sign[] = {-1.0, -1.0, 1.0};
    const std::vector<float> in = RandomCoefficients(900, 8);
    std::mt19937 random(9);
    std::normal_distribution<double> normal;
    const auto aboutThePole = MakeObject<SphericalHarmonic>();
    RotateZ(*MakeSet(30, in), 0.7, *aboutThePole);
    const std::pair<Matrix, std::vector<float>> turned[] = {
        {About(0, 0.7), Rotated(in, About(0, 0.7))},
        {About(2, 0.7), Values(*aboutThePole)},
        {Mixed(1.0, 2.0, 3.0), Rotated(in, Mixed(1.0, 2.0, 3.0))}};
    for (const auto &[matrix, out] : turned) {
        for (int i = 0; i < 10; ++i) {
            std::array<double, 3> point = {normal(random), normal(random), normal(random)};
            const double length = std::hypot(point[0], point[1], point[2]);
            for (double &x : point)
                x /= length;
            std::array<double, 3> moved{};
            for (int r = 0; r < 3; ++r)
                for (int c = 0; c < 3; ++c)
                    moved[r] += sign[r] * matrix[r][c] * sign[c] * point[c];
            EXPECT_NEAR(ValueAt(out, point), ValueAt(in, moved), 2e-5);
        }
    }
}

} // namespace
