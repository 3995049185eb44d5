/// Planes: two-dimensional arrays of samples on Blitz++, kept in the host's memory.
///
/// What holds for every operation on planes, unless its header says otherwise: extents are height, width, the first
/// index is the row; inputs stay unchanged; the result is a new plane and the caller's. An operation throws what the
/// allocator throws (std::bad_alloc, Plugin::Interrupted) and nothing else; a breach of its contract is an assertion.
///
/// Two traps of Blitz++: copying an array shares its samples (write `BytePlane work(plane.copy())`), and `=` copies
/// samples but never resizes (take over a result by `work.reference(result)`). The share count is not atomic, so a
/// worker wraps the rows that it reads (`WrapRows`) and never copies an array that another thread can see.
#pragma once

#include <blitz/array.h>

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <type_traits>

#include "render/plugin_host.h"

// Blitz++ keeps the samples of an array in a MemoryBlock, whose storage comes from the current host for the sample
// types in use. Every array of these types is a plane, in every source that this header is included in.
namespace blitz {
template <>
inline void MemoryBlock<unsigned char>::allocate(sizeType count) {
  data_ = dataBlockAddress_ = static_cast<unsigned char*>(Plugin::AllocateSamples(count));
}
template <>
inline void MemoryBlock<unsigned char>::deallocate() {
  Plugin::FreeSamples(dataBlockAddress_);
}
template <>
inline void MemoryBlock<float>::allocate(sizeType count) {
  data_ = dataBlockAddress_ = static_cast<float*>(Plugin::AllocateSamples(count * sizeof(float)));
}
template <>
inline void MemoryBlock<float>::deallocate() {
  Plugin::FreeSamples(dataBlockAddress_);
}
template <>
inline void MemoryBlock<int>::allocate(sizeType count) {
  data_ = dataBlockAddress_ = static_cast<int*>(Plugin::AllocateSamples(count * sizeof(int)));
}
template <>
inline void MemoryBlock<int>::deallocate() {
  Plugin::FreeSamples(dataBlockAddress_);
}
}  // namespace blitz

namespace quentara {

template <class T>
using Plane = blitz::Array<T, 2>;

using BytePlane = Plane<unsigned char>;  ///< picture data, samples 0..255
using FloatPlane = Plane<float>;         ///< working data
using IntPlane = Plane<int>;             ///< working data

/// A plane over `height` packed rows of `width` samples that somebody else owns and that must outlive it. The samples
/// are not copied and never freed. A plane over constant samples is only to be read.
template <class T>
Plane<std::remove_const_t<T>> WrapRows(T* samples, int height, int width) {
  using Sample = std::remove_const_t<T>;
  return Plane<Sample>(const_cast<Sample*>(samples), blitz::shape(height, width), blitz::neverDeleteData);
}

/// A plane over rows first .. first + count - 1 of `plane`, sharing its samples but not its share count.
template <class T>
Plane<T> WrapRows(const Plane<T>& plane, int first, int count) {
  return WrapRows(plane.data() + static_cast<std::ptrdiff_t>(first) * plane.cols(), count, plane.cols());
}

/// The samples of row `y`, a packed run of plane.cols().
template <class T>
const T* Row(const Plane<T>& plane, int y) {
  return plane.data() + static_cast<std::ptrdiff_t>(y) * plane.cols();
}
template <class T>
T* Row(Plane<T>& plane, int y) {
  return plane.data() + static_cast<std::ptrdiff_t>(y) * plane.cols();
}

/// The rows that an operation is asked for: rows first .. end() - 1 of its result, kept in a plane of their own.
template <class T>
struct ResultRows {
  Plane<T>& samples;
  int first = 0;

  int end() const { return first + samples.rows(); }
};

using ByteRows = ResultRows<unsigned char>;
using FloatRows = ResultRows<float>;

/// The samples of row `y` of the result.
template <class T>
T* Row(ResultRows<T> result, int y) {
  return Row(result.samples, y - result.first);
}

template <class T, class U>
bool SameSize(const Plane<T>& a, const Plane<U>& b) {
  return a.rows() == b.rows() && a.cols() == b.cols();
}

/// target = source, of the same size. Faster than Blitz++'s assignment, which takes bytes one by one.
template <class T>
void CopySamples(const Plane<T>& source, Plane<T>& target) {
  assert(SameSize(source, target));
  std::copy_n(source.data(), source.numElements(), target.data());
}

/// Rounds half up and stores as a byte: trunc(value + 0.5) in single precision.
/// @param value  -0.5 < value < 255.5.
inline unsigned char ToByte(float value) {
  return static_cast<unsigned char>(static_cast<int>(value + 0.5f));
}

}  // namespace quentara
