#include "outlines/compositing.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <utility>

#include "blur/small_smooth.h"
#include "render/bands.h"

namespace quentara {
namespace {

using Byte = unsigned char;

// Round half up of a * b / 255 in whole numbers: 255 is odd, so the quotient is never half-way between two of them.
Byte Multiplied(int a, int b) {
  const int product = a * b + 128;
  return static_cast<Byte>((product + (product >> 8)) >> 8);
}

void MultiplyRun(const Byte* a, const Byte* b, Byte* __restrict product, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) product[i] = Multiplied(a[i], b[i]);
}

void FadeRun(const Byte* samples, float value, const Byte* mask, Byte* __restrict faded, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const float kept = static_cast<float>(mask[i]) / 255.0f;
    faded[i] = ToByte(samples[i] * kept + value * (1.0f - kept));
  }
}

void DarkenRun(const Byte* samples, const Byte* mask, float mix, Byte* __restrict darkened, std::ptrdiff_t count) {
  const float rest = 1.0f - mix;
  for (std::ptrdiff_t i = 0; i < count; ++i)
    darkened[i] = ToByte(std::min(samples[i], mask[i]) * mix + samples[i] * rest);
}

void BlendRun(const Byte* samples, const Byte* mask, float antialias, Byte* __restrict hard, std::ptrdiff_t count) {
  const float rest = 1.0f - antialias;
  for (std::ptrdiff_t i = 0; i < count; ++i)
    hard[i] = ToByte(Multiplied(samples[i], mask[i]) * antialias + hard[i] * rest);
}

// body(channel, first, count) for each plane of a picture, in bands.
template <class Body>
void ForChannelRuns(const ChannelSet& picture, const Body& body) {
  ForSampleBands(picture.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    for (int i = 0; i < static_cast<int>(picture.channelCount()); ++i) body(i, first, count);
  });
}

BytePlane Smoothed(const ChannelSet& mask) {
  return FilterInBands(
      1, [](const BytePlane& band) { return BinomialSmooth(1, band); }, mask.planes(0));
}

ChannelSet BlendSmoothed(const ChannelSet& mask, float antialias) {
  ChannelSet blended("L", mask.width(), mask.height(), Smoothed(mask));
  MixImages(mask, blended, antialias);
  return blended;
}

ChannelSet Darkened(const ChannelSet& picture, const ChannelSet& mask, float antialias) {
  if (antialias <= 0.0f) return DarkenByMask(picture, mask, 1.0f);
  ChannelSet hard =
      antialias < 1.0f ? DarkenByMask(picture, mask, 1.0f) : BlankLike(picture, picture.height(), picture.width());
  return BlendDarkened(picture, Smoothed(mask), std::move(hard), antialias);
}

}  // namespace

OutlineColor MakeOutlineColor(const Color& color) {
  const float red = color.red * 255.0f, green = color.green * 255.0f, blue = color.blue * 255.0f;
  const bool grey = red == green && green == blue;
  const OutlineColorClass colorClass = !grey         ? OutlineColorClass::Colored
                                       : red == 0.0f ? OutlineColorClass::Black
                                                     : OutlineColorClass::Grey;
  return {red, green, blue, colorClass};
}

ChannelSet CompositeOutlineMask(const ChannelSet& picture, const ChannelSet& mask, float antialias, float transparency,
                                const OutlineColor& color) {
  const auto composite = [&] {
    if (color.colorClass == OutlineColorClass::Black) return Darkened(picture, mask, antialias);
    if (antialias > 0.0f) return OverlayOutlineColor(picture, BlendSmoothed(mask, antialias), color);
    return OverlayOutlineColor(picture, mask, color);
  };
  ChannelSet result = composite();
  if (transparency > 0.0f) MixImages(picture, result, 1.0f - transparency);
  return result;
}

ChannelSet OverlayOutlineColor(const ChannelSet& picture, const ChannelSet& mask, const OutlineColor& color) {
  const float values[] = {color.red, color.green, color.blue};
  ChannelSet result = BlankLike(picture, picture.height(), picture.width());
  ForChannelRuns(result, [&](int i, std::ptrdiff_t first, std::ptrdiff_t count) {
    FadeRun(picture.planes(i).data() + first, values[i], mask.planes(0).data() + first, result.planes(i).data() + first,
            count);
  });
  return result;
}

ChannelSet DarkenByMask(const ChannelSet& picture, const ChannelSet& mask, float mix) {
  ChannelSet result = BlankLike(picture, picture.height(), picture.width());
  ForChannelRuns(result, [&](int i, std::ptrdiff_t first, std::ptrdiff_t count) {
    const Byte* const samples = picture.planes(i).data() + first;
    const Byte* const lines = mask.planes(mask.HasMode("RGB") ? i : 0).data() + first;
    Byte* const darkened = result.planes(i).data() + first;
    if (mix < 1.0f)
      DarkenRun(samples, lines, mix, darkened, count);
    else
      std::transform(samples, samples + count, lines, darkened, [](Byte a, Byte b) { return std::min(a, b); });
  });
  return result;
}

ChannelSet BlendDarkened(const ChannelSet& picture, const BytePlane& smoothMask, ChannelSet hard, float antialias) {
  ForChannelRuns(hard, [&](int i, std::ptrdiff_t first, std::ptrdiff_t count) {
    const Byte* const samples = picture.planes(i).data() + first;
    const Byte* const mask = smoothMask.data() + first;
    Byte* const result = hard.planes(i).data() + first;
    if (antialias < 1.0f)
      BlendRun(samples, mask, antialias, result, count);
    else
      MultiplyRun(samples, mask, result, count);
  });
  return hard;
}

BytePlane MultiplyPlanes(const BytePlane& a, const BytePlane& b) {
  assert(SameSize(a, b));
  BytePlane product(a.rows(), a.cols());
  ForSampleBands(a, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    MultiplyRun(a.data() + first, b.data() + first, product.data() + first, count);
  });
  return product;
}

BytePlane FadePlaneToValue(const BytePlane& plane, float value, const BytePlane& mask) {
  assert(SameSize(plane, mask));
  BytePlane faded(plane.rows(), plane.cols());
  ForSampleBands(plane, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    FadeRun(plane.data() + first, value, mask.data() + first, faded.data() + first, count);
  });
  return faded;
}

}  // namespace quentara
