// The rotation of a set, band by band.
//
// The recurrence. R^l is the matrix of band l, and an output coefficient of order n is the sum over
// m = -l..l of R^l(m, n) times the input coefficient of order m. R^1 is the 3 x 3 matrix itself,
// its axes y, z, x being the orders -1, 0, 1. For l >= 2 (p. 6346, Tables 1 and 2 of the paper that
// BandRotation.h names, V as corrected)
//
//   R^l(m, n) = u U + v V + w W
//
//   U = P(0, m)
//   V = P(1, 1) + P(-1, -1)                           m = 0
//       P(1, m-1) sqrt(1+d) - P(-1, 1-m) (1-d)        m > 0,  d = 1 for m = 1 and -1, else 0
//       P(-1, -m-1) sqrt(1+d) + P(1, m+1) (1-d)       m < 0
//   W = 0                                             m = 0
//       P(-1, -m-1) + P(1, m+1)                       m > 0
//       P(1, m-1) - P(-1, 1-m)                        m < 0
//
//   P(i, a) = R^1(i, 1) R^(l-1)(a, -l+1) + R^1(i, -1) R^(l-1)(a, l-1)     n = -l
//             R^1(i, 1) R^(l-1)(a, l-1) - R^1(i, -1) R^(l-1)(a, -l+1)     n = l
//             R^1(i, 0) R^(l-1)(a, n)                                     else
//
//   u = sqrt((l - m)(l + m) / D)                          D = 2 l (2 l - 1) for n = -l and l,
//   v = 1/2 sqrt((1 + d)(l + |m| - 1)(l + |m|) / D)           (l - n)(l + n) else
//           (1 - 2 d)                                     d = 1 for m = 0, else 0
//   w = -1/2 sqrt((l - |m| - 1)(l - |m|) / D) (1 - d)
//
// Letters: of the products pp, nn, np, pn the first tells the sign of i = +-1 and the second that
// of the row +-a. A pair of rows +-a gives V to the rows +-(a + 1), as pp - nn and np + pn, and W
// to the rows +-(a - 1), as nn + pp and pn - np; nn + pp of rows +-1 also is V of row 0.
//
// The representation. An element is made of elements of the same column of the band below, but for
// the outermost columns n = -l and l, which are made of each other. So no whole matrix is ever
// held:
//
//   1. The outermost columns, the lanes being rows m:
//
//          band l - 1   R(m, -l+1)  R(m, l-1)      m = 0..l-1 and 0..-l+1
//                              |  x  |
//          band l       R(m, -l)    R(m, l)
//
//   2. Four columns n to n + 3 and their mirror images go from band to band together, in place: a
//      block. The same constants serve both signs of m and of n. The lanes are columns:
//
//          AVX-512      n  n+1  n+2  n+3  -n  -n-1  -n-2  -n-3
//          AVX2         n  n+1  -n  -n-1        n+2  n+3  -n-2  -n-3
//          baseline     n  -n        n+1  -n-1        n+2  -n-2        n+3  -n-3
//
//          row l      from row l - 1 of the band below     |  in this order: row m of the band
//          ...                                             |  below is read for the last time
//          row m      from rows m - 1, m and m + 1         |  for row m, and what it gives to
//          ...                                             v  row m - 1 is kept
//          row 0      from rows 0 and 1
//
//      Columns l and -l enter when their band is reached. The sum over m = -l..-1 grows as its rows
//      are made, and then that over m = 0..l follows.
//
// The bits. Each element takes the operations of the formulas in their order, and a product that
// several terms share is the same product. A term is not evaluated where its u or w is 0, that is
// for u in row l and for w in rows 0, l - 1 and l: u is then +0, which is added, and w is -0, which
// as a summand changes nothing and is left out. The factors sqrt(1 + d) and 1 - d are 1 but where
// they multiply row 0, and there the product with 1 - d = 0 is carried out.

