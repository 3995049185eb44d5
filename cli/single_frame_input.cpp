#include "single_frame_input.h"

#include <algorithm>
#include <utility>

#include "media/orientation.h"
#include "media/video_properties.h"

namespace quentara::cli {
namespace {

class SingleFrameInput : public media::Input {
 public:
  SingleFrameInput(media::Input& input, media::Frame frame)
      : path_(input.Path()), files_(input.Files()), info_(input.Info()), number_(frame.number) {
    const media::Orientation turn = input.Video() ? std::max(input.Video()->orientation, 1) : 1;
    if (media::SwapsSides(turn)) std::swap(info_.pixelAspect.numerator, info_.pixelAspect.denominator);
    frame_ = turn == 1 ? std::move(frame) : media::TurnUpright(frame, turn);
    info_.width = frame_->width;
    info_.height = frame_->height;
    info_.frameCount = 1;
  }

  Kind GetKind() const override { return Kind::Still; }
  const std::string& Path() const override { return path_; }
  media::FrameInfo Info() const override { return info_; }
  std::optional<media::Frame> Next() override { return std::exchange(frame_, std::nullopt); }
  std::optional<std::vector<std::int64_t>> Numbers() const override { return {{number_}}; }
  std::vector<std::string> Files() const override { return files_; }

 private:
  std::string path_;
  std::vector<std::string> files_;
  media::FrameInfo info_;
  std::int64_t number_;
  std::optional<media::Frame> frame_;
};

}  // namespace

std::unique_ptr<media::Input> OpenSingleFrame(const std::string& path, const std::optional<std::int64_t>& number) {
  std::optional<media::FrameRange> range;
  if (number) range = media::FrameRange({{*number, *number, 1}});
  const std::unique_ptr<media::Input> input = media::OpenInput(path, range);
  std::optional<media::Frame> frame = input->Next();
  if (!frame) throw media::InputError(path + ": has no frame");
  return std::make_unique<SingleFrameInput>(*input, std::move(*frame));
}

}  // namespace quentara::cli
