// Arithmetic that reads alike for a double, for a vector of doubles (the compiler's extension) and for two
// such vectors side by side. Everything is inlined and depends on the vector's type, so that sources compiled
// for different machines share no code. Included by the kernels alone.
#pragma once

#include <cstddef>
#if defined(__SSE2__)
#include <immintrin.h>
#endif

#define NIMBARA_INLINE [[gnu::always_inline]] inline

namespace nimbara::SGP4::lanes {

using Two = double __attribute__((vector_size(16)));
#if defined(__AVX2__)
using Four = double __attribute__((vector_size(32)));
#endif
#if defined(__AVX512F__)
using Eight = double __attribute__((vector_size(64)));
#endif

/// Two vectors side by side: while the one waits for a result the machine works on the other.
template <class V>
struct Pair {
  V low, high;
};

template <class T>
inline constexpr bool isPair = false;
template <class V>
inline constexpr bool isPair<Pair<V>> = true;
template <class A, class B>
concept EitherPaired = isPair<A> || isPair<B>;

// A number belongs to both vectors.
template <class T>
NIMBARA_INLINE T const& low(T const& x) {
  return x;
}
template <class T>
NIMBARA_INLINE T const& high(T const& x) {
  return x;
}
template <class V>
NIMBARA_INLINE V const& low(Pair<V> const& x) {
  return x.low;
}
template <class V>
NIMBARA_INLINE V const& high(Pair<V> const& x) {
  return x.high;
}
template <class V>
NIMBARA_INLINE Pair<V> paired(V const& low, V const& high) {
  return {low, high};
}

template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator+(A const& a, B const& b) {
  return paired(low(a) + low(b), high(a) + high(b));
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator-(A const& a, B const& b) {
  return paired(low(a) - low(b), high(a) - high(b));
}
template <class V>
NIMBARA_INLINE Pair<V> operator-(Pair<V> const& x) {
  return {-x.low, -x.high};
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator*(A const& a, B const& b) {
  return paired(low(a) * low(b), high(a) * high(b));
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator/(A const& a, B const& b) {
  return paired(low(a) / low(b), high(a) / high(b));
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator&(A const& a, B const& b) {
  return paired(low(a) & low(b), high(a) & high(b));
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator|(A const& a, B const& b) {
  return paired(low(a) | low(b), high(a) | high(b));
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator^(A const& a, B const& b) {
  return paired(low(a) ^ low(b), high(a) ^ high(b));
}
template <class V>
NIMBARA_INLINE Pair<V> operator<<(Pair<V> const& x, int bits) {
  return {x.low << bits, x.high << bits};
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator<(A const& a, B const& b) {
  return paired(low(a) < low(b), high(a) < high(b));
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator>(A const& a, B const& b) {
  return paired(low(a) > low(b), high(a) > high(b));
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator>=(A const& a, B const& b) {
  return paired(low(a) >= low(b), high(a) >= high(b));
}
template <class A, class B>
  requires EitherPaired<A, B>
NIMBARA_INLINE auto operator!=(A const& a, B const& b) {
  return paired(low(a) != low(b), high(a) != high(b));
}

/// The integers of V's size; a vector's comparison gives them, too, with all bits of a lane equal.
template <class V>
struct IntegersOf {
  using Type = decltype(V{} < V{});
};
template <>
struct IntegersOf<double> {
  using Type = long long;
};
template <class V>
using Integers = IntegersOf<V>::Type;

// A pair is moved vector by vector: as one thing the compiler would send it through the stack.
template <class V>
NIMBARA_INLINE V load(double const* from) {
  V value;
  if constexpr (isPair<V>) {
    value.low = load<decltype(value.low)>(from);
    value.high = load<decltype(value.high)>(from + sizeof value.low / sizeof(double));
  } else {
    __builtin_memcpy(&value, from, sizeof value);
  }
  return value;
}
template <class V>
NIMBARA_INLINE void store(double* to, V const& value) {
  if constexpr (isPair<V>) {
    store(to, value.low);
    store(to + sizeof value.low / sizeof(double), value.high);
  } else {
    __builtin_memcpy(to, &value, sizeof value);
  }
}
/// How many doubles V holds.
template <class V>
inline constexpr std::size_t kWidth = sizeof(V) / sizeof(double);  // NOLINT(bugprone-sizeof-expression)

/// The bits of doubles as integers, and back.
template <class To, class From>
NIMBARA_INLINE To bitCast(From const& from) {
  if constexpr (isPair<To>) {
    return {__builtin_bit_cast(decltype(To::low), from.low),
            __builtin_bit_cast(decltype(To::high), from.high)};
  } else {
    return __builtin_bit_cast(To, from);
  }
}

template <class V>
NIMBARA_INLINE void storeFloats(float* to, V const& value) {
  for (std::size_t i = 0; i < sizeof(V) / sizeof(double); ++i) to[i] = static_cast<float>(value[i]);
}
NIMBARA_INLINE void storeFloats(float* to, double value) {
  *to = static_cast<float>(value);
}
template <class V>
NIMBARA_INLINE void storeFloats(float* to, Pair<V> const& value) {
  storeFloats(to, value.low);
  storeFloats(to + sizeof(V) / sizeof(double), value.high);
}

template <class Mask, class V>
NIMBARA_INLINE V select(Mask mask, V yes, V no) {
  return mask ? yes : no;
}

template <class Mask, class V>
NIMBARA_INLINE Pair<V> select(Pair<Mask> const& mask, Pair<V> const& yes, Pair<V> const& no) {
  return {select(mask.low, yes.low, no.low), select(mask.high, yes.high, no.high)};
}

NIMBARA_INLINE bool any(bool mask) {
  return mask;
}
NIMBARA_INLINE double squareRoot(double x) {
  return __builtin_sqrt(x);
}

template <class V>
NIMBARA_INLINE V lanewiseRoot(V x) {
  for (std::size_t i = 0; i < sizeof(V) / sizeof(double); ++i) x[i] = __builtin_sqrt(x[i]);
  return x;
}

#if defined(__SSE2__)
NIMBARA_INLINE bool any(Integers<Two> mask) {
  return _mm_movemask_pd(__builtin_bit_cast(__m128d, mask)) != 0;
}
NIMBARA_INLINE Two squareRoot(Two x) {
  return _mm_sqrt_pd(x);
}
#else
NIMBARA_INLINE bool any(Integers<Two> mask) {
  return (mask[0] | mask[1]) != 0;
}
NIMBARA_INLINE Two squareRoot(Two x) {
  return lanewiseRoot(x);
}
#endif
#if defined(__AVX2__)
NIMBARA_INLINE bool any(Integers<Four> mask) {
  return _mm256_movemask_pd(__builtin_bit_cast(__m256d, mask)) != 0;
}
NIMBARA_INLINE Four squareRoot(Four x) {
  return _mm256_sqrt_pd(x);
}
#endif
#if defined(__AVX512F__)
NIMBARA_INLINE bool any(Integers<Eight> mask) {
  __m512i const bits = __builtin_bit_cast(__m512i, mask);
  return _mm512_test_epi64_mask(bits, bits) != 0;
}
NIMBARA_INLINE Eight squareRoot(Eight x) {
  return _mm512_sqrt_pd(x);
}
#endif

template <class Mask>
NIMBARA_INLINE bool any(Pair<Mask> const& mask) {
  return any(mask.low | mask.high);
}
template <class V>
NIMBARA_INLINE Pair<V> squareRoot(Pair<V> const& x) {
  return {squareRoot(x.low), squareRoot(x.high)};
}

template <class V>
NIMBARA_INLINE V magnitude(V x) {
  return bitCast<V>(bitCast<Integers<V>>(x) & 0x7FFFFFFFFFFFFFFF);
}

template <class V>
struct SineCosine {
  V sine, cosine;
};

/// Sine and cosine of |x| ≤ π/4: polynomials in x² through the Chebyshev nodes of that range, error 1e-17.
template <class V>
NIMBARA_INLINE SineCosine<V> sineCosineNearZero(V x) {
  V const y = x * x;
  V const s =
      -0.16666666666666666 +
      y * (0.0083333333333307 +
           y * (-0.00019841269836385435 +
                y * (2.7557315910939e-06 + y * (-2.5051092308431318e-08 + y * 1.5915309183057952e-10))));
  V const c =
      0.041666666666666664 +
      y * (-0.0013888888888887241 +
           y * (2.480158729853226e-05 +
                y * (-2.7557317151858866e-07 + y * (2.0876121534608454e-09 + y * -1.1380868171449914e-11))));
  return {x + x * y * s, 1 - 0.5 * y + y * y * c};
}

/// Sine and cosine of any |x| below 1e9. π/2 is subtracted in three parts, the first two of 33 bits, so that
/// their products with the number of quarter turns are exact without a fused multiplication.
template <class V>
NIMBARA_INLINE SineCosine<V> sineCosine(V x) {
  constexpr double kQuartersPerRadian = 0.63661977236758134;
  constexpr double kRounder = 6755399441055744.0;  // 1.5 · 2^52: the sum's low bits are the rounded integer
  V const sum = x * kQuartersPerRadian + kRounder;
  V const quarters = sum - kRounder;
  V const rest = ((x - quarters * 1.5707963267341256) - quarters * 6.077100506303966e-11) -
                 quarters * 2.0222662487959506e-21;
  auto const [s, c] = sineCosineNearZero(rest);
  auto const quadrant = bitCast<Integers<V>>(sum);
  auto const swapped = (quadrant & 1) != 0;
  V const sine = select(swapped, c, s);
  V const cosine = select(swapped, s, c);
  return {bitCast<V>(bitCast<Integers<V>>(sine) ^ ((quadrant & 2) << 62)),
          bitCast<V>(bitCast<Integers<V>>(cosine) ^ (((quadrant + 1) & 2) << 62))};
}

}  // namespace nimbara::SGP4::lanes