constexpr double squareRootOfTwo = 0x1.6a09e667f3bcdp+0; // 1.4142135623730951

constexpr int edgeOrders = RotationConstants::edgeOrders;
constexpr int blockColumns = RotationConstants::blockColumns;
constexpr int columnsInVector = lanes / 2; ///< beside as many mirror images
constexpr int vectorsInBlock = blockColumns / columnsInVector;

/// R^1 in the orders -1, 0, 1, which stand for y, z, x. On one cache line but for the last element:
/// it is stored as a vector, and what is read back from a store across two lines has to wait.
struct alignas(64) FirstBand {
    explicit FirstBand(const double (*matrix)[3])
    {
        const int axis[3] = {1, 2, 0};
        for (int a = 0; a < 3; ++a)
            for (int b = 0; b < 3; ++b)
                element[a][b] = matrix[axis[a]][axis[b]];
    }
    double operator()(int a, int b) const { return element[a + 1][b + 1]; }

    double element[3][3];
};

/// Values of the rows m and -m, or of vectors of such rows.
struct Row {
    VecD positive;
    VecD negative;
};

/// P(i, +-a) for i = +-1.
struct RowProducts {
    /// With the factors of V: sqrt(1 + d) and 1 - d.
    RowProducts Times(VecD raised, VecD dropped) const
    {
        return {pp * raised, nn * dropped, np * raised, pn * dropped};
    }

    VecD pp;
    VecD nn;
    VecD np;
    VecD pn;
};

/// What rows +-a give to other rows of the next band.
struct RowTerms {
    explicit RowTerms(const RowProducts &p)
        : v{p.pp - p.nn, p.np + p.pn}, w{p.nn + p.pp, p.pn - p.np}
    {
    }

    Row v; ///< V of the rows +-(a + 1)
    Row w; ///< W of the rows +-(a - 1)
};

// The outermost columns.

/// One outermost column of one band: R(m, n) and R(-m, n) for m = 0, 1, ...; what stands above the
/// band has no meaning and is never used.
struct alignas(64) EdgeColumn {
    void Start(const FirstBand &first, int n)
    {
        Put(0, {VecD{first(0, n), first(1, n)}, VecD{first(0, n), first(-1, n)}});
    }
    Row From(int m) const { return {Load(positive + m), Load(negative + m)}; }
    void Put(int m, const Row &row)
    {
        Store(positive + m, row.positive);
        Store(negative + m, row.negative);
    }

    double positive[edgeOrders];
    double negative[edgeOrders];
};
struct Edges {
    EdgeColumn left;  ///< n = -l
    EdgeColumn right; ///< n = l
};

/// What a vector of rows +-a of band l - 1 gives to an outermost column of band l.
struct EdgeTerms {
    EdgeTerms() : u{}, others(RowProducts{}) {}
    /// @param p makes P(i, a) from i, R^(l-1)(a, -l+1) and R^(l-1)(a, l-1)
    template <typename Product>
    EdgeTerms(Product p, int a, const Row &left, const Row &right)
        : u{p(0, left.positive, right.positive), p(0, left.negative, right.negative)},
          others(Products(p, a, left, right))
    {
    }

    Row u;
    RowTerms others;

private:
    template <typename Product>
    static RowProducts Products(Product p, int a, const Row &left, const Row &right)
    {
        const RowProducts products{
            p(1, left.positive, right.positive), p(-1, left.negative, right.negative),
            p(-1, left.positive, right.positive), p(1, left.negative, right.negative)};
        if (a > 0)
            return products;
        VecD raised = Broadcast(1.0);
        VecD dropped = Broadcast(1.0);
        raised[0] = squareRootOfTwo; // row 0
        dropped[0] = 0.0;
        return products.Times(raised, dropped);
    }
};
struct EdgePairTerms {
    EdgePairTerms() = default;
    EdgePairTerms(const FirstBand &r, const Edges &below, int a)
        : left([&](int i, VecD x, VecD y) { return r(i, 1) * x + r(i, -1) * y; }, a,
               below.left.From(a), below.right.From(a)),
          right([&](int i, VecD x, VecD y) { return r(i, 1) * y - r(i, -1) * x; }, a,
                below.left.From(a), below.right.From(a))
    {
    }

