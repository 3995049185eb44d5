/// Sorting networks on bytes side by side: each lane sorts samples of its own.
///
/// A comparison whose result nobody takes is left out by the compiler, as all loops unroll.
/// For sources that are built once per instruction set, inside namespace KERNEL_TARGET.
#pragma once

#include "imageops/byte_lanes.h"

namespace quentara::KERNEL_TARGET {

template <int n>
struct Sorted {
  Bytes at[n];
};

template <int parity, int n>
BYTE_LANES_INLINE auto EverySecond(const Sorted<n>& list) {
  Sorted<(n + 1 - parity) / 2> half;
  BYTE_LANES_UNROLL
  for (int i = 0; i < (n + 1 - parity) / 2; ++i) half.at[i] = list.at[2 * i + parity];
  return half;
}

/// Batcher's odd-even merge (1968).
template <int n, int m>
BYTE_LANES_INLINE Sorted<n + m> Merged(const Sorted<n>& a, const Sorted<m>& b) {
  Sorted<n + m> all;
  if constexpr (n == 1 && m == 1) {
    all.at[0] = Smaller(a.at[0], b.at[0]);
    all.at[1] = Larger(a.at[0], b.at[0]);
  } else {
    constexpr int kOdd = n / 2 + m / 2, kEven = n + m - kOdd;
    const Sorted<kEven> even = Merged(EverySecond<0>(a), EverySecond<0>(b));
    Sorted<kOdd> odd;
    if constexpr (n == 1)
      odd = EverySecond<1>(b);
    else if constexpr (m == 1)
      odd = EverySecond<1>(a);
    else
      odd = Merged(EverySecond<1>(a), EverySecond<1>(b));
    all.at[0] = even.at[0];
    BYTE_LANES_UNROLL
    for (int i = 0; i < kOdd; ++i)
      if (i + 1 < kEven) {
        all.at[2 * i + 1] = Smaller(odd.at[i], even.at[i + 1]);
        all.at[2 * i + 2] = Larger(odd.at[i], even.at[i + 1]);
      } else {
        all.at[2 * i + 1] = odd.at[i];
      }
    if constexpr (kEven > kOdd + 1) all.at[n + m - 1] = even.at[kEven - 1];
  }
  return all;
}

/// The middle ones of a list.
template <int kept, int n>
BYTE_LANES_INLINE Sorted<kept> Middle(const Sorted<n>& list) {
  Sorted<kept> middle;
  BYTE_LANES_UNROLL
  for (int i = 0; i < kept; ++i) middle.at[i] = list.at[(n - kept) / 2 + i];
  return middle;
}

/// The median of two lists, one a sample longer than the other.
template <int n>
BYTE_LANES_INLINE Bytes MedianOf(const Sorted<n + 1>& a, const Sorted<n>& b) {
  Bytes median = a.at[n];
  BYTE_LANES_UNROLL
  for (int i = 0; i < n; ++i) median = Smaller(median, Larger(a.at[i], b.at[n - 1 - i]));
  return median;
}

}  // namespace quentara::KERNEL_TARGET
