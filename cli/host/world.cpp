#include "host/world.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace quentara::cli {
namespace {

constexpr std::size_t kRowAlignment = 64;

}  // namespace

void World::Free::operator()(std::uint8_t* samples) const {
  std::free(samples);
}

World::World(int width, int height, bool deep) {
  const std::size_t packed = static_cast<std::size_t>(width) * (deep ? 8 : 4);
  const std::size_t rowBytes = (packed / kRowAlignment + 1) * kRowAlignment;
  if (rowBytes > static_cast<std::size_t>(std::numeric_limits<A_long>::max())) throw std::bad_alloc();
  samples_.reset(static_cast<std::uint8_t*>(std::aligned_alloc(kRowAlignment, rowBytes * height)));
  if (!samples_) throw std::bad_alloc();
  std::memset(samples_.get(), 0, rowBytes * height);

  layer_.world_flags = PF_WorldFlag_WRITEABLE | (deep ? PF_WorldFlag_DEEP : 0);
  layer_.data = reinterpret_cast<PF_PixelPtr>(samples_.get());
  layer_.rowbytes = static_cast<A_long>(rowBytes);
  layer_.width = width;
  layer_.height = height;
  layer_.extent_hint = {0, 0, width, height};
  layer_.pix_aspect_ratio = {1, 1};
}

World::World(const media::Frame& frame) : World(frame.width, frame.height, frame.deep) {
  for (int y = 0; y < frame.height; ++y)
    std::memcpy(samples_.get() + static_cast<std::size_t>(y) * layer_.rowbytes, frame.Bytes(y), frame.RowBytes());
}

void World::CopyTo(media::Frame& frame) const {
  for (int y = 0; y < frame.height; ++y)
    std::memcpy(frame.Bytes(y), samples_.get() + static_cast<std::size_t>(y) * layer_.rowbytes, frame.RowBytes());
}

}  // namespace quentara::cli
