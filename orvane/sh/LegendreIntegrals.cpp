// Two recurrences give all integrals over one zone from the values of P at its two ends. With
// s = sqrt(1 - x^2), [f] the difference of f between the upper and the lower end, and the integrals
//
//   J(m)    of s^m, so that  I(m, m) = (-1)^m (2m - 1)!! J(m)  as  P(m, m) = (-1)^m (2m - 1)!! s^m
//   I(l, m) of P(l, m)
//
// they are
//
//   (m + 1) J(m) = [x s^m] + m J(m - 2)                                                        (1)
//   (l + 1)(l - m) I(l, m) = (l + m - 1)(l - 2) I(l - 2, m) - (2l - 1) [s^2 P(l - 1, m)]       (2)
//
// (1) is partial integration. (2), [1], follows from the recurrence of P over the bands, [2]
// 14.10.3, and from that of its derivative, [2] 14.10.5, which integrate to
//
//   (l - m) I(l, m) = (2l - 1) X - (l + m - 1) I(l - 2, m)
//   (l - 2) X = [s^2 P(l - 1, m)] + (l - m) I(l, m)        with X the integral of x P(l - 1, m)
//
// Near the poles s^m and with it J(m) shrinks by s^2 from one step of (1) to the next, while the
// error made at the start does not: upwards, (1) loses all digits there ([3]). Downwards it gains
// them, so that it can start from J = 0 at an order where s^m has vanished against s^29. A zone
// that comes near the equator cannot do that, and need not: there (1) is sound upwards. (2) is
// sound everywhere, since I(l, m) grows with l at least as fast as an error does.
//
// In a narrow zone the differences are small against the values they are formed from. They are
// therefore never formed by subtraction, but carried along: see Ends.
//
// Sources:
//   [1] M. K. Paul, "Recurrence relations for integrals of associated Legendre functions",
//       Bulletin Geodesique 52 (1978), 177-190.
//   [2] NIST Digital Library of Mathematical Functions, chapter 14.
//   [3] M. Gerstl, "On the recursive computation of the integrals of the associated Legendre
//       functions", manuscripta geodaetica 5 (1980), 181-199.

#include "orvane/sh/LegendreIntegrals.h"

#include <algorithm>
#include <cmath>

namespace orvane {
namespace {

/// The two values of a function at the ends of a zone.
struct Ends {
    double mean;       ///< half their sum
    double difference; ///< the upper end's less the lower end's
};

Ends operator*(const Ends &a, const Ends &b)
{
    return {a.mean * b.mean + 0.25 * (a.difference * b.difference),
            a.mean * b.difference + a.difference * b.mean};
}

Ends operator*(double factor, const Ends &a)
{
    return {factor * a.mean, factor * a.difference};
}

Ends operator-(const Ends &a, const Ends &b)
{
    return {a.mean - b.mean, a.difference - b.difference};
}

/// An interval of cos theta.
struct Zone {
    Zone(double lower, double upper)
    {
        const double lowerSine = std::sqrt((1.0 - lower) * (1.0 + lower));
        const double upperSine = std::sqrt((1.0 - upper) * (1.0 + upper));
        const double sines = lowerSine + upperSine;
        x = {(lower + upper) / 2, upper - lower};
        // The squares differ by the negative difference of the cosines' squares.
        sine = {sines / 2, sines > 0.0 ? -2 * x.mean * x.difference / sines : 0.0};
        angle = std::atan2(x.difference * sine.mean - x.mean * sine.difference,
                           lower * upper + lowerSine * upperSine);
        nearestToEquator =
            lower < 0.0 && upper > 0.0 ? 0.0 : std::min(std::abs(lower), std::abs(upper));
    }

    Ends x;                  ///< cos theta
    Ends sine;               ///< sin theta
    double angle;            ///< width in theta, radians
    double nearestToEquator; ///< smallest |cos theta|
};

/// J(m) for the orders of the tables.
std::array<double, tableBands> IntegrateSinePowers(const Zone &zone)
{
    // Beyond |cos theta| = 1/2, s^2 is at most 3/4: J(320) is under 1e-18 J(29).
    constexpr double polarBegin = 0.5;
    constexpr int vanishing = 320;

    std::array<double, vanishing + 1> boundary; // [x s^m]
    Ends term = zone.x;
    for (double &difference : boundary) {
        difference = term.difference;
        term = zone.sine * term;
    }
    std::array<double, vanishing + 1> integrals{};
    if (zone.nearestToEquator < polarBegin) {
        integrals[0] = boundary[0];
        integrals[1] = (boundary[1] + zone.angle) / 2;
        for (int m = 2; m < tableBands; ++m)
            integrals[m] = (boundary[m] + m * integrals[m - 2]) / (m + 1);
    } else {
        for (int m = vanishing; m >= 2; --m)
            integrals[m - 2] = ((m + 1) * integrals[m] - boundary[m]) / m;
    }
    std::array<double, tableBands> result;
    std::copy_n(integrals.begin(), tableBands, result.begin());
    return result;
}

} // namespace

std::array<double, legendrePairs> IntegrateLegendre(double lower, double upper)
{
    const Zone zone(lower, upper);
    const std::array<double, tableBands> sinePowers = IntegrateSinePowers(zone);
    const Ends sineSquare = zone.sine * zone.sine;

    std::array<double, legendrePairs> integrals;
    Ends sectoral = {1.0, 0.0}; // P(m, m)
    double factor = 1.0;        // (-1)^m (2m - 1)!!
    for (int m = 0; m < tableBands; ++m) {
        Ends before = {0.0, 0.0}; // P(l - 2, m)
        Ends p = sectoral;        // P(l - 1, m)
        double integralBefore = 0.0;
        double integral = factor * sinePowers[m];
        integrals[LegendrePair(m, m)] = integral;
        for (int l = m + 1; l < tableBands; ++l) {
            const double boundary = (2 * l - 1) * (sineSquare * p).difference;
            const double next =
                ((l + m - 1) * (l - 2) * integralBefore - boundary) / ((l + 1) * (l - m));
            integrals[LegendrePair(l, m)] = next;
            integralBefore = integral;
            integral = next;

            const Ends above = 1.0 / (l - m) * ((2 * l - 1) * (zone.x * p) - (l + m - 1) * before);
            before = p;
            p = above;
        }
        const double step = -(2 * m + 1);
        sectoral = step * (zone.sine * sectoral);
        factor = step * factor;
    }
    return integrals;
}

} // namespace orvane
