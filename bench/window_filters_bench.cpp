#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "bench_planes.h"
#include "imageops/box_mean_filter.h"
#include "imageops/diamond_filters.h"
#include "imageops/max_filter.h"
#include "imageops/median_filter.h"
#include "imageops/mode_filter.h"
#include "imageops/range_mean_filter.h"
#include "imageops/range_median_filter.h"

namespace quentara {
namespace {

constexpr int kHeight = 1080, kWidth = 1920;

// The range limits that go with a radius in the default frame.
int Limit(int radius) {
  return radius <= 3 ? 15 : radius <= 10 ? 20 : radius <= 17 ? 27 : 35;
}

using Filter = std::function<const void*(int radius, const BytePlane& plane)>;

template <class Result>
const void* Data(const Result& result) {
  return result.data();
}

const std::pair<const char*, Filter> kFilters[] = {
    {"median", [](int r, const BytePlane& p) { return Data(MedianFilter(r, p)); }},
    {"deviation", [](int r, const BytePlane& p) { return Data(MedianDeviationFilter(r, p, p)); }},
    {"max", [](int r, const BytePlane& p) { return Data(MaxFilter(r, p)); }},
    {"min", [](int r, const BytePlane& p) { return Data(MinFilter(r, p)); }},
    {"box-mean", [](int r, const BytePlane& p) { return Data(BoxMeanFilter(r, p)); }},
    {"mode", [](int r, const BytePlane& p) { return Data(ModeFilter(r, p)); }},
    {"range-mode-2", [](int r, const BytePlane& p) { return Data(RangeModeFilter2(r, p, p, r)); }},
    {"diamond-median", [](int r, const BytePlane& p) { return Data(DiamondMedianFilter(r, p)); }},
    {"diamond-deviation", [](int r, const BytePlane& p) { return Data(DiamondDeviationFilter(r, p, p)); }},
    {"range-mean", [](int r, const BytePlane& p) { return Data(RangeMeanFilter(r, p, Limit(r))); }},
    {"range-mean-2", [](int r, const BytePlane& p) { return Data(RangeMeanFilter2(r, p, p, Limit(r))); }},
    {"range-median-2", [](int r, const BytePlane& p) { return Data(RangeMedianFilter2(r, p, p, Limit(r))); }},
    {"range-mean-column",
     [](int r, const BytePlane& p) { return Data(RangeMeanLine(r, p, Limit(r), LineDirection::Vertical)); }},
    {"range-mean-row",
     [](int r, const BytePlane& p) { return Data(RangeMeanLine2(r, p, p, Limit(r), LineDirection::Horizontal)); }},
    {"range-median-column",
     [](int r, const BytePlane& p) { return Data(RangeMedianLine2(r, p, p, Limit(r), LineDirection::Vertical)); }},
    {"range-median-row",
     [](int r, const BytePlane& p) { return Data(RangeMedianLine2(r, p, p, Limit(r), LineDirection::Horizontal)); }},
};

using MakePlane = BytePlane (*)(int height, int width);

const std::pair<const char*, MakePlane> kPlanes[] = {
    {"natural", NaturalPlane}, {"noisy", NoisyPlane}, {"flat", FlatPlane}};

const BytePlane& PlaneOf(MakePlane make) {
  static std::map<MakePlane, BytePlane> planes;
  const auto known = planes.find(make);
  return known != planes.end() ? known->second : planes.emplace(make, make(kHeight, kWidth)).first->second;
}

void Measure(benchmark::State& state, const Filter& run, int radius, MakePlane make) {
  const BytePlane& plane = PlaneOf(make);
  for (auto _ : state) benchmark::DoNotOptimize(run(radius, plane));
  state.counters["ns_per_pixel"] =
      benchmark::Counter(1e-9 * static_cast<double>(plane.numElements()),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// One entry per plane, filter and radius: window/natural/median/10.
const bool kRegistered = [] {
  for (const auto& [planeName, make] : kPlanes)
    for (const auto& [filterName, run] : kFilters)
      for (const int radius : {1, 3, 10, 17, 30, 50}) {
        const std::string name = std::string("window/") + planeName + "/" + filterName + "/" + std::to_string(radius);
        benchmark::RegisterBenchmark(name.c_str(), Measure, run, radius, make)->Unit(benchmark::kMillisecond);
      }
  return true;
}();

}  // namespace
}  // namespace quentara