    EdgeTerms left;
    EdgeTerms right;
};

using LaneNumbers = std::make_integer_sequence<int, lanes>;

/// Lane i of the result is lane i - 1 of `here`, and lane 0 the last one of `before`.
template <int... lane>
inline VecD FromLaneBefore(VecD before, VecD here, std::integer_sequence<int, lane...>)
{
    return __builtin_shufflevector(before, here, (lanes - 1 + lane)...);
}
/// Lane i of the result is lane i + 1 of `here`, and the last one lane 0 of `after`.
template <int... lane>
inline VecD FromLaneAfter(VecD here, VecD after, std::integer_sequence<int, lane...>)
{
    return __builtin_shufflevector(here, after, (lane + 1)...);
}

inline VecD FromLaneBefore(VecD before, VecD here)
{
    return FromLaneBefore(before, here, LaneNumbers{});
}
inline VecD FromLaneAfter(VecD here, VecD after)
{
    return FromLaneAfter(here, after, LaneNumbers{});
}

/// u U of a row where u is not 0, else u itself.
inline VecD TermUnlessZero(VecD coefficient, VecD value)
{
    return coefficient != 0.0 ? coefficient * value : coefficient;
}

/// The outermost columns of band l from those of the band below.
inline void NextEdges(const FirstBand &first, const double *constants, int l, const Edges &below,
                      Edges &edges)
{
    EdgePairTerms before;
    EdgePairTerms here(first, below, 0);
    for (int m = 0; m <= l; m += lanes) {
        EdgePairTerms after;
        if (m + lanes < l)
            after = EdgePairTerms(first, below, m + lanes);
        const VecD u = Load(constants + m);
        const VecD v = Load(constants + edgeOrders + m);
        const VecD w = Load(constants + 2 * edgeOrders + m);
        const auto sum = [&](EdgeTerms EdgePairTerms::*side, VecD Row::*sign) {
            const EdgeTerms &terms = here.*side;
            VecD vValue = FromLaneBefore((before.*side).others.v.*sign, terms.others.v.*sign);
            const VecD wValue = FromLaneAfter(terms.others.w.*sign, (after.*side).others.w.*sign);
            if (m == 0) // V of row 0
                vValue[0] = terms.others.w.positive[1];
            return (TermUnlessZero(u, terms.u.*sign) + v * vValue) + TermUnlessZero(w, wValue);
        };
        edges.left.Put(m, {sum(&EdgePairTerms::left, &Row::positive),
                           sum(&EdgePairTerms::left, &Row::negative)});
        edges.right.Put(m, {sum(&EdgePairTerms::right, &Row::positive),
                            sum(&EdgePairTerms::right, &Row::negative)});
        before = here;
        here = after;
    }
}

// The blocks of columns.

/// A vector of columns.
struct Columns {
    Row rows[tableBands]; ///< m = 0..l of the band that is reached
    VecD sum;             ///< of its output coefficients, as far as it has grown
};

/// What multiplies the rows of columns |n| < l.
struct InnerFactors {
    explicit InnerFactors(const FirstBand &first)
        : minus(Broadcast(first(-1, 0))), zero(Broadcast(first(0, 0))), plus(Broadcast(first(1, 0)))
    {
    }
    RowProducts Products(const Row &row) const
    {
        return {row.positive * plus, row.negative * minus, row.positive * minus,
                row.negative * plus};
    }

    VecD minus;
    VecD zero;
    VecD plus;
};

