// The value of a set at one point: one chain of dependent additions in index order, everything else
// independent of it and ahead of it.
//
//   band l     coefficients   c(l,-l) ... c(l,-1)   c(l,0)  c(l,1) ... c(l,l)
//              K P            entry l - |m| of the polar row's run of order |m|
//              factor         sine of |m|           cosine of m, 1 for m = 0
//
// Each term is (K P * factor) * c as the formula has it; K P * 1 is K P itself.

struct PolarRunStarts {
    int start[tableBands];
};
constexpr PolarRunStarts evaluationRuns = [] {
    PolarRunStarts runs{};
    for (int m = 0; m < tableBands; ++m)
        runs.start[m] = PolarIndex(m, m);
    return runs;
}();

inline double EvaluatePoint(const float *coefficients, std::int32_t count, const double *polarRow,
                            const AngleFactors &factors)
{
    double sum = 0.0;
    for (int l = 0, i = 0; i < count; ++l) {
        for (int m = l; m > 0 && i < count; --m, ++i)
            sum += coefficients[i] * (polarRow[evaluationRuns.start[m] + l - m] * factors.sine[m]);
        for (int m = 0; m <= l && i < count; ++m, ++i)
            sum +=
                coefficients[i] * (polarRow[evaluationRuns.start[m] + l - m] * factors.cosine[m]);
    }
    return sum;
}
