#include "media/still_input.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numeric>

#include "media/frame_origin.h"
#include "media/still.h"

namespace quentara::media {
namespace {

std::vector<std::uint8_t> ReadBytes(const std::string& path, std::size_t most) {
  const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
  std::vector<std::uint8_t> content;
  while (file && content.size() < most) {
    constexpr std::size_t kChunk = 1 << 20;
    const std::size_t wanted = std::min(kChunk, most - content.size()), start = content.size();
    content.resize(start + wanted);
    const std::size_t count = std::fread(content.data() + start, 1, wanted, file.get());
    content.resize(start + count);
    if (count < wanted) break;
  }
  if (!file || std::ferror(file.get())) throw InputError(path + ": " + std::strerror(errno));
  return content;
}

Frame ReadFrame(const std::string& path, std::int64_t number) {
  const std::vector<std::uint8_t> content = ReadBytes(path, SIZE_MAX);
  const std::optional<StillFormat> format = StillFormatOf(content);
  if (!format) throw InputError(path + ": not a PNG, JPEG, TIFF or PPM picture");
  try {
    Frame frame = ToFrame(DecodeStill(*format, content));
    frame.number = number;
    return frame;
  } catch (const std::runtime_error& error) {
    throw InputError(path + ": " + error.what());
  }
}

Rational AspectOf(const Resolution& density) {
  const std::int64_t x = std::llround(density.x), y = std::llround(density.y);
  if (x < 1 || y < 1) return {1, 1};
  const std::int64_t common = std::gcd(x, y);
  return {y / common, x / common};
}

class StillInput final : public Input {
 public:
  StillInput(Kind kind, std::string path, std::vector<std::int64_t> numbers, std::vector<std::string> files,
             std::vector<std::string> warnings)
      : kind_(kind),
        path_(std::move(path)),
        numbers_(std::move(numbers)),
        files_(std::move(files)),
        warnings_(std::move(warnings)),
        first_(ReadFrame(files_[0], numbers_[0])) {
    info_ = {first_->width,
             first_->height,
             first_->deep,
             static_cast<std::int64_t>(numbers_.size()),
             kDefaultFrameRate,
             AspectOf(first_->origin->resolution),
             first_->origin->hasAlpha};
  }

  Kind GetKind() const override { return kind_; }
  const std::string& Path() const override { return path_; }
  FrameInfo Info() const override { return info_; }
  std::vector<std::string> Warnings() const override { return warnings_; }
  std::optional<std::vector<std::int64_t>> Numbers() const override { return numbers_; }
  std::vector<std::string> Files() const override { return files_; }

  std::optional<Frame> Next() override {
    if (next_ == numbers_.size()) return std::nullopt;
    const std::size_t index = next_++;
    if (index > 0) return ReadFrame(files_[index], numbers_[index]);
    std::optional<Frame> first = std::move(first_);
    first_.reset();
    return first;
  }

 private:
  Kind kind_;
  std::string path_;
  std::vector<std::int64_t> numbers_;
  std::vector<std::string> files_;
  std::vector<std::string> warnings_;
  std::optional<Frame> first_;  // read on opening, for its size
  FrameInfo info_;
  std::size_t next_ = 0;
};

constexpr std::size_t kMostListed = 100'000;

/// What a rising list leaves out between its first and last number.
std::vector<std::int64_t> Gaps(const std::vector<std::int64_t>& numbers) {
  std::vector<std::int64_t> gaps;
  for (std::size_t i = 1; i < numbers.size(); ++i)
    for (std::int64_t number = numbers[i - 1] + 1; number < numbers[i] && gaps.size() < kMostListed; ++number)
      gaps.push_back(number);
  return gaps;
}

}  // namespace

bool IsStillFile(const std::string& path) {
  constexpr std::size_t kMagicBytes = 8;
  return StillFormatOf(ReadBytes(path, kMagicBytes)).has_value();
}

std::unique_ptr<Input> OpenStill(const std::string& path) {
  return std::make_unique<StillInput>(Input::Kind::Still, path, std::vector<std::int64_t>{1},
                                      std::vector<std::string>{path}, std::vector<std::string>{});
}

std::unique_ptr<Input> OpenSequence(const std::string& path, const SequencePattern& pattern,
                                    const std::optional<FrameRange>& range) {
  std::vector<std::int64_t> numbers = pattern.NumbersInFolder();
  if (numbers.empty()) throw InputError(path + ": there are no such files");
  std::vector<std::string> warnings;
  if (range) {
    std::vector<std::int64_t> wanted, missing;
    for (auto number = range->From(0); number && missing.size() < kMostListed; number = range->From(*number + 1))
      (std::binary_search(numbers.begin(), numbers.end(), *number) ? wanted : missing).push_back(*number);
    if (!missing.empty()) throw InputError(path + ": frames are missing: " + DescribeNumbers(missing));
    numbers = std::move(wanted);
  } else if (const std::vector<std::int64_t> gaps = Gaps(numbers); !gaps.empty()) {
    warnings.push_back(path + ": the sequence has gaps: " + DescribeNumbers(gaps));
  }
  std::vector<std::string> files;
  for (const std::int64_t number : numbers) files.push_back(pattern.Name(number));
  return std::make_unique<StillInput>(Input::Kind::Sequence, path, std::move(numbers), std::move(files),
                                      std::move(warnings));
}

}  // namespace quentara::media