/// Constants of a vector's columns, which their mirror images share.
inline VecD LoadMirrored(const double *from)
{
#if ORVANE_VECTOR_BYTES == 64
    return _mm512_maskz_broadcast_f64x4(0xff, _mm256_load_pd(from));
#elif ORVANE_VECTOR_BYTES == 32
    return _mm256_broadcast_pd(reinterpret_cast<const __m128d *>(from));
#else
    return Broadcast(*from);
#endif
}

/// Makes the rows of band l in columns |n| < l in the place of those of the band below, from m = l
/// down.
struct BandStep {
    template <bool hasU, bool hasW> [[gnu::always_inline]] void Make(int m, const RowTerms &below)
    {
        Row row{};
        if constexpr (hasU) {
            const VecD u = LoadMirrored(constants);
            row.positive = u * (columns.rows[m].positive * factors.zero);
            row.negative = u * (columns.rows[m].negative * factors.zero);
        }
        const VecD v = LoadMirrored(constants + blockColumns);
        row.positive += v * below.v.positive;
        row.negative += v * below.v.negative;
        if constexpr (hasW) {
            const VecD w = LoadMirrored(constants + 2 * blockColumns);
            row.positive += w * wAbove.positive;
            row.negative += w * wAbove.negative;
        }
        columns.rows[m] = row;
        sum += row.negative * in[-m];
        wAbove = wHere;
        wHere = below.w;
        constants += 3 * blockColumns;
    }
    void MakeRowZero()
    {
        const VecD u = LoadMirrored(constants);
        const VecD v = LoadMirrored(constants + blockColumns);
        const VecD row = u * (columns.rows[0].positive * factors.zero) + v * wAbove.positive;
        columns.rows[0] = {row, row};
    }
    RowTerms Terms(int a) const { return RowTerms(factors.Products(columns.rows[a])); }
    RowTerms TermsOfRowZero() const
    {
        return RowTerms(
            factors.Products(columns.rows[0]).Times(Broadcast(squareRootOfTwo), Broadcast(0.0)));
    }

    const InnerFactors factors;
    const double *constants; ///< of the next row
    const double *in;        ///< order 0 of band l
    Columns &columns;
    Row wAbove{}; ///< what row m + 1 of the band below gives to row m
    Row wHere{};  ///< what row m of the band below gives to row m - 1
    VecD sum{};
};

inline void NextBand(const InnerFactors &factors, const double *constants, int l, const double *in,
                     Columns &columns)
{
    BandStep step{factors, constants, in, columns};
    step.Make<false, false>(l, step.Terms(l - 1));
    if (l == 2) {
        step.Make<true, false>(1, step.TermsOfRowZero());
    } else {
        step.Make<true, false>(l - 1, step.Terms(l - 2));
        for (int m = l - 2; m > 1; --m)
            step.Make<true, true>(m, step.Terms(m - 1));
        step.Make<true, true>(1, step.TermsOfRowZero());
    }
    step.MakeRowZero();
    columns.sum = step.sum;
}

/// Puts columns l and -l, the outermost, into a vector of columns from l - lane on.
inline void EnterEdges(const Edges &edges, int lane, int l, const double *in, Columns &columns)
{
    VecL number{};
    for (int i = 0; i < lanes; ++i)
        number[i] = i;
    const VecL isRight = number == lane;
    const VecL isLeft = number == columnsInVector + lane;
    VecD sum{};
    for (int m = l; m >= 0; --m) {
        Row row = columns.rows[m];
        row.positive = isRight ? Broadcast(edges.right.positive[m]) : row.positive;
        row.negative = isRight ? Broadcast(edges.right.negative[m]) : row.negative;
        row.positive = isLeft ? Broadcast(edges.left.positive[m]) : row.positive;
        row.negative = isLeft ? Broadcast(edges.left.negative[m]) : row.negative;
        columns.rows[m] = row;
        if (m > 0)
            sum += row.negative * in[-m];
    }
    columns.sum = sum;
}

