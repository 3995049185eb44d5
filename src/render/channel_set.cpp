#include "render/channel_set.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "render/bands.h"

namespace quentara {

namespace ChannelCounts {

std::optional<std::uint32_t> Find(std::string_view mode) {
  static constexpr std::pair<std::string_view, std::uint32_t> kCounts[] = {{"1", 1},    {"L", 1},   {"RGB", 3},
                                                                           {"RGBA", 4}, {"HSV", 3}, {"F", 1}};
  for (const auto& [name, count] : kCounts)
    if (name == mode) return count;
  return std::nullopt;
}

}  // namespace ChannelCounts

template <class T>
BasicChannelSet<T>::BasicChannelSet(std::string_view mode, std::uint32_t width, std::uint32_t height) {
  const std::optional<std::uint32_t> count = ChannelCounts::Find(mode);
  if (!count) return;
  mode_ = mode;
  width_ = width;
  height_ = height;
  channelCount_ = *count;
  for (std::uint32_t i = 0; i < channelCount_; ++i)
    planes_[i] = std::make_unique<Plane<T>>(static_cast<int>(height), static_cast<int>(width));
}

template <class T>
BasicChannelSet<T>::BasicChannelSet(std::string_view mode, std::uint32_t width, std::uint32_t height,
                                    const Plane<T>& plane0, const Plane<T>* plane1, const Plane<T>* plane2,
                                    const Plane<T>* plane3)
    : BasicChannelSet(mode, width, height) {
  const Plane<T>* const given[kMostChannels] = {&plane0, plane1, plane2, plane3};
  for (std::uint32_t i = 0; i < channelCount_; ++i) {
    if (given[i] == nullptr) continue;
    CopySamples(*given[i], *planes_[i]);
  }
}

template <class T>
BasicChannelSet<T> BasicChannelSet<T>::Wrap(std::string_view mode, std::uint32_t width, std::uint32_t height,
                                            const std::vector<T*>& samples) {
  assert(ChannelCounts::Find(mode) == samples.size());
  BasicChannelSet set("", 0, 0);
  set.mode_ = mode;
  set.width_ = width;
  set.height_ = height;
  set.channelCount_ = static_cast<std::uint32_t>(samples.size());
  for (std::size_t i = 0; i < samples.size(); ++i)
    set.planes_[i] =
        std::make_unique<Plane<T>>(WrapRows(samples[i], static_cast<int>(height), static_cast<int>(width)));
  return set;
}

template <class T>
BasicChannelSet<T>::BasicChannelSet(const BasicChannelSet& other)
    : BasicChannelSet(other.mode_, other.width_, other.height_) {
  for (std::uint32_t i = 0; i < channelCount_; ++i) CopySamples(*other.planes_[i], *planes_[i]);
}

template <class T>
BasicChannelSet<T>& BasicChannelSet<T>::operator=(const BasicChannelSet& other) {
  if (this != &other) *this = BasicChannelSet(other);
  return *this;
}

template <class T>
BasicChannelSet<T> BasicChannelSet<T>::Share() const {
  BasicChannelSet set("", 0, 0);
  set.mode_ = mode_;
  set.width_ = width_;
  set.height_ = height_;
  set.channelCount_ = channelCount_;
  for (std::uint32_t i = 0; i < channelCount_; ++i) set.planes_[i] = std::make_unique<Plane<T>>(*planes_[i]);
  return set;
}

template <class T>
std::vector<BasicChannelSet<T>> BasicChannelSet<T>::Split() const {
  std::vector<BasicChannelSet> channels;
  channels.reserve(channelCount_);
  for (std::uint32_t i = 0; i < channelCount_; ++i)
    channels.emplace_back(mode_ == "1" ? "1" : "L", width_, height_, *planes_[i]);
  return channels;
}

template class BasicChannelSet<unsigned char>;
template class BasicChannelSet<float>;

ChannelSet BlankLike(const ChannelSet& source, std::uint32_t height, std::uint32_t width) {
  const bool kept = source.HasMode("RGB") || source.HasMode("L");
  return ChannelSet(kept ? source.mode() : "", width, height);
}

void CopyChannels(const ChannelSet& source, ChannelSet& target) {
  const bool grey = source.HasMode("L") && (target.HasMode("L") || target.HasMode("RGB"));
  if (!grey && !(source.HasMode("RGB") && target.HasMode("RGB"))) return;
  for (int i = 0; i < static_cast<int>(target.channelCount()); ++i)
    CopySamples(source.planes(grey ? 0 : i), target.planes(i));
}

void MixImages(const ChannelSet& base, ChannelSet& image, float weight) {
  const bool known = image.HasMode("RGB") || image.HasMode("L");
  if (!known || !base.HasMode(image.mode())) return;
  const float rest = 1.0f - weight;
  const auto mix = [=](unsigned char over, unsigned char sample) { return ToByte(weight * over + rest * sample); };
  ForSampleBands(image.planes(0), [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    for (int i = 0; i < static_cast<int>(image.channelCount()); ++i) {
      unsigned char* const over = image.planes(i).data() + first;
      std::transform(over, over + count, base.planes(i).data() + first, over, mix);
    }
  });
}

}  // namespace quentara
