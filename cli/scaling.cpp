#include "scaling.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <vector>

extern "C" {
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

namespace quentara::cli {
namespace {

using Plane = std::vector<std::uint16_t>;

constexpr std::uint32_t kFull = 65535;

std::uint32_t White(const media::Frame& frame) {
  return frame.deep ? media::kDeepWhite : 255;
}

/// A, R, G, B on the scale of 0 to kFull, the colours times alpha.
std::array<Plane, 4> Premultiplied(const media::Frame& frame) {
  const std::uint32_t white = White(frame);
  const std::size_t size = static_cast<std::size_t>(frame.width) * frame.height;
  std::array<Plane, 4> planes{Plane(size), Plane(size), Plane(size), Plane(size)};
  std::size_t at = 0;
  for (int y = 0; y < frame.height; ++y)
    for (int x = 0; x < frame.width; ++x, ++at) {
      const auto sample = [&](int c) -> std::uint64_t {
        return frame.deep ? frame.Deep(y)[4 * x + c] : frame.Bytes(y)[4 * x + c];
      };
      const std::uint64_t alpha = std::min<std::uint64_t>(sample(0), white);
      planes[0][at] = static_cast<std::uint16_t>((alpha * kFull + white / 2) / white);
      for (int c = 1; c < 4; ++c) {
        const std::uint64_t product = std::min<std::uint64_t>(sample(c), white) * alpha * kFull;
        planes[c][at] = static_cast<std::uint16_t>((product + white * white / 2) / (std::uint64_t{white} * white));
      }
    }
  return planes;
}

void StoreStraight(const std::array<Plane, 4>& planes, media::Frame& frame) {
  const std::uint64_t white = White(frame);
  std::size_t at = 0;
  for (int y = 0; y < frame.height; ++y)
    for (int x = 0; x < frame.width; ++x, ++at)
      for (int c = 0; c < 4; ++c) {
        const std::uint64_t whole = c == 0 ? kFull : std::max<std::uint64_t>(planes[0][at], 1);
        const std::uint64_t sample = std::min(white, (planes[c][at] * white + whole / 2) / whole);
        if (frame.deep)
          frame.Deep(y)[4 * x + c] = static_cast<std::uint16_t>(sample);
        else
          frame.Bytes(y)[4 * x + c] = static_cast<std::uint8_t>(sample);
      }
}

/// Scales planes of one size. Each goes by itself as grey, so no colour conversion takes part.
class PlaneScaler {
 public:
  PlaneScaler(int width, int height, int newWidth, int newHeight)
      : width_(width), height_(height), newWidth_(newWidth), newHeight_(newHeight) {
    scaler_.reset(sws_getContext(width, height, AV_PIX_FMT_GRAY16, newWidth, newHeight, AV_PIX_FMT_GRAY16,
                                 SWS_AREA | SWS_ACCURATE_RND | SWS_BITEXACT, nullptr, nullptr, nullptr));
    if (!scaler_) throw std::bad_alloc();
  }

  Plane operator()(const Plane& plane) const {
    // The library's vector code may read and write a little beyond the end of a row.
    constexpr std::size_t kSlack = 64;
    Plane source(plane);
    source.resize(plane.size() + kSlack);
    Plane scaled(static_cast<std::size_t>(newWidth_) * newHeight_ + kSlack);
    const std::uint8_t* const from[] = {reinterpret_cast<const std::uint8_t*>(source.data())};
    std::uint8_t* const to[] = {reinterpret_cast<std::uint8_t*>(scaled.data())};
    const int fromStride[] = {2 * width_};
    const int toStride[] = {2 * newWidth_};
    sws_scale(scaler_.get(), from, fromStride, 0, height_, to, toStride);
    return scaled;
  }

 private:
  struct Free {
    void operator()(SwsContext* context) const { sws_freeContext(context); }
  };

  int width_, height_, newWidth_, newHeight_;
  std::unique_ptr<SwsContext, Free> scaler_;
};

}  // namespace

int ReducedLength(int length, const Downsampling& by) {
  return static_cast<int>((std::int64_t{length} * by.numerator + by.denominator - 1) / by.denominator);
}

media::Frame Reduced(const media::Frame& frame, const Downsampling& downsampling) {
  return Resized(frame, ReducedLength(frame.width, downsampling), ReducedLength(frame.height, downsampling));
}

media::Frame Resized(const media::Frame& frame, int width, int height) {
  media::Frame resized = media::BlankFrame(width, height, frame.deep);
  resized.number = frame.number;
  resized.origin = frame.origin;
  std::array<Plane, 4> planes = Premultiplied(frame);
  const PlaneScaler scale(frame.width, frame.height, width, height);
  for (Plane& plane : planes) plane = scale(plane);
  StoreStraight(planes, resized);
  return resized;
}

}  // namespace quentara::cli
