/// Costly functions of float samples, computed about once for each distinct value.
#pragma once

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace quentara {

/// Remembers the results of a function of a float, the latest one in each of its places. For planes whose samples take
/// few values, such as mean deviations, which are whole numbers over a sample count. Not to be shared by threads.
template <class Result, class Function>
class FloatMemo {
 public:
  explicit FloatMemo(Function function) : function_(std::move(function)), places_(std::size_t{1} << kIndexBits) {}

  /// @param value  not a NaN.
  Result operator()(float value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    Place& place = places_[bits * 2654435769u >> (32 - kIndexBits)];  // the multiplicative hash of Knuth
    if (place.bits != bits) place = {bits, function_(value)};
    return place.result;
  }

 private:
  static constexpr int kIndexBits = 13;  // all places together lie in the second cache
  struct Place {
    std::uint32_t bits = ~std::uint32_t{0};  // those of a NaN
    Result result = Result();
  };

  Function function_;
  std::vector<Place> places_;
};

template <class Result, class Function>
FloatMemo<Result, Function> MakeFloatMemo(Function function) {
  return FloatMemo<Result, Function>(std::move(function));
}

}  // namespace quentara
