// Built once per instruction set; the build sets KERNEL_TARGET and the flags.
#include "imageops/byte_lanes.h"
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

BYTE_LANES_INLINE float Larger(float a, float b) {
  return a < b ? b : a;
}
BYTE_LANES_INLINE float Smaller(float a, float b) {
  return b < a ? b : a;
}
BYTE_LANES_INLINE int Rounded(float value) {
  return static_cast<int>(value + 0.5f);
}

void Luma(const float* weights, const RgbRun& in, uint8_t* __restrict luma, ptrdiff_t count) {
  const float red = weights[0], green = weights[1], blue = weights[2];
  const RgbRun run = in;
  for (ptrdiff_t i = 0; i < count; ++i)
    luma[i] = static_cast<uint8_t>(Rounded(red * run.red[i] + green * run.green[i] + blue * run.blue[i]));
}

void MapBytes(const uint8_t* map, const uint8_t* samples, uint8_t* mapped, ptrdiff_t count) {
  ptrdiff_t i = 0;
#ifdef __AVX512VBMI__
  const Bytes a = LoadBytes(map), b = LoadBytes(map + 64), c = LoadBytes(map + 128), d = LoadBytes(map + 192);
  for (; i + kByteLanes <= count; i += kByteLanes) {
    const __m512i sample = LoadBytes(samples + i).v;
    const __m512i lower = _mm512_permutex2var_epi8(a.v, sample, b.v),
                  upper = _mm512_permutex2var_epi8(c.v, sample, d.v);
    StoreBytes({_mm512_mask_blend_epi8(_mm512_movepi8_mask(sample), lower, upper)}, mapped + i);
  }
#endif
  for (; i < count; ++i) mapped[i] = map[samples[i]];
}

// With red the largest channel, `lead` is its distance to the middle one and `reach` that of the middle one to the
// least. All conditions are looked at, so that the loop has no branch, and 16 bits hold every number.
void MarkSkin(const RgbRun& in, uint8_t* __restrict marks, ptrdiff_t count) {
  const RgbRun run = in;
  const auto narrow = [](int number) { return static_cast<int16_t>(number); };
  for (ptrdiff_t i = 0; i < count; ++i) {
    const int16_t red = run.red[i], green = run.green[i], blue = run.blue[i];
    const int16_t middle = green < blue ? blue : green, least = green < blue ? green : blue;
    const int16_t lead = narrow(red - middle), reach = narrow(middle - least);
    const auto reaches = [&](int times) { return narrow(narrow(times * lead) >= reach); };
    const int16_t fourReds = narrow(4 * red), nineMiddles = narrow(9 * middle), blueness = narrow(blue - green);
    const int16_t bright = narrow((red >= 100) & (fourReds < nineMiddles) & (blueness <= 50));
    const int16_t coloured = narrow((lead > 0) & (lead < 101) & ((lead >= 11) | (reach >= 11)));
    const int16_t paleRed = narrow((red > 190) & (lead > 5));
    const int16_t orange = narrow(reaches(5) | (~paleRed & reaches(10)));
    const int16_t hue = narrow(((green >= blue) & orange) | ((green < blue) & reaches(2)));
    marks[i] = static_cast<uint8_t>(bright & coloured & hue);
  }
}

// The third of the circle is chosen before the division, so that the loop has no branch and one quotient for the hue.
void ToHsv(const uint8_t* red, const uint8_t* green, const uint8_t* blue, float* __restrict hue,
           float* __restrict saturation, float* __restrict value, ptrdiff_t count) {
  for (ptrdiff_t i = 0; i < count; ++i) {
    const float r = red[i], g = green[i], b = blue[i];
    const float most = Larger(Larger(r, g), b), least = Smaller(Smaller(r, g), b);
    const bool grey = most == least;
    const float delta = grey ? 1.0f : (most - least) / 255.0f;
    const float third = r == most ? 0.0f : g == most ? 2.0f : 4.0f;
    const float lead = r == most ? g - b : g == most ? b - r : r - g;
    const float degrees = (third + lead / 255.0f / delta) * 60.0f;
    hue[i] = grey ? 0.0f : degrees < 0.0f ? degrees + 360.0f : degrees;
    saturation[i] = grey ? 0.0f : (most - least) / most;
    value[i] = most;
  }
}

// By masks: nested choices keep a loop out of vector lanes.
BYTE_LANES_INLINE uint8_t Choose(bool isMiddle, bool isLargest, int middle, int largest, int least) {
  const int middleMask = -static_cast<int>(isMiddle), largestMask = -static_cast<int>(isLargest);
  return static_cast<uint8_t>((middle & middleMask) | (largest & largestMask) | (least & ~(middleMask | largestMask)));
}

// In each sextant one channel is the largest, one the least, and the middle one rises (even sextants) or falls (odd).
// The middle one recurs every three sextants, the largest one is that of two neighbours. A hue of 360 falls into
// sextant 6, which is sextant 0. Without saturation all three are the value itself, as the factor of the saturation is
// then 1. No choice between floats: compilers make branches of them here.
void FromHsv(const float* hue, const float* saturation, const float* value, uint8_t* __restrict red,
             uint8_t* __restrict green, uint8_t* __restrict blue, ptrdiff_t count) {
  for (ptrdiff_t i = 0; i < count; ++i) {
    const float s = saturation[i], v = value[i];
    const float sixths = hue[i] / 60.0f;
    const int sextant = static_cast<int>(sixths);
    const float f = sixths - static_cast<float>(sextant);
    const float share = __builtin_fabsf(static_cast<float>(1 - (sextant & 1)) - f);  // 1 - f or f
    const int largest = Rounded(v), least = Rounded(v * (1.0f - s)), middle = Rounded(v * (1.0f - s * share));
    const int third = sextant - 3 * (11 * sextant >> 5), pair = (sextant + 1) >> 1;  // modulo 3, 0 to 3
    red[i] = Choose(third == 1, (pair & 1) == (pair >> 1), middle, largest, least);
    green[i] = Choose(third == 0, pair == 1, middle, largest, least);
    blue[i] = Choose(third == 2, pair == 2, middle, largest, least);
  }
}

bool ScreenPlaces(const ScreenRow& row, int first, uint16_t* __restrict places, uint32_t* __restrict unsure,
                  int count) {
  const ScreenRow r = row;
  const uint64_t cell = r.cell;
  const uint32_t edge = r.edge, edges = 2 * edge;
  uint32_t anyUnsure = 0;
  for (int i = 0; i < count; ++i) {
    const uint32_t x = static_cast<uint32_t>(first + i);
    // The upper half of a phase times the cell is the place, the lower half how far the pixel lies into it.
    const uint64_t u = (r.firstU + x * r.stepU) * cell, v = (r.firstV + x * r.stepV) * cell;
    unsure[i] = static_cast<uint32_t>(static_cast<uint32_t>(u) + edge <= edges) |
                static_cast<uint32_t>(static_cast<uint32_t>(v) + edge <= edges);
    anyUnsure |= unsure[i];
    places[i] = static_cast<uint16_t>((v >> 32) * cell + (u >> 32));
  }
  return anyUnsure != 0;
}

}  // namespace

extern const PixelKernels kPixelKernels;
const PixelKernels kPixelKernels = {Luma, MapBytes, MarkSkin, ToHsv, FromHsv, ScreenPlaces};

}  // namespace quentara::KERNEL_TARGET
