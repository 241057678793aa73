// The row sums of a picture: rows are the lanes.
//
// All pixels of a row share theta, and with it the polar factors q(l, |m|) = K P of all terms. The
// sums over l of c(l, m) q(l, |m|), one for each order m, are what a set makes of a row. The polar
// rows of a picture are laid side by side once:
//
//             row 0  1  2  ..  7 | row 8 ..
//    (0, 0)      q  q  q       q |              m = 0 and 1, taking turns:
//    (1, 1)      q  q  q       q |              (m, m), then for l = m + 1 .. bands - 1
//    (1, 0)      q  q  q       q |              (l, m + 1), (l, m)
//    (2, 1)      q  q  q       q |
//      ..                        |
//    (2, 2)      q  q  q       q |              m = 2 and 3, and so on
//      ..
//
// so that a coefficient, broadcast, times a vector of rows is a term of all their sums: no padding
// and no sum over lanes. Two orders at a time keep enough sums under way.

constexpr int groupVectors = rowGroup / lanes;

/// Sums of one group, in double: cosine for m >= 0, sine for -m.
struct alignas(64) RowSums {
    double cosine[tableBands][rowGroup];
    double sine[tableBands][rowGroup];
    double magnitude[rowGroup]; ///< the sum of the magnitudes of all of these
};

/// Lays the run of order m, of some rows, at every other entry.
inline void LayRun(const double *const *rows, int m, int bands, GroupEntry *to, int part)
{
    for (int l = m; l < bands; l += lanes) {
        VecD square[lanes];
        for (int i = 0; i < lanes; ++i)
            square[i] = Load(rows[i] + polarRunStart[m] + l - m);
        Transpose(square);
        // What the last square has too much is written where later entries follow.
        for (int i = 0; i < lanes; ++i, to += 2)
            Store(to->row + part, square[i]);
    }
}

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
            GroupEntry *pair = to;
            for (int m = 0; m < job.bands; m += 2) {
                LayRun(rows, m, job.bands, pair, part);
                LayRun(rows, m + 1, job.bands, pair + 1, part);
                pair += 2 * (job.bands - m) - 1;
            }
        }
        to += GroupEntries(job.bands);
    }
}

/// Sums so many groups at a time, which lie one after the other.
/// @param scaled the coefficients in index order
template <int groups>
inline void SumRows(const GroupEntry *groupEntries, const double *scaled, int bands, RowSums *sums)
{
    constexpr int vectors = groups * groupVectors;
    const GroupEntry *entries[groups];
    for (int g = 0; g < groups; ++g)
        entries[g] = groupEntries + g * GroupEntries(bands);
    VecD magnitude[vectors] = {};
    for (int m = 0; m < bands; m += 2) {
        VecD cosine[2][vectors] = {};
        VecD sine[2][vectors] = {};
        const double *band = scaled + m * m + m; // at order 0
        const auto add = [&](int which, std::ptrdiff_t at) __attribute__((always_inline))
        {
            const VecD c = Broadcast(band[m + which]);
            const VecD s = Broadcast(band[-m - which]);
            for (int v = 0; v < vectors; ++v) {
                const VecD q =
                    Held(Load(entries[v / groupVectors][at].row + v % groupVectors * lanes));
                cosine[which][v] = MultiplyAdd(q, c, cosine[which][v]);
                sine[which][v] = MultiplyAdd(q, s, sine[which][v]);
            }
        };
        add(0, 0);
        const int end = 2 * (bands - m) - 1;
        int next = 2 * m + 2;
        for (int at = 1; at < end; at += 2) {
            band += next;
            next += 2;
            add(1, at);
            add(0, at + 1);
        }
        for (int g = 0; g < groups; ++g)
            entries[g] += end;
        for (int v = 0; v < vectors; ++v) {
            RowSums &to = sums[v / groupVectors];
            const int lane = v % groupVectors * lanes;
            if (m == 0)
                sine[0][v] = VecD{};
            for (int which = 0; which < 2 && m + which < bands; ++which) {
                Store(to.cosine[m + which] + lane, cosine[which][v]);
                Store(to.sine[m + which] + lane, sine[which][v]);
                magnitude[v] += Magnitude(cosine[which][v]) + Magnitude(sine[which][v]);
            }
        }
    }
    for (int v = 0; v < vectors; ++v)
        Store(sums[v / groupVectors].magnitude + v % groupVectors * lanes, magnitude[v]);
}
