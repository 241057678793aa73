// Plain vector arithmetic on the compiler's own vector types: lanes wide as the instruction set at
// hand allows. An operation on a vector is the same IEEE operation on each lane.

constexpr int lanes = ORVANE_VECTOR_BYTES / 8; ///< doubles in a vector

typedef double VecD __attribute__((vector_size(lanes * 8)));
typedef float VecF
    __attribute__((vector_size(lanes * 4))); ///< as many floats as a VecD has doubles
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
