/// Pictures as sets of separate planes, and the moves between them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "render/plane.h"

namespace quentara {

namespace ChannelCounts {
/// The number of channels of a mode: 1 for "1", "L" and "F", 3 for "RGB" and "HSV", 4 for "RGBA"; none if the mode is
/// not known. Modes compare as whole strings.
std::optional<std::uint32_t> Find(std::string_view mode);
}  // namespace ChannelCounts

/// A picture: a mode and up to four planes of one size, in the order of the mode's channels.
///
/// A set owns its planes unless `Wrap` made it, and copying one copies the samples: no two sets share a plane, but by
/// `Share`. A set of an unknown mode has no planes and no size.
template <class T>
class BasicChannelSet {
 public:
  static constexpr int kMostChannels = 4;

  /// Planes with undefined samples.
  BasicChannelSet(std::string_view mode, std::uint32_t width, std::uint32_t height);

  /// Copies of the planes given, which are height x width; planes behind the mode's channel count are not looked at.
  BasicChannelSet(std::string_view mode, std::uint32_t width, std::uint32_t height, const Plane<T>& plane0,
                  const Plane<T>* plane1 = nullptr, const Plane<T>* plane2 = nullptr, const Plane<T>* plane3 = nullptr);

  /// A set over samples that somebody else owns and that must outlive it, as `WrapRows` has planes.
  /// @param mode     a known one.
  /// @param samples  of each channel, height x width.
  static BasicChannelSet Wrap(std::string_view mode, std::uint32_t width, std::uint32_t height,
                              const std::vector<T*>& samples);

  BasicChannelSet(const BasicChannelSet& other);
  BasicChannelSet& operator=(const BasicChannelSet& other);
  BasicChannelSet(BasicChannelSet&& other) noexcept = default;
  BasicChannelSet& operator=(BasicChannelSet&& other) noexcept = default;
  ~BasicChannelSet() = default;

  std::string mode() const { return mode_; }
  bool HasMode(std::string_view mode) const { return mode_ == mode; }
  std::uint32_t width() const { return width_; }
  std::uint32_t height() const { return height_; }
  std::uint32_t pixelCount() const { return width_ * height_; }
  std::uint32_t channelCount() const { return channelCount_; }

  /// Plane `i`, 0 <= i < channelCount().
  const Plane<T>& planes(int i) const { return *planes_[static_cast<std::size_t>(i)]; }
  Plane<T>& planes(int i) { return *planes_[static_cast<std::size_t>(i)]; }

  /// A set over the same samples, which stay for as long as one of the two does. Neither is to be written to.
  BasicChannelSet Share() const;

  /// One set for each channel, of mode "L" ("1" for a "1" set), each with a copy of the channel's plane.
  std::vector<BasicChannelSet> Split() const;

 private:
  std::array<std::unique_ptr<Plane<T>>, kMostChannels> planes_;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
  std::uint32_t channelCount_ = 0;
  std::string mode_;
};

extern template class BasicChannelSet<unsigned char>;
extern template class BasicChannelSet<float>;

using ChannelSet = BasicChannelSet<unsigned char>;
/// For mode "HSV": hue in degrees 0..360, saturation 0..1, value 0..255.
using FloatChannelSet = BasicChannelSet<float>;

/// A set of the mode of `source`, "RGB" or "L", with undefined samples; an empty set for any other mode.
ChannelSet BlankLike(const ChannelSet& source, std::uint32_t height, std::uint32_t width);

/// Copies samples into the planes of `target`, which has the size of `source`: "RGB" to "RGB" and "L" to "L" plane by
/// plane, "L" to "RGB" the one plane into all three. Any other pair of modes leaves `target` as it is.
void CopyChannels(const ChannelSet& source, ChannelSet& target);

/// image = trunc(weight * image + (1 - weight) * base + 0.5) for each sample, in single precision. For two "RGB" or two
/// "L" sets of one size; any other pair of modes leaves `image` as it is.
/// @param weight  the share of `image`, 0..1.
void MixImages(const ChannelSet& base, ChannelSet& image, float weight);

/// A frame at the border of the render core: three buffers of height * width bytes, rows tightly packed.
struct FrameBuffers {
  unsigned char* red = nullptr;
  unsigned char* green = nullptr;
  unsigned char* blue = nullptr;
  std::uint32_t height = 0;
  std::uint32_t width = 0;
};

}  // namespace quentara
