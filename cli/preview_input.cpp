#include "preview_input.h"

#include <utility>

#include "scaling.h"

namespace quentara::cli {
namespace {

class PreviewInput : public media::Input {
 public:
  PreviewInput(std::unique_ptr<media::Input> input, const Downsampling& downsampling)
      : input_(std::move(input)), downsampling_(downsampling) {}

  Kind GetKind() const override { return input_->GetKind(); }
  const std::string& Path() const override { return input_->Path(); }
  media::FrameInfo Info() const override {
    media::FrameInfo info = input_->Info();
    info.width = ReducedLength(info.width, downsampling_);
    info.height = ReducedLength(info.height, downsampling_);
    return info;
  }
  std::optional<media::Frame> Next() override {
    std::optional<media::Frame> frame = input_->Next();
    if (frame) *frame = Reduced(*frame, downsampling_);
    return frame;
  }
  std::vector<std::string> Warnings() const override { return input_->Warnings(); }
  std::optional<std::vector<std::int64_t>> Numbers() const override { return input_->Numbers(); }
  std::vector<std::string> Files() const override { return input_->Files(); }
  const media::VideoProperties* Video() const override { return input_->Video(); }

 private:
  std::unique_ptr<media::Input> input_;
  Downsampling downsampling_;
};

}  // namespace

std::unique_ptr<media::Input> ReduceInput(std::unique_ptr<media::Input> input, const Downsampling& downsampling) {
  return std::make_unique<PreviewInput>(std::move(input), downsampling);
}

}  // namespace quentara::cli
