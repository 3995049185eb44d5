#include "media/still_output.h"

#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "media/sequence_pattern.h"
#include "media/temporary_file.h"
#include "media/video_properties.h"

namespace quentara::media {
namespace {

using FileIdentity = std::pair<dev_t, ino_t>;

/// What tells a file from all others, whatever names and links lead to it.
std::optional<FileIdentity> IdentityOf(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

class StillOutput final : public Output {
 public:
  StillOutput(std::string path, StillFormat format, const Input& input, bool overwrite)
      : path_(std::move(path)), pattern_(SequencePattern::Parse(path_)), format_(format), overwrite_(overwrite) {
    const std::optional<std::vector<std::int64_t>> numbers = input.Numbers();
    if (!pattern_ && (!numbers || numbers->size() != 1))
      throw OutputError(path_ + ": is one picture but the input has several frames; number them, as in frame.%04d.png");
    // Frames whose numbers only reading will tell could have any number.
    std::vector<std::string> names;
    for (const std::int64_t number : numbers ? *numbers : pattern_->NumbersInFolder()) names.push_back(Name(number));
    RefuseExisting(names, input, overwrite);
    const TemporaryFile probe(Name(0));
    if (!input.Video()) return;
    turn_ = std::max(input.Video()->orientation, 1);
    Rational aspect = input.Info().pixelAspect;
    if (SwapsSides(turn_)) std::swap(aspect.numerator, aspect.denominator);
    // Square pixels need no saying.
    if (aspect.numerator != aspect.denominator)
      density_ = {static_cast<double>(aspect.denominator), static_cast<double>(aspect.numerator), false};
  }

  void Write(const Frame& frame) override {
    if (!pattern_ && count_ > 0) throw OutputError(path_ + ": is one picture and already has its frame");
    TemporaryFile file(Name(frame.number));
    file.Fill(Encode(frame));
    file.Commit(overwrite_);
    ++count_;
  }

  void Finish() override {
    if (count_ == 0) throw OutputError(path_ + ": there is no frame to write");
  }

 private:
  std::string Name(std::int64_t number) const { return pattern_ ? pattern_->Name(number) : path_; }

  std::vector<std::uint8_t> Encode(const Frame& frame) const try {
    Still still = ToStill(turn_ == 1 ? frame : TurnUpright(frame, turn_), format_);
    if (density_) still.resolution = *density_;
    return EncodeStill(format_, still);
  } catch (const std::runtime_error& error) {
    throw OutputError(Name(frame.number) + ": " + error.what());
  }

  std::string path_;
  std::optional<SequencePattern> pattern_;
  StillFormat format_;
  bool overwrite_;
  Orientation turn_ = 1;  // a picture has no display matrix
  std::optional<Resolution> density_;
  std::int64_t count_ = 0;
};

}  // namespace

std::unique_ptr<Output> OpenStillOutput(const std::string& path, StillFormat format, const Input& input,
                                        bool overwrite) {
  return std::make_unique<StillOutput>(path, format, input, overwrite);
}

void RefuseExisting(const std::vector<std::string>& paths, const Input& input, bool overwrite) {
  std::set<FileIdentity> inputs;
  for (const std::string& file : input.Files())
    if (const auto identity = IdentityOf(file)) inputs.insert(*identity);
  for (const std::string& path : paths) {
    struct stat status;
    if (lstat(path.c_str(), &status) != 0) continue;
    if (const auto identity = IdentityOf(path); identity && inputs.count(*identity) > 0)
      throw OutputError(path + ": is the input itself");
    if (S_ISDIR(status.st_mode)) throw OutputError(path + ": is a folder");
    if (!overwrite) throw OutputError(path + ": exists already");
  }
}

}  // namespace quentara::media
