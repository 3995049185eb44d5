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

/// A plane of the size of `first` and `rest`, computed in bands of rows: filter(rows, planes...) computes the rows of
/// its result that `rows` asks for. Each worker hands it the rows that it keeps and planes of these rows and their
/// overlap, so the result is that of one call on the whole planes whenever a sample of the result depends on no row
/// further away than bands.overlap.
/// @param filter  takes a ResultRows<T> by value and the planes by constant reference.
template <class T, class Filter, class First, class... Rest>
Plane<T> FilterRowsInBands(Bands bands, const Filter& filter, const Plane<First>& first, const Plane<Rest>&... rest) {
  const int height = first.rows(), width = first.cols(), band = height / bands.count;
  Plane<T> result(height, width);
  RunInWorkers(bands.count, [&](int index, int count) {
    const int start = band * index, end = index == count - 1 ? height : start + band;
    const int from = std::max(start - bands.overlap, 0), to = std::min(end + bands.overlap, height);
    Plane<T> kept(WrapRows(result, start, end - start));
    filter(ResultRows<T>{kept, start - from}, WrapRows(first, from, to - from), WrapRows(rest, from, to - from)...);
  });
  return result;
}

/// The same for filters that compute all rows of the planes given.
/// @param filter  takes the planes by constant reference, returns a plane of their size.
template <class Filter, class First, class... Rest>
auto FilterInBands(Bands bands, const Filter& filter, const Plane<First>& first, const Plane<Rest>&... rest) {
  using Result = std::decay_t<decltype(filter(first, rest...))>;
  using Sample = typename Result::T_numtype;
  if (bands.count == 1) return Result(filter(first, rest...));
  const auto keepRows = [&](ResultRows<Sample> rows, const auto&... planes) {
    const Result part(filter(planes...));
    std::copy_n(Row(part, rows.first), rows.samples.numElements(), rows.samples.data());
  };
  return FilterRowsInBands<Sample>(bands, keepRows, first, rest...);
}

/// Both for one pass of a filter that reaches `radius` rows, with as many bands as `BandCount` allows.
template <class T, class Filter, class First, class... Rest>
Plane<T> FilterRowsInBands(int radius, const Filter& filter, const Plane<First>& first, const Plane<Rest>&... rest) {
  return FilterRowsInBands<T>(Bands{BandCount(first.rows(), radius), radius}, filter, first, rest...);
}
template <class Filter, class First, class... Rest>
auto FilterInBands(int radius, const Filter& filter, const Plane<First>& first, const Plane<Rest>&... rest) {
  return FilterInBands(Bands{BandCount(first.rows(), radius), radius}, filter, first, rest...);
}

}  // namespace quentara
