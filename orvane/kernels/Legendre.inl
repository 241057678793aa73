// The Legendre tables: theta steps are the lanes, one pass per order m gives all its bands.
//
//   group of steps:    x = cos theta        s = sqrt((1 - x)(x + 1))
//   order m = 0..29:   P(m, m)  ->  P(m+1, m)  ->  P(m+2, m)  ->  ...  ->  P(29, m)
//                        |            |              |
//                        +-> the arrays of (l, m) and (l, -m), one vector of steps each
//                        +-> times K(l, m) into a tile, transposed into the run of m in the rows:
//
//            tile      lanes = steps             polar rows     lanes = bands
//                  l   k  k+1  k+2 ...               step k     l  l+1  l+2 ...
//                  l+1 k  k+1  k+2 ...     ->        step k+1   l  l+1  l+2 ...
//
// The bits are those of the recurrence run for each (l, m) on its own: to reach a large l it passes
// through every smaller one with the same operations, and its start value for m + 1 is the one for
// m times one more factor.

constexpr int legendreBands = 30;
constexpr int tileBands = 32;   ///< the longest run, padded
constexpr int polarRunUnit = 8; ///< runs are padded to whole units
constexpr int polarRowValues = 576;
constexpr int groupVectors = ORVANE_VECTOR_BYTES == 64 ? 4 : 2; ///< as many as registers hold
constexpr int groupSteps = groupVectors * lanes;

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

/// Writes the run of one order into the rows of a group of steps.
inline void StoreRun(const VecD (&tile)[groupVectors][tileBands], int length, int steps,
                     double *run)
{
    for (int g = 0; g < groupVectors; ++g)
        for (int band = 0; band < length; band += lanes) {
            VecD square[lanes];
            for (int i = 0; i < lanes; ++i)
                square[i] = tile[g][band + i];
            Transpose(square);
            for (int i = 0; i < lanes && g * lanes + i < steps; ++i)
                Store(run + (g * lanes + i) * polarRowValues + band, square[i]);
        }
}

/// All tables for the steps from `first` on, `steps` of them, at most a group.
inline void FillLegendreGroup(const LegendreTables &tables, int first, int steps)
{
    VecD x[groupVectors];
    VecD sine[groupVectors];
    VecD start[groupVectors]; // P(m, m)
    for (int g = 0; g < groupVectors; ++g)
        for (int lane = 0; lane < lanes; ++lane) {
            const int step = g * lanes + lane;
            const double cosine = tables.cosines[first + (step < steps ? step : 0)];
            x[g][lane] = cosine;
            sine[g][lane] = __builtin_sqrt((1.0 - cosine) * (cosine + 1.0));
            start[g][lane] = 1.0;
        }

    VecD tile[groupVectors][tileBands];
    double *run = tables.polarRows + static_cast<long long>(first) * polarRowValues;
    for (int m = 0; m < legendreBands; ++m) {
        VecD value[groupVectors]; // P(l, m)
        VecD below[groupVectors]; // P(l - 1, m)
        for (int g = 0; g < groupVectors; ++g) {
            if (m > 0)
                start[g] *= -(2.0 * m - 1.0) * sine[g];
            value[g] = start[g];
            below[g] = VecD{};
        }
        for (int l = m; l < legendreBands; ++l) {
            const double k = tables.normalisation[l * l + l + m];
            double *positive = tables.legendre[l * l + l + m] + first;
            double *negative = tables.legendre[l * l + l - m] + first;
            for (int g = 0; g < groupVectors; ++g) {
                StoreFirst(positive + g * lanes, value[g], steps - g * lanes);
                if (m > 0)
                    StoreFirst(negative + g * lanes, value[g], steps - g * lanes);
                tile[g][l - m] = value[g] * k;

                // The step to l = m + 1 takes 0 from its product and divides it by 1: no change.
                const VecD next = ((2.0 * (l + 1) - 1.0) * x[g] * value[g] -
                                   static_cast<double>(l + m) * below[g]) /
                                  static_cast<double>(l + 1 - m);
                below[g] = value[g];
                value[g] = next;
            }
        }
        const int length = legendreBands - m;
        const int padded = (length + polarRunUnit - 1) / polarRunUnit * polarRunUnit;
        for (int g = 0; g < groupVectors; ++g)
            for (int band = length; band < padded; ++band)
                tile[g][band] = VecD{};
        StoreRun(tile, padded, steps, run);
        run += padded;
    }
}

inline void FillLegendreTables(const LegendreTables &tables)
{
    for (int first = 0; first < tables.numSteps; first += groupSteps) {
        const int left = tables.numSteps - first;
        FillLegendreGroup(tables, first, left < groupSteps ? left : groupSteps);
    }
}
