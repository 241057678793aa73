// The rotation of a set: columns of the band matrices are the lanes.
//
// R^l(m, n) is made of R^(l-1) in the same column n and the rows m and |m| +- 1 of both signs; only
// the outermost columns n = -l and l are made of each other, that is of the outermost columns of
// band l - 1. Hence two passes, neither of which ever holds a whole matrix:
//
//   1. the outermost columns of all bands, the lanes being rows m
//
//          band l - 1   R(m, -l+1)  R(m, l-1)      m = 0..l-1 and 0..-l+1
//                              |  x  |
//          band l       R(m, -l)    R(m, l)
//
//   2. a vector of columns n, n+1, ... and its mirror image -n, -n-1, ... from band to band:
//
//          rows m = 0..l    R(m, n)  R(m, n+1)  R(m, n+2) ...    } a few kilobytes that stay in the
//          rows m = 0..-l   R(m, n)  R(m, n+1)  R(m, n+2) ...    } first-level cache
//
//      Column l enters from pass 1 when its band is reached. The same constants serve both signs
//      of m and n. As soon as a band's rows are made they are applied to the input: the lanes are
//      output coefficients, each a sum over m = -l..l in that order.
//
// The bits: each element takes the operations of the formulas in their order. Where a coefficient
// u or w is 0 (rows l, and l - 1 and l) its term is not evaluated: u is then +0, which is added,
// and w is -0, which as a summand changes nothing and is left out, for m = 0 too. The factors
// sqrt(e + 1) and 1 - e are 1 but for m = +-1, where the product with 1 - e = 0 is carried out.

constexpr double squareRootOfTwo = 0x1.6a09e667f3bcdp+0; // 1.4142135623730951

constexpr int edgeOrders = RotationConstants::edgeOrders;
constexpr int blockColumns = RotationConstants::blockColumns;

