#include "outlines/soft_line_merge.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstddef>

#include "blur/small_smooth.h"
#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "outlines/compositing.h"
#include "outlines/thick_line_mask.h"
#include "render/bands.h"

namespace quentara {
namespace {

using Byte = unsigned char;
using Curve = std::array<float, 256>;

Curve PowerCurve(float exponent) {
  const auto power = [&](double base) { return static_cast<float>(std::pow(base, static_cast<double>(exponent))); };
  const float white = power(255.0);
  Curve curve;
  for (std::size_t i = 0; i < curve.size(); ++i) curve[i] = 255.0f * power(static_cast<double>(i)) / white;
  return curve;
}

void MultiplyRun(const Byte* values, const float* thin, const float* thick, float* __restrict average,
                 std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float value = values[i];
    average[i] = value * thick[i] / 255.0f * 0.5f + value * thin[i] / 255.0f * 0.5f;
  }
}

/// The two masks as they lie on white, or multiplied into a value, and averaged.
class LineAverage {
 public:
  explicit LineAverage(const SoftLines& soft)
      : lines_(soft.lines.planes(0).data()),
        thickLines_(soft.thickLines.planes(0).data()),
        curve_(PowerCurve(soft.exponent)),
        thickCurve_(PowerCurve(soft.thickExponent)) {
    std::transform(curve_.begin(), curve_.end(), curve_.begin(), SoftLightSelf);
  }

  void OnWhite(std::ptrdiff_t first, std::ptrdiff_t count, float* average) const {
    for (std::ptrdiff_t i = 0; i < count; ++i)
      average[i] = thickCurve_[thickLines_[first + i]] * 0.5f + curve_[lines_[first + i]] * 0.5f;
  }

  // The curves are looked up apart from the arithmetic, which then runs in vector lanes.
  void OnValue(const Byte* values, std::ptrdiff_t first, std::ptrdiff_t count, float* average) const {
    constexpr std::ptrdiff_t kRun = 256;
    float thin[kRun], thick[kRun];
    for (std::ptrdiff_t done = 0; done < count; done += kRun) {
      const std::ptrdiff_t from = first + done, run = std::min(kRun, count - done);
      for (std::ptrdiff_t i = 0; i < run; ++i) {
        thin[i] = curve_[lines_[from + i]];
        thick[i] = thickCurve_[thickLines_[from + i]];
      }
      MultiplyRun(values + from, thin, thick, average + done, run);
    }
  }

 private:
  const Byte* lines_;
  const Byte* thickLines_;
  Curve curve_;
  Curve thickCurve_;
};

void Store(float value, float& sample) {
  sample = value;
}
void Store(float value, Byte& sample) {
  sample = ToByte(value);
}

template <class Sample>
void SoftenRun(const float* lines, const float* smooth, Sample* __restrict softened, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float sharp = 1.0f - lines[i] / 255.0f;
    Store(lines[i] * sharp + smooth[i] * (1.0f - sharp), softened[i]);
  }
}

// The lines that average(first, count, lines) writes, softened away from their dark cores, in strips of rows that stay
// in cache. An edge row mixes with a neighbour that is itself smoothed, so a strip of one row needs two more.
template <class Sample, class Average>
void Soften(const Average& average, Plane<Sample>& softened) {
  constexpr int kStrip = 32, kReach = 2;
  const int height = softened.rows(), width = softened.cols();
  ForRowBands(height, [&](int first, int count) {
    for (int top = first, end = first + count; top < end; top += kStrip) {
      const int from = std::max(top - kReach, 0), bottom = std::min(top + kStrip, end);
      FloatPlane lines(std::min(bottom + kReach, height) - from, width);
      average(static_cast<std::ptrdiff_t>(from) * width, static_cast<std::ptrdiff_t>(lines.numElements()),
              lines.data());
      const FloatPlane smooth(BoxSmooth3Float(1, lines));
      SoftenRun(Row(lines, top - from), Row(smooth, top - from), Row(softened, top),
                static_cast<std::ptrdiff_t>(bottom - top) * width);
    }
  });
}

template <class Sample>
ChannelSet WithLinesOnValue(const SoftLines& soft, const ChannelSet& picture) {
  const LineAverage average(soft);
  const BytePlane values(BrightestPlane(picture));
  Plane<Sample> softened(values.rows(), values.cols());
  Soften([&](std::ptrdiff_t first, std::ptrdiff_t count,
             float* lines) { average.OnValue(values.data(), first, count, lines); },
         softened);
  return ReplaceValue(picture, softened);
}

}  // namespace

SoftLines FindSoftLines(float strength, int thickness, int quality, const ChannelSet& image) {
  const float weakness = 1.0f - strength;
  return {12.0f - weakness * 20.0f / 3.0f, 11.0f - weakness * 10.0f, ThickLineMask(thickness, image, quality),
          ThickLineMask(thickness + 1, image, quality)};
}

ChannelSet SoftLineMerge(const SoftLines& soft) {
  assert(SameSize(soft.lines.planes(0), soft.thickLines.planes(0)));
  const LineAverage average(soft);
  ChannelSet mask("L", soft.lines.width(), soft.lines.height());
  Soften([&](std::ptrdiff_t first, std::ptrdiff_t count, float* lines) { average.OnWhite(first, count, lines); },
         mask.planes(0));
  return mask;
}

ChannelSet SoftLineOnValue(const SoftLines& soft, const ChannelSet& picture) {
  assert(SameSize(soft.lines.planes(0), picture.planes(0)));
  return Plugin::ThreadCount() > 1 ? WithLinesOnValue<Byte>(soft, picture) : WithLinesOnValue<float>(soft, picture);
}

}  // namespace quentara
