#include "imageops/luma.h"

#include <algorithm>
#include <cassert>

#include "imageops/window_kernels_dispatch.h"
#include "render/bands.h"

namespace quentara {
namespace {

using Byte = unsigned char;

using LumaWeights = float[3];
constexpr LumaWeights kBt709 = {0.2126f, 0.7152f, 0.0722f};
constexpr LumaWeights kBt601 = {0.299f, 0.587f, 0.114f};

RgbRun PixelsFrom(const ChannelSet& picture, std::ptrdiff_t first) {
  return {picture.planes(0).data() + first, picture.planes(1).data() + first, picture.planes(2).data() + first};
}

void BrightestRun(const RgbRun& in, Byte* __restrict brightest, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) brightest[i] = std::max(std::max(in.red[i], in.green[i]), in.blue[i]);
}

// Takes `luma` of the size of `picture`.
void FillLuma(const LumaWeights& weights, const ChannelSet& picture, BytePlane& luma) {
  if (!picture.HasMode("RGB")) {
    CopySamples(picture.planes(0), luma);
    return;
  }
  ForSampleBands(luma, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    ActiveKernels().pixel.luma(weights, PixelsFrom(picture, first), luma.data() + first, count);
  });
}

void FillBrightest(const ChannelSet& picture, BytePlane& brightest) {
  assert(picture.HasMode("RGB"));
  ForSampleBands(brightest, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    BrightestRun(PixelsFrom(picture, first), brightest.data() + first, count);
  });
}

BytePlane PlaneOf(const ChannelSet& picture) {
  return BytePlane(static_cast<int>(picture.height()), static_cast<int>(picture.width()));
}

// The channels moved as they are; true when one of them left 0..255 and so lost bits.
bool MoveRun(const RgbRun& in, const Byte* oldLuma, const Byte* newLuma, Byte* __restrict red, Byte* __restrict green,
             Byte* __restrict blue, std::ptrdiff_t count) {
  short seen = 0;
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const auto move = static_cast<short>(newLuma[i] - oldLuma[i]);
    const auto r = static_cast<short>(in.red[i] + move), g = static_cast<short>(in.green[i] + move),
               b = static_cast<short>(in.blue[i] + move);
    seen = static_cast<short>(seen | r | g | b);
    red[i] = static_cast<Byte>(r);
    green[i] = static_cast<Byte>(g);
    blue[i] = static_cast<Byte>(b);
  }
  return (seen & ~255) != 0;
}

// The channels moved and pulled back into range. Where a step is not due its result is not taken, and its divisor is 1
// so that it cannot be zero.
void PullRun(const RgbRun& in, const Byte* oldLuma, const Byte* newLuma, Byte* __restrict red, Byte* __restrict green,
             Byte* __restrict blue, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const int move = newLuma[i] - oldLuma[i];
    const int r = in.red[i] + move, g = in.green[i] + move, b = in.blue[i] + move;
    const int least = std::min(std::min(r, g), b), largest = std::max(std::max(r, g), b);
    const float luma = newLuma[i], room = 255.0f - luma;
    const float below = least < 0 ? luma - static_cast<float>(least) : 1.0f;
    const float above = largest > 255 ? static_cast<float>(largest) - luma : 1.0f;
    const auto pull = [=](int channel) {
      const int raised = static_cast<int>(luma + luma * (static_cast<float>(channel) - luma) / below + 0.5f);
      const int c = least < 0 ? raised : channel;
      const int lowered = static_cast<int>(luma + room * (static_cast<float>(c) - luma) / above + 0.5f);
      return static_cast<Byte>(largest > 255 ? lowered : c);
    };
    red[i] = pull(r);
    green[i] = pull(g);
    blue[i] = pull(b);
  }
}

}  // namespace

BytePlane LumaPlane709(const ChannelSet& picture) {
  BytePlane luma(PlaneOf(picture));
  FillLuma(kBt709, picture, luma);
  return luma;
}

BytePlane LumaPlane601(const ChannelSet& picture) {
  BytePlane luma(PlaneOf(picture));
  FillLuma(kBt601, picture, luma);
  return luma;
}

ChannelSet LumaImage709(const ChannelSet& picture) {
  ChannelSet luma("L", picture.width(), picture.height());
  FillLuma(kBt709, picture, luma.planes(0));
  return luma;
}

ChannelSet LumaImage601(const ChannelSet& picture) {
  ChannelSet luma("L", picture.width(), picture.height());
  FillLuma(kBt601, picture, luma.planes(0));
  return luma;
}

BytePlane BrightestPlane(const ChannelSet& picture) {
  BytePlane brightest(PlaneOf(picture));
  FillBrightest(picture, brightest);
  return brightest;
}

ChannelSet BrightestImage(const ChannelSet& picture) {
  ChannelSet brightest("L", picture.width(), picture.height());
  FillBrightest(picture, brightest.planes(0));
  return brightest;
}

ChannelSet ReplaceLuma(const ChannelSet& picture, const BytePlane& oldLuma, const BytePlane& newLuma) {
  assert(picture.HasMode("RGB"));
  assert(SameSize(picture.planes(0), oldLuma) && SameSize(oldLuma, newLuma));
  ChannelSet result("RGB", picture.width(), picture.height());
  ForSampleBands(oldLuma, [&](std::ptrdiff_t bandFirst, std::ptrdiff_t bandCount) {
    // Most pixels stay in range: only a short run with one that does not is done again, the dear way.
    constexpr std::ptrdiff_t kRun = 128;
    for (std::ptrdiff_t first = bandFirst, end = bandFirst + bandCount; first < end; first += kRun) {
      const RgbRun in = PixelsFrom(picture, first);
      const Byte* const before = oldLuma.data() + first;
      const Byte* const after = newLuma.data() + first;
      Byte* const red = result.planes(0).data() + first;
      Byte* const green = result.planes(1).data() + first;
      Byte* const blue = result.planes(2).data() + first;
      const std::ptrdiff_t count = std::min(kRun, end - first);
      if (MoveRun(in, before, after, red, green, blue, count)) PullRun(in, before, after, red, green, blue, count);
    }
  });
  return result;
}

}  // namespace quentara
