// Plain vector arithmetic on the compiler's own vector types: lanes wide as the instruction set at
// hand allows. An operation on a vector is the same IEEE operation on each lane.

constexpr int lanes = ORVANE_VECTOR_BYTES / 8; ///< doubles in a vector

typedef double VecD __attribute__((vector_size(lanes * 8)));
/// As many floats as a VecD has doubles.
typedef float VecF __attribute__((vector_size(lanes * 4)));
typedef long long VecL __attribute__((vector_size(lanes * 8)));
typedef int VecI __attribute__((vector_size(lanes * 4)));

// Loads and stores through these types may be unaligned and may alias anything.
typedef double VecDUnaligned __attribute__((vector_size(lanes * 8), aligned(8), may_alias));
typedef float VecFUnaligned __attribute__((vector_size(lanes * 4), aligned(4), may_alias));
typedef int VecIUnaligned __attribute__((vector_size(lanes * 4), aligned(4), may_alias));

inline VecD Load(const double *from)
{
    return *reinterpret_cast<const VecDUnaligned *>(from);
}
inline VecF Load(const float *from)
{
    return *reinterpret_cast<const VecFUnaligned *>(from);
}
inline void Store(double *to, VecD value)
{
    *reinterpret_cast<VecDUnaligned *>(to) = value;
}
inline void Store(float *to, VecF value)
{
    *reinterpret_cast<VecFUnaligned *>(to) = value;
}
inline void Store(int *to, VecI value)
{
    *reinterpret_cast<VecIUnaligned *>(to) = value;
}
/// The value, in a register: a compiler may else read a value that two operations take from memory
/// twice, where loads are what bounds a loop.
template <typename Vector> inline Vector Held(Vector value)
{
    asm("" : "+v"(value));
    return value;
}
inline VecD Broadcast(double value)
{
    return value - VecD{};
}
inline VecF Narrow(VecD value)
{
    return __builtin_convertvector(value, VecF);
}
inline VecD Widen(VecF value)
{
    return __builtin_convertvector(value, VecD);
}
inline VecD Widen(VecI value)
{
    return __builtin_convertvector(value, VecD);
}
/// Toward zero; every lane within the range of int.
inline VecI Truncate(VecD value)
{
    return __builtin_convertvector(value, VecI);
}

inline VecD Magnitude(VecD value)
{
    return reinterpret_cast<VecD>(reinterpret_cast<VecL>(value) & 0x7fffffffffffffffLL);
}

/// One step of transposing a square of lanes x lanes values: lanes `half` apart change places with
/// rows `half` apart.
template <int half, int... lane>
inline void ExchangeHalves(VecD *rows, std::integer_sequence<int, lane...>)
{
    for (int i = 0; i < lanes; ++i) {
        if (i & half)
            continue;
        const VecD upper = rows[i];
        const VecD lower = rows[i + half];
        rows[i] =
            __builtin_shufflevector(upper, lower, (lane & half ? lanes + lane - half : lane)...);
        rows[i + half] =
            __builtin_shufflevector(upper, lower, (lane & half ? lanes + lane : lane + half)...);
    }
}

/// Transposes a square of lanes x lanes values in place.
inline void Transpose(VecD *rows)
{
    using Lanes = std::make_integer_sequence<int, lanes>;
    if constexpr (lanes >= 8)
        ExchangeHalves<4>(rows, Lanes{});
    if constexpr (lanes >= 4)
        ExchangeHalves<2>(rows, Lanes{});
    ExchangeHalves<1>(rows, Lanes{});
}
