#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string>

#include "media/still_codecs.h"

namespace quentara::media {
namespace {

/// Walks the header: numbers between white space and comments.
class HeaderReader {
 public:
  explicit HeaderReader(const std::vector<std::uint8_t>& content) : content_(content) {}

  int Number() {
    while (at_ < content_.size() && (std::isspace(content_[at_]) || content_[at_] == '#')) {
      if (content_[at_] == '#')
        while (at_ < content_.size() && content_[at_] != '\n') ++at_;
      else
        ++at_;
    }
    int value = 0;
    const std::size_t first = at_;
    for (; at_ < content_.size() && std::isdigit(content_[at_]) && at_ - first < 9; ++at_)
      value = value * 10 + (content_[at_] - '0');
    if (at_ == first) throw std::runtime_error("the PPM header is damaged");
    return value;
  }

  /// The first byte of the samples, after exactly one white space.
  std::size_t Body() const { return at_ + 1; }

 private:
  const std::vector<std::uint8_t>& content_;
  std::size_t at_ = 2;
};

}  // namespace

Still DecodePpm(const std::vector<std::uint8_t>& content) {
  const char kind = static_cast<char>(content[1]);
  if (kind != '5' && kind != '6') throw std::runtime_error("of the Netpbm formats only P5 and P6 are read");
  HeaderReader header(content);
  Still still;
  still.width = header.Number();
  still.height = header.Number();
  const std::uint32_t most = header.Number();
  if (most < 1 || most > 65535) throw std::runtime_error("the PPM header is damaged");
  still.deep = most > 255;
  still.Allocate();

  const std::size_t sampleBytes = still.deep ? 2 : 1, fileChannels = kind == '6' ? 3 : 1;
  const std::size_t pixels = static_cast<std::size_t>(still.width) * still.height;
  if (content.size() < header.Body() + pixels * fileChannels * sampleBytes)
    throw std::runtime_error("the file is cut short");
  const std::uint8_t* in = content.data() + header.Body();
  auto* deepOut = reinterpret_cast<std::uint16_t*>(still.samples.data());
  for (std::size_t i = 0; i < pixels * 3; ++i) {
    const std::uint8_t* sample = in + (fileChannels == 3 ? i : i / 3) * sampleBytes;
    const std::uint32_t value = std::min<std::uint32_t>(still.deep ? sample[0] << 8 | sample[1] : sample[0], most);
    const std::uint32_t white = still.deep ? 65535 : 255, scaled = (value * white + most / 2) / most;
    if (still.deep)
      deepOut[i] = static_cast<std::uint16_t>(scaled);
    else
      still.samples[i] = static_cast<std::uint8_t>(scaled);
  }
  return still;
}

std::vector<std::uint8_t> EncodePpm(const Still& still) {
  const std::string header = "P6\n" + std::to_string(still.width) + " " + std::to_string(still.height) + "\n" +
                             (still.deep ? "65535" : "255") + "\n";
  std::vector<std::uint8_t> content(header.begin(), header.end());
  content.insert(content.end(), still.samples.begin(), still.samples.end());
  if (still.deep) {
    const auto* samples = reinterpret_cast<const std::uint16_t*>(still.samples.data());
    std::uint8_t* out = content.data() + header.size();
    for (std::size_t i = 0; i < still.samples.size() / 2; ++i) {
      out[2 * i] = static_cast<std::uint8_t>(samples[i] >> 8);
      out[2 * i + 1] = static_cast<std::uint8_t>(samples[i]);
    }
  }
  return content;
}

}  // namespace quentara::media
