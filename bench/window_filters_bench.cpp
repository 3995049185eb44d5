#include <benchmark/benchmark.h>

#include <functional>
#include <utility>

#include "bench_cases.h"
#include "imageops/box_mean_filter.h"
#include "imageops/diamond_filters.h"
#include "imageops/max_filter.h"
#include "imageops/median_filter.h"
#include "imageops/mode_filter.h"
#include "imageops/range_mean_filter.h"
#include "imageops/range_median_filter.h"

namespace quentara {
namespace {

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
    {"range-mean", [](int r, const BytePlane& p) { return Data(RangeMeanFilter(r, p, RangeLimit(r))); }},
    {"range-mean-2", [](int r, const BytePlane& p) { return Data(RangeMeanFilter2(r, p, p, RangeLimit(r))); }},
    {"range-median-2", [](int r, const BytePlane& p) { return Data(RangeMedianFilter2(r, p, p, RangeLimit(r))); }},
    {"range-mean-column",
     [](int r, const BytePlane& p) { return Data(RangeMeanLine(r, p, RangeLimit(r), LineDirection::Vertical)); }},
    {"range-mean-row",
     [](int r, const BytePlane& p) { return Data(RangeMeanLine2(r, p, p, RangeLimit(r), LineDirection::Horizontal)); }},
    {"range-median-column",
     [](int r, const BytePlane& p) { return Data(RangeMedianLine2(r, p, p, RangeLimit(r), LineDirection::Vertical)); }},
    {"range-median-row",
     [](int r, const BytePlane& p) {
       return Data(RangeMedianLine2(r, p, p, RangeLimit(r), LineDirection::Horizontal));
     }},
};

const bool kRegistered = [] {
  for (const auto& [name, run] : kFilters)
    RegisterWindows(name, "", 50, [filter = run](benchmark::State& state, int radius, const BytePlane& plane) {
      for (auto _ : state) benchmark::DoNotOptimize(filter(radius, plane));
    });
  return true;
}();

}  // namespace
}  // namespace quentara
