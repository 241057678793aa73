// The Legendre tables: theta steps are the lanes, one pass per order m gives all its bands.
//
// Steps are taken in chunks. For each order of a chunk, the recurrence goes down the rows of a
// scratch block that stays in the second-level cache,
//
//                             lanes = steps k, k+1, k+2 ...
//     row 0                   0
//     row 1      P(m, m)      that of m - 1 times one more factor of the sine
//     row 2      P(m+1, m)    from rows 1 and 0
//     row 3      P(m+2, m)    from rows 2 and 1
//     ...                     down to P(29, m)
//
// each row going to the two arrays of (l, m) and (l, -m); then squares of the block, times K(l, m),
// are transposed into the run of m in the polar rows:
//
//     block      l     k  k+1  k+2 ...               polar row k      l  l+1  l+2 ...
//                l+1   k  k+1  k+2 ...      ->                 k+1    l  l+1  l+2 ...
//                l+2   k  k+1  k+2 ...                         k+2    l  l+1  l+2 ...
//
// The work is bound by the stores, and long sequential ones are the fastest, hence the two passes
// and the long chunks.
//
// The bits are those of the recurrence run for each (l, m) on its own: to reach a large l it passes
// through every smaller one with the same operations, and its start value for m + 1 is the one for
// m times one more factor.

constexpr int chunkSteps = 1024;
constexpr int runUnit = 8; ///< the runs of a polar row are padded to whole units

struct LegendreChunk {
    alignas(64) double x[chunkSteps]; ///< cos theta
    alignas(64) double sine[chunkSteps];
    /// As drawn above. Rows a whole number of pages apart would share their cache sets.
    alignas(64) double rows[1 + tableBands][chunkSteps + runUnit];
};

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

/// Row of (l, m) from the two rows above it, for the first `steps` steps: into the block and the
/// arrays.
inline void FillLegendreRow(const LegendreTables &tables, LegendreChunk &chunk, int l, int m,
                            int first, int steps)
{
    double *row = chunk.rows[l - m + 1];
    double *positive = tables.legendre[l * l + l + m] + first;
    double *negative = tables.legendre[l * l + l - m] + first;
    for (int k = 0; k < steps; k += lanes) {
        VecD value;
        if (l == m) {
            value = Load(row + k);
            if (m > 0)
                value *= -(2.0 * m - 1.0) * Load(chunk.sine + k);
        } else {
            // For l = m + 1 it takes 0 from the product and divides by 1: no change.
            const VecD above = Load(chunk.rows[l - m] + k);
            const VecD top = Load(chunk.rows[l - m - 1] + k);
            value = ((2.0 * l - 1.0) * Load(chunk.x + k) * above - (l + m - 1.0) * top) /
                    static_cast<double>(l - m);
        }
        Store(row + k, value);
        StoreFirst(positive + k, value, steps - k);
        if (m > 0)
            StoreFirst(negative + k, value, steps - k);
    }
}

/// The run of order m, `length` bands, into the polar rows of the first `steps` steps.
inline void FillPolarRun(const LegendreTables &tables, const LegendreChunk &chunk, int m, int first,
                         int steps, int runStart)
{
    const int length = tableBands - m;
    double *run = tables.polarRows + static_cast<long long>(first) * polarRowLength + runStart;
    for (int k = 0; k < steps; k += lanes, run += lanes * polarRowLength)
        for (int band = 0; band < length; band += lanes) {
            VecD square[lanes];
            for (int i = 0; i < lanes; ++i) {
                const int l = m + band + i;
                square[i] = l < tableBands ? Load(chunk.rows[band + i + 1] + k) *
                                                 tables.normalisation[l * l + l + m]
                                           : VecD{};
            }
            Transpose(square);
            for (int i = 0; i < lanes && k + i < steps; ++i)
                Store(run + i * polarRowLength + band, square[i]);
        }
}

inline void FillLegendreTables(const LegendreTables &tables)
{
    LegendreChunk chunk;
    for (int first = 0; first < tables.numSteps; first += chunkSteps) {
        const int left = tables.numSteps - first;
        const int steps = left < chunkSteps ? left : chunkSteps;
        for (int k = 0; k < chunkSteps; ++k) {
            const double x = k < steps ? tables.cosines[first + k] : 0.0;
            chunk.x[k] = x;
            chunk.sine[k] = __builtin_sqrt((1.0 - x) * (x + 1.0));
            chunk.rows[0][k] = 0.0;
            chunk.rows[1][k] = 1.0; // P(0, 0)
        }
        int runStart = 0;
        for (int m = 0; m < tableBands; ++m) {
            for (int l = m; l < tableBands; ++l)
                FillLegendreRow(tables, chunk, l, m, first, steps);
            FillPolarRun(tables, chunk, m, first, steps, runStart);
            runStart += (tableBands - m + runUnit - 1) / runUnit * runUnit;
        }
    }
}