/// Finishes the sums of `count` vectors of columns from n on, side by side, and stores them.
/// @param out order 0 of band l, as `in`
template <int count>
inline void StoreSums(const Columns *columns, const double *in, int l, int n, float *out)
{
    VecD sums[count];
    for (int i = 0; i < count; ++i)
        sums[i] = columns[i].sum;
    for (int m = 0; m <= l; ++m)
        for (int i = 0; i < count; ++i)
            sums[i] += columns[i].rows[m].positive * in[m];

    for (const VecD &sum : sums) {
        const VecF values = Narrow(sum);
        for (int lane = 0; lane < columnsInVector && n + lane <= l; ++lane) {
            out[n + lane] = values[lane];
            out[-n - lane] = values[columnsInVector + lane];
        }
        n += columnsInVector;
    }
}

/// One rotation.
struct Rotation {
    // Columns are written before they are read, band by band.
    // cppcheck-suppress uninitMemberVar
    Rotation(const RotationConstants &constants, const double (*matrix)[3], const float *in,
             int bands)
        : first(matrix), factors(first), constants(constants), bands(bands)
    {
        for (int i = 0; i < bands * bands; ++i)
            input[i] = in[i];
    }

    /// The outermost columns that enter the block of columns from n on.
    void MakeEdges(int n)
    {
        for (int l = n; l < n + blockColumns && l < bands; ++l) {
            Edges &now = edges[l % blockColumns];
            if (l > 1) {
                NextEdges(first, constants.edges[l], l, edges[(l - 1) % blockColumns], now);
            } else if (l == 1) {
                now.left.Start(first, -1);
                now.right.Start(first, 1);
            }
        }
    }

    /// Brings a vector of columns from n on to band l >= n.
    void Advance(const double *columnConstants, int l, int n, Columns &columns)
    {
        const double *in = input + CoefficientIndex(l, 0);
        if (l > 1 && l > n) {
            NextBand(factors, columnConstants, l, in, columns);
        } else if (n > 0) {
            for (int m = 0; m <= l; ++m)
                columns.rows[m] = Row{};
        } else { // column 0 of band 1
            columns.rows[0] = {factors.zero, factors.zero};
            columns.rows[1] = {factors.plus, factors.minus};
            columns.sum = 0.0 + factors.minus * in[-1];
        }
        if (l < n + columnsInVector)
            EnterEdges(edges[l % blockColumns], l - n, l, in, columns);
    }

    /// All output coefficients of the block of columns from n on.
    void RotateBlock(int n, float *out)
    {
        const double *columnConstants = constants.columns[n / blockColumns];
        for (int l = n > 0 ? n : 1; l < bands; ++l) {
            int reached = 0; // vectors
            for (; reached < vectorsInBlock && n + reached * columnsInVector <= l; ++reached)
                Advance(columnConstants + reached * columnsInVector, l,
                        n + reached * columnsInVector, columns[reached]);
            if (l > 1 && l > n)
                columnConstants += 3 * blockColumns * (l + 1);

            const int centre = CoefficientIndex(l, 0);
            if (reached == vectorsInBlock)
                StoreSums<vectorsInBlock>(columns, input + centre, l, n, out + centre);
            else
                for (int i = 0; i < reached; ++i)
                    StoreSums<1>(columns + i, input + centre, l, n + i * columnsInVector,
                                 out + centre);
        }
    }

    const FirstBand first;
    const InnerFactors factors;
    Columns columns[vectorsInBlock];
    Edges edges[blockColumns]; ///< of band l at l modulo 4
    double input[tableCoefficients];
    const RotationConstants &constants;
    const int bands;
};

inline void RotateBands(const RotationConstants &constants, const double (*matrix)[3],
                        const float *in, int bands, float *out)
{
    out[0] = in[0];
    Rotation rotation(constants, matrix, in, bands);
    for (int n = 0; n < bands; n += blockColumns) {
        rotation.MakeEdges(n);
        rotation.RotateBlock(n, out);
    }
}
