// The Legendre tables: theta steps are the lanes, one pass per order m gives all its bands.
//
// For each order, the recurrence goes down the arrays of its bands, reading what it has just
// written,
//
//                       lanes = steps k, k+1, k+2 ...
//     P(m, m)           that of m - 1 times one more factor of the sine
//     P(m+1, m)         from P(m, m)
//     P(m+2, m)         from P(m+1, m) and P(m, m)
//     ...               down to P(29, m)
//
// and writes the array of (l, -m) along with that of (l, m). Then squares of these arrays, times
// K(l, m), are transposed into the run of m in the polar rows:
//
//     arrays     l     k  k+1  k+2 ...               polar row k      l  l+1  l+2 ...
//                l+1   k  k+1  k+2 ...      ->                 k+1    l  l+1  l+2 ...
//                l+2   k  k+1  k+2 ...                         k+2    l  l+1  l+2 ...
//
// The work is bound by its stores, 12 kilobytes a step. Long sequential ones are the fastest, hence
// a whole array before the next; steps are taken in chunks so that the arrays of one order stay in
// the second-level cache for the second pass.
//
// The bits are those of the recurrence run for each (l, m) on its own: to reach a large l it passes
// through every smaller one with the same operations, and its start value for m + 1 is the one for
// m times one more factor.

constexpr int chunkSteps = 1024;
constexpr int runUnit = 8; ///< the runs of a polar row are padded to whole units

/// The first `count` lanes, all of them where there are more; the others are 0.
inline VecD LoadFirst(const double *from, int count)
{
    if (count >= lanes)
        return Load(from);
    VecD value{};
    for (int lane = 0; lane < count; ++lane)
        value[lane] = from[lane];
    return value;
}

/// Stores the first `count` lanes, all of them where there are more.
inline void StoreFirst(double *to, VecD value, int count)
{
    if (count >= lanes) {
        Store(to, value);
        return;
    }
    for (int lane = 0; lane < count; ++lane)
        to[lane] = value[lane];
}

/// The arrays of (l, m) and (l, -m) for the `steps` steps from `first` on.
inline void FillLegendreRow(const LegendreTables &tables, const double *sine, int l, int m,
                            int first, int steps)
{
    const auto array = [&](int band, int order) {
        return tables.legendre[band * band + band + order] + first;
    };
    const double *x = tables.cosines + first;
    double *positive = array(l, m);
    double *negative = array(l, -m);
    for (int k = 0; k < steps; k += lanes) {
        const int left = steps - k;
        VecD value;
        if (m == l) {
            value = Broadcast(1.0);
            if (m > 0)
                value = LoadFirst(array(l - 1, m - 1) + k, left) *
                        (-(2.0 * m - 1.0) * LoadFirst(sine + k, left));
        } else {
            // For l = m + 1 it takes 0 from the product and divides by 1: no change.
            const VecD below = LoadFirst(array(l - 1, m) + k, left);
            const VecD belowThat = l - 2 >= m ? LoadFirst(array(l - 2, m) + k, left) : VecD{};
            value = ((2.0 * l - 1.0) * LoadFirst(x + k, left) * below - (l + m - 1.0) * belowThat) /
                    static_cast<double>(l - m);
        }
        StoreFirst(positive + k, value, left);
        if (m > 0)
            StoreFirst(negative + k, value, left);
    }
}

/// The run of order m into the polar rows of the `steps` steps from `first` on.
inline void FillPolarRun(const LegendreTables &tables, int m, int first, int steps, int runStart)
{
    const int length = tableBands - m;
    double *run = tables.polarRows + static_cast<long long>(first) * polarRowLength + runStart;
    for (int k = 0; k < steps; k += lanes, run += lanes * polarRowLength) {
        // The rows lie a page apart, so that nothing else fetches them ahead.
        if (k + 3 * lanes <= steps)
            for (int i = 2 * lanes; i < 3 * lanes; ++i)
                for (int band = 0; band < length; band += runUnit)
                    __builtin_prefetch(run + i * polarRowLength + band, 1, 2);
        for (int band = 0; band < length; band += lanes) {
            VecD square[lanes];
            for (int i = 0; i < lanes; ++i) {
                const int l = m + band + i;
                const int index = l * l + l + m;
                square[i] = l < tableBands
                                ? LoadFirst(tables.legendre[index] + first + k, steps - k) *
                                      tables.normalisation[index]
                                : VecD{};
            }
            Transpose(square);
            for (int i = 0; i < lanes && k + i < steps; ++i)
                Store(run + i * polarRowLength + band, square[i]);
        }
    }
}

inline void FillLegendreTables(const LegendreTables &tables)
{
    double sine[chunkSteps];
    for (int first = 0; first < tables.numSteps; first += chunkSteps) {
        const int left = tables.numSteps - first;
        const int steps = left < chunkSteps ? left : chunkSteps;
        for (int k = 0; k < steps; ++k) {
            const double x = tables.cosines[first + k];
            sine[k] = __builtin_sqrt((1.0 - x) * (x + 1.0));
        }
        int runStart = 0;
        for (int m = 0; m < tableBands; ++m) {
            for (int l = m; l < tableBands; ++l)
                FillLegendreRow(tables, sine, l, m, first, steps);
            FillPolarRun(tables, m, first, steps, runStart);
            runStart += (tableBands - m + runUnit - 1) / runUnit * runUnit;
        }
    }
}
