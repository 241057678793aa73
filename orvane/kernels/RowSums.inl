// The row sums of a picture: rows are the lanes.
//
// All pixels of a row share theta, and with it the polar factors q(l, |m|) = K P of all terms. The
// sums over l of c(l, m) q(l, |m|), one for each order m, are what a set makes of a row. The polar
// rows of a picture are laid side by side once:
//
//             row 0  1  2  ..  7 | row 8 ..
//    (0, 0)      q  q  q       q |              m = 0:  l = 0, 1, .. bands - 1
//    (1, 0)      q  q  q       q |
//      ..                        |
//    (1, 1)      q  q  q       q |              m = 1:  l = 1, .. bands - 1
//      ..
//
// so that a coefficient, broadcast, times a vector of rows is a term of all their sums: no padding
// and no sum over lanes.

constexpr int groupVectors = rowGroup / lanes;

/// Sums of one group, in double: cosine for m >= 0, sine for -m.
struct alignas(64) RowSums {
    double cosine[tableBands][rowGroup];
    double sine[tableBands][rowGroup];
    double magnitude[rowGroup]; ///< the sum of the magnitudes of all of these
};

void LayRows(const RowLayoutJob &job)
{
    GroupEntry *to = job.groupEntries;
    for (std::int32_t first = 0; first < job.count; first += rowGroup) {
        for (int part = 0; part < rowGroup; part += lanes) {
            const double *rows[lanes];
            for (int i = 0; i < lanes; ++i) {
                const std::int32_t row = first + part + i;
                const std::int32_t step = job.steps[row < job.count ? row : job.count - 1];
                rows[i] = job.polarRows + static_cast<std::ptrdiff_t>(step) * polarRowLength;
            }
            // A run's last square goes beyond its end, where the next run or group follows.
            GroupEntry *run = to;
            for (int m = 0; m < job.bands; ++m) {
                for (int l = m; l < job.bands; l += lanes) {
                    VecD square[lanes];
                    for (int i = 0; i < lanes; ++i)
                        square[i] = Load(rows[i] + polarRunStart[m] + l - m);
                    Transpose(square);
                    for (int i = 0; i < lanes; ++i)
                        Store(run[l - m + i].row + part, square[i]);
                }
                run += job.bands - m;
            }
        }
        to += GroupEntries(job.bands);
    }
}

/// @param scaled the coefficients in index order
inline void SumRows(const GroupEntry *entries, const double *scaled, int bands, RowSums &sums)
{
    VecD magnitude[groupVectors] = {};
    for (int m = 0; m < bands; ++m) {
        // Two sums each, for the latency of an addition.
        VecD cosine[2][groupVectors] = {};
        VecD sine[2][groupVectors] = {};
        const auto add = [&](int l, int which) __attribute__((always_inline))
        {
            const double *band = scaled + l * l + l;
            for (int v = 0; v < groupVectors; ++v) {
                const VecD q = Load(entries->row + v * lanes);
                cosine[which][v] = MultiplyAdd(q, Broadcast(band[m]), cosine[which][v]);
                sine[which][v] = MultiplyAdd(q, Broadcast(band[-m]), sine[which][v]);
            }
            ++entries;
        };
        int l = m;
        for (; l + 1 < bands; l += 2) {
            add(l, 0);
            add(l + 1, 1);
        }
        if (l < bands)
            add(l, 0);
        for (int v = 0; v < groupVectors; ++v) {
            const VecD cosineSum = cosine[0][v] + cosine[1][v];
            const VecD sineSum = m == 0 ? VecD{} : sine[0][v] + sine[1][v];
            Store(sums.cosine[m] + v * lanes, cosineSum);
            Store(sums.sine[m] + v * lanes, sineSum);
            magnitude[v] += Magnitude(cosineSum) + Magnitude(sineSum);
        }
    }
    for (int v = 0; v < groupVectors; ++v)
        Store(sums.magnitude + v * lanes, magnitude[v]);
}
