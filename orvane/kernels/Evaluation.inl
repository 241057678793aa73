// The value of a set at one point: one chain of dependent additions in index order, everything else
// independent of it and ahead of it.
//
//   band l     coefficients   c(l,-l) ... c(l,-1)   c(l,0)  c(l,1) ... c(l,l)
//              K P            entry l - |m| of the polar row's run of order |m|
//              factor         sine of |m|           cosine of m, 1 for m = 0
//
// Each term is (K P * factor) * c as the formula has it; K P * 1 is K P itself. Order l is first
// needed by band l, and its factors are looked up there.

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

inline double EvaluatePoint(const AngleTables &tables, double phi, const double *polarRow,
                            const float *coefficients, std::int32_t count, int bands)
{
    alignas(64) int index[factorEntries];
    FindAngleIndices(tables, phi, bands, index);

    double sine[tableBands];
    double cosine[tableBands];
    double sum = 0.0;
    const float *c = coefficients;
    const float *const end = coefficients + count;
    for (long long l = 0; l < bands; ++l) {
        sine[l] = tables.sinLut[index[l]];
        cosine[l] = l == 0 ? 1.0 : tables.cosLut[index[l]];
        const double *band = polarRow + l;
        const float *const middle = end - c < l ? end : c + l;
        for (long long m = l; c < middle; --m)
            sum += *c++ * (band[polarRuns.origin[m]] * sine[m]);
        const float *const last = end - c <= l ? end : c + l + 1;
        for (long long m = 0; c < last; ++m)
            sum += *c++ * (band[polarRuns.origin[m]] * cosine[m]);
    }
    return sum;
}
