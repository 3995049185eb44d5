// Built once per instruction set; the build sets KERNEL_TARGET and the flags. Plain loops that the compiler vectorises.
#include "imageops/window_kernels.h"

namespace quentara::KERNEL_TARGET {
namespace {

float Interpolated(float p00, float p01, float p10, float p11, float fx, float fy) {
  const float a = p00 + (p01 - p00) * fx;
  const float b = p10 + (p11 - p10) * fx;
  return a + (b - a) * fy;
}

// In three steps, so that only the fetching is left to scalar code.
void Sample(const SampledPlane& plane, const float* columnX, const float* columnY, float rowX, float rowY, int count,
            uint8_t* __restrict result) {
  float fx[kMostSampled], fy[kMostSampled];
  int32_t place[kMostSampled], upper[kMostSampled], lower[kMostSampled];
  const int stride = plane.stride, top = plane.top, left = plane.left;
  for (int i = 0; i < count; ++i) {
    const float atX = columnX[i] + rowX - 0.5f, atY = columnY[i] + rowY - 0.5f;
    const int x = static_cast<int>(atX), y = static_cast<int>(atY);
    fx[i] = atX - static_cast<float>(x);
    fy[i] = atY - static_cast<float>(y);
    place[i] = (y - top) * stride + (x - left);
  }
  const uint8_t* const samples = plane.samples;
  for (int i = 0; i < count; ++i) {
    const uint8_t* const pair = samples + place[i];
    upper[i] = pair[0] | pair[1] << 8;
    lower[i] = pair[stride] | pair[stride + 1] << 8;
  }
  for (int i = 0; i < count; ++i) {
    const float value =
        Interpolated(static_cast<float>(upper[i] & 255), static_cast<float>(upper[i] >> 8),
                     static_cast<float>(lower[i] & 255), static_cast<float>(lower[i] >> 8), fx[i], fy[i]);
    result[i] = static_cast<uint8_t>(static_cast<int>(value));
  }
}

}  // namespace

extern const RotationKernels kRotationKernels;
const RotationKernels kRotationKernels = {Sample};

}  // namespace quentara::KERNEL_TARGET
