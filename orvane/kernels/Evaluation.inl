// The value of a set at one point: one chain of dependent additions in index order, everything else
// independent of it and ahead of it.
//
//   band l     coefficients   c(l,-l) ... c(l,-1)   c(l,0)  c(l,1) ... c(l,l)
//              K P            entry l - |m| of the polar row's run of order |m|
//              factor         sine of |m|           cosine of m, 1 for m = 0
//
// Each term is (K P * factor) * c as the formula has it; K P * 1 is K P itself.

/// Where band 0 of each order's run would stand in a polar row; with the band added, an entry's
/// position.
struct PolarRunOrigins {
    long long origin[tableBands];
};
constexpr PolarRunOrigins polarRuns = [] {
    PolarRunOrigins runs{};
    for (int m = 0; m < tableBands; ++m)
        runs.origin[m] = PolarIndex(m, m) - m;
    return runs;
}();

inline double EvaluatePoint(const float *coefficients, std::int32_t count, const double *polarRow,
                            const AngleFactors &factors)
{
    double sum = 0.0;
    const float *c = coefficients;
    for (long long l = 0, left = count; left > 0; ++l) {
        const double *band = polarRow + l;
        const long long sines = left < l ? left : l;
        for (long long m = l; m > l - sines; --m)
            sum += *c++ * (band[polarRuns.origin[m]] * factors.sine[m]);
        left -= sines;
        const long long cosines = left < l + 1 ? left : l + 1;
        for (long long m = 0; m < cosines; ++m)
            sum += *c++ * (band[polarRuns.origin[m]] * factors.cosine[m]);
        left -= cosines;
    }
    return sum;
}
