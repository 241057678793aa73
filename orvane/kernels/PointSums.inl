// Adding points to the sums of a projection: the bands l of one order are the lanes.
//
// Points are taken in blocks, each at its row of the polar table:
//
//              order 0          order 1              order 29
//   row of p0  [KP KP KP ...]   [KP KP ...]   ...   [KP 0 ...]   * c(p0, m) * value(p0)
//   row of p1  [KP KP KP ...]   [KP KP ...]   ...   [KP 0 ...]   * c(p1, m) * value(p1)
//   ...              |               |                   |
//   cosine     [sums        ]   [sums     ]   ...   [sum     ]   each load of a sum serves
//   sine       [ -          ]   [sums     ]   ...   [sum     ]   the whole block of points
//
// Each lane is one coefficient. It sees the points in their order, and for each the operations of
// the formula in theirs: K P times the factor, times the value, rounded to single precision, added.
// Coefficients never meet, so the lanes may be arranged at will: the bits are those of a plain
// loop. +m and -m share K P. Order 0 takes no factor.

struct WeightedRounding {
    static VecF Term(VecD basis, double value) { return Narrow(basis * value); }
};

struct PixelRounding {
    static VecF Term(VecD basis, double value) { return Narrow(basis) * static_cast<float>(value); }
};

template <typename Rounding, int block>
inline void AddBlock(const ProjectionTables &tables, const ProjectionPoint *points, int bands,
                     ProjectionSums &sums)
{
    const double *rows[block];
    double values[block];
    alignas(64) int index[block][factorEntries];
    for (int p = 0; p < block; ++p) {
        rows[p] = tables.polarRows + static_cast<long long>(points[p].thetaStep) * polarRowLength;
        values[p] = points[p].value;
        FindAngleIndices(tables.angles, points[p].phi, bands, index[p]);
    }

    for (int i = 0; i < bands; i += lanes) {
        VecF sum = Load(sums.cosine + i);
        for (int p = 0; p < block; ++p)
            sum = Rounding::Term(Load(rows[p] + i), values[p]) + sum;
        Store(sums.cosine + i, sum);
    }
    for (int m = 1; m < bands; ++m) {
        // Broadcast from memory: a register broadcast would compete for the port that narrows to
        // float.
        VecD cosine[block], sine[block];
        for (int p = 0; p < block; ++p) {
            cosine[p] = Broadcast(tables.angles.cosLut[index[p][m]]);
            sine[p] = Broadcast(tables.angles.sinLut[index[p][m]]);
        }
        const int start = polarRunStart[m];
        for (int i = start; i < start + bands - m; i += lanes) {
            VecF cosineSum = Load(sums.cosine + i);
            VecF sineSum = Load(sums.sine + i);
            for (int p = 0; p < block; ++p) {
                const VecD polar = Held(Load(rows[p] + i));
                cosineSum = Rounding::Term(polar * cosine[p], values[p]) + cosineSum;
                sineSum = Rounding::Term(polar * sine[p], values[p]) + sineSum;
            }
            Store(sums.cosine + i, cosineSum);
            Store(sums.sine + i, sineSum);
        }
    }
}

template <typename Rounding>
void AddPoints(const ProjectionTables &tables, const ProjectionPoint *points, std::size_t count,
               int bands, ProjectionSums &sums)
{
    constexpr int block = 4;
    std::size_t i = 0;
    for (; i + block <= count; i += block)
        AddBlock<Rounding, block>(tables, points + i, bands, sums);
    for (; i < count; ++i)
        AddBlock<Rounding, 1>(tables, points + i, bands, sums);
}
