/// Bands of rows: the one place where work is split over threads.
#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "render/plane.h"
#include "render/plugin_host.h"

namespace quentara {

/// How a pass over a plane is split: worker i keeps rows height / count * i onwards, the last one also the rows that
/// the division leaves over, and each reads `overlap` rows more on either side of a cut.
struct Bands {
  int count;
  int overlap;
};

/// The number of bands for passes that reach up to `radius` rows: the workers on offer, lowered while the height of a
/// band is not above 2 * radius. At least 1.
int BandCount(int height, int radius);

/// Runs body(index, count) on `count` workers, or on the calling thread when `count` is 1. In each of them the current
/// host is the caller's. The workers share what `body` refers to: each writes only what is its own.
template <class Body>
void RunInWorkers(int count, const Body& body) {
  if (count == 1) {
    body(0, 1);
    return;
  }
  const Plugin::Worker front = [](Plugin::Host& host, const int*, int index, int workers, void* data) {
    const Plugin::HostScope scope(host);
    (*static_cast<const Body*>(data))(index, workers);
  };
  Plugin::RunWorkers(front, const_cast<void*>(static_cast<const void*>(&body)), count);
}

/// Runs body(firstRow, rowCount) for bands of rows without overlap, on all workers on offer (never more than rows).
template <class Body>
void ForRowBands(int height, const Body& body) {
  RunInWorkers(std::clamp(Plugin::ThreadCount(), 1, std::max(height, 1)), [&](int index, int count) {
    const int band = height / count;
    body(band * index, index == count - 1 ? height - band * index : band);
  });
}

/// The same for steps that look at one pixel at a time: runs body(first, count) for runs of whole rows of planes of the
/// size of `plane`, whose samples are numbered row by row.
template <class T, class Body>
void ForSampleBands(const Plane<T>& plane, const Body& body) {
  const std::ptrdiff_t width = plane.cols();
  ForRowBands(plane.rows(), [&](int row, int rows) { body(row * width, rows * width); });
}

/// filter(planes...), computed in bands of rows. Each worker hands `filter` its rows and their overlap as planes of
/// their own and keeps its own rows of the result, so the result is that of one call on the whole planes whenever a
/// sample of the result depends on no row further away than bands.overlap.
/// @param filter  takes the planes by constant reference, returns a plane of their size.
/// @param planes  one or more of the same size.
template <class Filter, class First, class... Rest>
auto FilterInBands(Bands bands, const Filter& filter, const Plane<First>& first, const Plane<Rest>&... rest) {
  using Result = std::decay_t<decltype(filter(first, rest...))>;
  if (bands.count == 1) return Result(filter(first, rest...));
  const int height = first.rows(), width = first.cols(), band = height / bands.count;
  Result result(height, width);
  RunInWorkers(bands.count, [&](int index, int count) {
    const int start = band * index, end = index == count - 1 ? height : start + band;
    const int from = std::max(start - bands.overlap, 0), to = std::min(end + bands.overlap, height);
    const Result part(filter(WrapRows(first, from, to - from), WrapRows(rest, from, to - from)...));
    const std::ptrdiff_t kept = static_cast<std::ptrdiff_t>(end - start) * width;
    std::copy_n(Row(part, start - from), kept, Row(result, start));
  });
  return result;
}

/// The same for one pass of a filter that reaches `radius` rows, with as many bands as `BandCount` allows.
template <class Filter, class First, class... Rest>
auto FilterInBands(int radius, const Filter& filter, const Plane<First>& first, const Plane<Rest>&... rest) {
  return FilterInBands(Bands{BandCount(first.rows(), radius), radius}, filter, first, rest...);
}

}  // namespace quentara
