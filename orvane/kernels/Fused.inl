// Multiplication and addition that may be rounded once, where the processor can, or twice. For
// bounded approximations only: no stored bit may depend on which.

typedef float VecW __attribute__((vector_size(ORVANE_VECTOR_BYTES)));

inline VecD MultiplyAdd(VecD a, VecD b, VecD sum)
{
#if ORVANE_VECTOR_BYTES == 64
    return _mm512_fmadd_pd(a, b, sum);
#elif ORVANE_VECTOR_BYTES == 32
    return _mm256_fmadd_pd(a, b, sum);
#else
    return sum + a * b;
#endif
}
inline VecW MultiplyAdd(VecW a, VecW b, VecW sum)
{
#if ORVANE_VECTOR_BYTES == 64
    return _mm512_fmadd_ps(a, b, sum);
#elif ORVANE_VECTOR_BYTES == 32
    return _mm256_fmadd_ps(a, b, sum);
#else
    return sum + a * b;
#endif
}
/// sum - a * b
inline VecW MultiplySubtract(VecW a, VecW b, VecW sum)
{
#if ORVANE_VECTOR_BYTES == 64
    return _mm512_fnmadd_ps(a, b, sum);
#elif ORVANE_VECTOR_BYTES == 32
    return _mm256_fnmadd_ps(a, b, sum);
#else
    return sum - a * b;
#endif
}