/// R^1 in the orders -1, 0, 1, which stand for y, z, x.
struct FirstBand {
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

/// One outermost column of one band: R(m, n) and R(-m, n) for m = 0..39, 0 above the band.
struct EdgeColumn {
    alignas(64) double positive[edgeOrders];
    alignas(64) double negative[edgeOrders];
};
struct Edges {
    EdgeColumn left;  ///< n = -l
    EdgeColumn right; ///< n = l
};

/// P(i, l, a, -l) and P(i, l, a, l) from R^(l-1)(a, -l+1) and R^(l-1)(a, l-1).
template <typename Value> struct EdgeProducts {
    EdgeProducts(const FirstBand &first, int i, Value left, Value right)
        : left(first(i, 1) * left + first(i, -1) * right),
          right(first(i, 1) * right - first(i, -1) * left)
    {
    }
    Value left;
    Value right;
};

/// u U of a row where u is not 0, else u itself.
inline VecD TermUnlessZero(VecD coefficient, VecD value)
{
    return coefficient != 0.0 ? coefficient * value : coefficient;
}

/// The outermost columns of band l from those of the band below.
inline void NextEdges(const FirstBand &first, const double *constants, int l, const Edges &below,
                      Edges &edges)
{
    const double *us = constants;
    const double *vs = us + edgeOrders;
    const double *ws = vs + edgeOrders;

    using Product = EdgeProducts<double>;
    const Product u0(first, 0, below.left.positive[0], below.right.positive[0]);
    const Product v0(first, 1, below.left.positive[1], below.right.positive[1]);
    const Product v1(first, -1, below.left.negative[1], below.right.negative[1]);
    edges.left.positive[0] = us[0] * u0.left + vs[0] * (v0.left + v1.left);
    edges.right.positive[0] = us[0] * u0.right + vs[0] * (v0.right + v1.right);
    edges.left.negative[0] = edges.left.positive[0];
    edges.right.negative[0] = edges.right.positive[0];

    for (int m = 1; m <= l; m += lanes) {
        const VecD u = Load(us + m);
        const VecD v = Load(vs + m);
        const VecD w = Load(ws + m);
        VecD raised = Broadcast(1.0);  // sqrt(e + 1)
        VecD dropped = Broadcast(1.0); // 1 - e
        if (m == 1) {
            raised[0] = squareRootOfTwo;
            dropped[0] = 0.0;
        }
        using Products = EdgeProducts<VecD>;
        const auto positive = [&](int i, int a) {
            return Products(first, i, Load(below.left.positive + a),
                            Load(below.right.positive + a));
        };
        const auto negative = [&](int i, int a) {
            return Products(first, i, Load(below.left.negative + a),
                            Load(below.right.negative + a));
        };
        const Products up = positive(0, m);
        const Products un = negative(0, m);
        const Products vpp = positive(1, m - 1);
        const Products vnn = negative(-1, m - 1);
        const Products vnp = positive(-1, m - 1);
        const Products vpn = negative(1, m - 1);
        const Products wnn = negative(-1, m + 1);
        const Products wpp = positive(1, m + 1);
        const Products wpn = negative(1, m + 1);
        const Products wnp = positive(-1, m + 1);
        const auto sum = [&](VecD uValue, VecD vValue, VecD wValue) {
            return (TermUnlessZero(u, uValue) + TermUnlessZero(v, vValue)) +
                   TermUnlessZero(w, wValue);
        };
        Store(edges.left.positive + m,
              sum(up.left, vpp.left * raised - vnn.left * dropped, wnn.left + wpp.left));
        Store(edges.right.positive + m,
              sum(up.right, vpp.right * raised - vnn.right * dropped, wnn.right + wpp.right));
        Store(edges.left.negative + m,
              sum(un.left, vnp.left * raised + vpn.left * dropped, wpn.left - wnp.left));
        Store(edges.right.negative + m,
              sum(un.right, vnp.right * raised + vpn.right * dropped, wpn.right - wnp.right));
    }
}

/// A vector of columns of one band matrix: R(m, n) and R(-m, n) for m = 0..29.
struct ColumnRows {
    VecD positive[tableBands + 1];
    VecD negative[tableBands + 1];
};
/// The columns n, n + 1, ... and -n, -n - 1, ...
struct MirroredColumns {
    ColumnRows side[2];
};

/// The rows of band l in columns |n| < l.
inline void NextColumns(const FirstBand &first, const double *constants, int l,
                        const MirroredColumns &below, MirroredColumns &columns)
{
    const double rMinus = first(-1, 0);
    const double rZero = first(0, 0);
    const double rPlus = first(1, 0);
    for (int m = 0; m <= l; ++m, constants += 3 * blockColumns) {
        const VecD u = Load(constants);
        const VecD v = Load(constants + blockColumns);
        const VecD w = Load(constants + 2 * blockColumns);
        for (int s = 0; s < 2; ++s) {
            const VecD *positive = below.side[s].positive;
            const VecD *negative = below.side[s].negative;
            VecD up{};
            VecD un{};
            if (m < l) {
                up = u * (positive[m] * rZero);
                un = u * (negative[m] * rZero);
            }
            if (m == 0) {
                up += v * (positive[1] * rPlus + negative[1] * rMinus);
                columns.side[s].positive[0] = up;
                columns.side[s].negative[0] = up;
                continue;
            }
            const VecD vpp = positive[m - 1] * rPlus;
            const VecD vnn = negative[m - 1] * rMinus;
            const VecD vnp = positive[m - 1] * rMinus;
            const VecD vpn = negative[m - 1] * rPlus;
            if (m == 1) {
                up += v * (vpp * squareRootOfTwo - vnn * 0.0);
                un += v * (vnp * squareRootOfTwo + vpn * 0.0);
            } else {
                up += v * (vpp - vnn);
                un += v * (vnp + vpn);
            }
            if (m < l - 1) {
                up += w * (negative[m + 1] * rMinus + positive[m + 1] * rPlus);
                un += w * (negative[m + 1] * rPlus - positive[m + 1] * rMinus);
            }
            columns.side[s].positive[m] = up;
            columns.side[s].negative[m] = un;
        }
    }
}

/// Puts column l, the outermost, into the lanes where `entering` is set.
inline void EnterEdges(VecL entering, const Edges &edges, int l, MirroredColumns &columns)
{
    for (int m = 0; m <= l; ++m) {
        ColumnRows &right = columns.side[0];
        ColumnRows &left = columns.side[1];
        right.positive[m] = entering ? Broadcast(edges.right.positive[m]) : right.positive[m];
        right.negative[m] = entering ? Broadcast(edges.right.negative[m]) : right.negative[m];
        left.positive[m] = entering ? Broadcast(edges.left.positive[m]) : left.positive[m];
        left.negative[m] = entering ? Broadcast(edges.left.negative[m]) : left.negative[m];
    }
}

/// Output coefficients of band l in the columns from n on and their mirror image.
inline void ApplyColumns(const MirroredColumns &columns, const double *in, int l, int n, float *out)
{
    VecD right{};
    VecD left{};
    const double *centre = in + CoefficientIndex(l, 0);
    for (int m = l; m > 0; --m) {
        right += columns.side[0].negative[m] * centre[-m];
        left += columns.side[1].negative[m] * centre[-m];
    }
    for (int m = 0; m <= l; ++m) {
        right += columns.side[0].positive[m] * centre[m];
        left += columns.side[1].positive[m] * centre[m];
    }
    float *outCentre = out + CoefficientIndex(l, 0);
    for (int lane = 0; lane < lanes && n + lane <= l; ++lane) {
        outCentre[n + lane] = static_cast<float>(right[lane]);
        outCentre[-n - lane] = static_cast<float>(left[lane]);
    }
}

inline void RotateBands(const RotationConstants &constants, const double (*matrix)[3],
                        const float *in, int bands, float *out)
{
    out[0] = in[0];
    const FirstBand first(matrix);
    double input[tableCoefficients];
    for (int i = 0; i < bands * bands; ++i)
        input[i] = in[i];

    Edges edges[tableBands];
    for (int l = 1; l < bands; ++l) {
        edges[l] = {};
        if (l > 1) {
            NextEdges(first, constants.edges[l], l, edges[l - 1], edges[l]);
            continue;
        }
        for (int a = 0; a <= 1; ++a) {
            edges[1].left.positive[a] = first(a, -1);
            edges[1].left.negative[a] = first(-a, -1);
            edges[1].right.positive[a] = first(a, 1);
            edges[1].right.negative[a] = first(-a, 1);
        }
    }

    for (int n = 0; n < bands; n += lanes) {
        VecL column{};
        for (int lane = 0; lane < lanes; ++lane)
            column[lane] = n + lane;
        MirroredColumns columns[2];
        int l = n;
        for (int m = 0; m <= n; ++m)
            for (ColumnRows &rows : columns[n & 1].side)
                rows.positive[m] = rows.negative[m] = VecD{};
        if (n == 0) { // column 0 of band 1 comes from the matrix
            l = 1;
            for (ColumnRows &rows : columns[1].side)
                for (int a = 0; a <= 1; ++a) {
                    rows.positive[a] = Broadcast(first(a, 0));
                    rows.negative[a] = Broadcast(first(-a, 0));
                }
        }
        for (const int start = l; l < bands; ++l) {
            MirroredColumns &now = columns[l & 1];
            if (l > start)
                NextColumns(first, constants.columns[n / blockColumns][l] + n % blockColumns, l,
                            columns[~l & 1], now);
            if (l < n + lanes)
                EnterEdges(column == l, edges[l], l, now);
            ApplyColumns(now, input, l, n, out);
        }
    }
}
