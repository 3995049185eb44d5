#include "host/effect.h"

#include <algorithm>
#include <limits>

#include "errors.h"
#include "host/world.h"

namespace quentara::cli {
namespace {

std::vector<PF_ParamDef*> PointersTo(std::vector<PF_ParamDef>& records) {
  std::vector<PF_ParamDef*> pointers(records.size());
  std::transform(records.begin(), records.end(), pointers.begin(), [](PF_ParamDef& record) { return &record; });
  return pointers;
}

A_long Saturated(std::int64_t number) {
  return static_cast<A_long>(std::min<std::int64_t>(number, std::numeric_limits<A_long>::max()));
}

/// Reads what PF_VERSION packs.
std::string VersionText(A_u_long packed) {
  return std::to_string(packed >> 19 & 127) + "." + std::to_string(packed >> 15 & 15) + "." +
         std::to_string(packed >> 11 & 15);
}

/// The bands of a frame. They follow from its height alone: some outlines show where one begins, and a frame is to look
/// the same on every machine. Enough for the threads of a large one to share, few enough for their overlaps to cost
/// little.
int BandsOf(int height) {
  return std::clamp(height / 128, 2, 32);
}

/// Sends a command on the way out, where an error has nobody left to hear it.
void SendLast(HostContext& context, EffectEntry entry, PF_Cmd command) noexcept {
  try {
    context.Send(entry, command);
  } catch (...) {
  }
}

}  // namespace

Effect::Effect(const std::string& libraryPath, const HostIdentity& identity)
    : identity_(identity),
      library_(libraryPath),
      context_(identity, 1, Watch{[] { return false; }, [](int, int) {}, [this](const auto& text) { note_ = text; }}),
      table_(DefineParameters()) {}

ParameterTable Effect::DefineParameters() {
  version_ = VersionText(context_.Send(library_.Entry(), PF_Cmd_GLOBAL_SETUP).my_version);
  try {
    context_.definitions = &definitions_;
    const PF_OutData out = context_.Send(library_.Entry(), PF_Cmd_PARAMS_SETUP);
    context_.definitions = nullptr;
    if (out.num_params != static_cast<A_long>(definitions_.size()) + 1)
      throw EffectError("the effect defined " + std::to_string(definitions_.size()) +
                        " parameters but says that it has " + std::to_string(out.num_params - 1));
  } catch (...) {
    SendLast(context_, library_.Entry(), PF_Cmd_GLOBAL_SETDOWN);
    throw;
  }
  context_.In().num_params = static_cast<A_long>(definitions_.size()) + 1;
  return ParameterTable(DescribeDefinitions(definitions_));
}

Effect::~Effect() {
  SendLast(context_, library_.Entry(), PF_Cmd_GLOBAL_SETDOWN);
}

std::string Effect::About() {
  note_.clear();
  context_.Send(library_.Entry(), PF_Cmd_ABOUT);
  return note_;
}

std::vector<bool> Effect::GreyedRows(const ParameterValues& values) {
  std::vector<PF_ParamDef> records = MakeRecords(definitions_, values);
  context_.greyed.assign(records.size(), false);
  context_.Send(library_.Entry(), PF_Cmd_UPDATE_PARAMS_UI, PointersTo(records).data());
  return {context_.greyed.begin() + 1, context_.greyed.end()};
}

EffectInstance::EffectInstance(Effect& effect, int threads, Watch watch, Downsampling downsampling)
    : effect_(effect), context_(effect.identity_, threads, std::move(watch)), downsampling_(downsampling) {
  PF_InData& in = context_.In();
  in.num_params = effect.context_.In().num_params;
  in.global_data = effect.context_.In().global_data;
  in.downsample_x = {downsampling.numerator, static_cast<A_u_long>(downsampling.denominator)};
  in.downsample_y = in.downsample_x;
  context_.Send(effect_.library_.Entry(), PF_Cmd_SEQUENCE_SETUP);
}

EffectInstance::~EffectInstance() {
  SendLast(context_, effect_.library_.Entry(), PF_Cmd_SEQUENCE_SETDOWN);
}

media::Frame EffectInstance::Render(const media::Frame& frame, const FrameTime& time, const ParameterValues& values) {
  Describe(frame, time);
  World input(frame);
  World output(frame.width, frame.height, frame.deep);
  std::vector<PF_ParamDef> records = MakeRecords(effect_.definitions_, values);
  records.front().u.ld = input.Layer();
  SendFrame(PointersTo(records).data(), output.Layer());
  media::Frame rendered = media::BlankLike(frame);
  output.CopyTo(rendered);
  return rendered;
}

void EffectInstance::Describe(const media::Frame& frame, const FrameTime& time) {
  context_.bands = BandsOf(frame.height);
  PF_InData& in = context_.In();
  // The interface tells the size of the layer as it is without downsampling.
  in.width = Saturated(std::int64_t{frame.width} * downsampling_.denominator / downsampling_.numerator);
  in.height = Saturated(std::int64_t{frame.height} * downsampling_.denominator / downsampling_.numerator);
  in.extent_hint = {0, 0, frame.width, frame.height};
  in.time_scale = static_cast<A_u_long>(Saturated(time.rateNumerator));
  in.time_step = in.local_time_step = Saturated(time.rateDenominator);
  in.current_time = Saturated(time.index * time.rateDenominator);
  in.total_time = Saturated(time.total * time.rateDenominator);
}

void EffectInstance::SendFrame(PF_ParamDef* parameters[], PF_LayerDef& output) {
  const EffectEntry entry = effect_.library_.Entry();
  try {
    const PF_OutData setup = context_.Send(entry, PF_Cmd_FRAME_SETUP, parameters, &output);
    const bool resized =
        (setup.width != 0 && setup.width != output.width) || (setup.height != 0 && setup.height != output.height);
    if (resized) throw EffectError("the effect asks for a frame of another size, which this host does not offer");
    context_.Send(entry, PF_Cmd_RENDER, parameters, &output);
  } catch (...) {
    SendLast(context_, entry, PF_Cmd_FRAME_SETDOWN);
    throw;
  }
  context_.Send(entry, PF_Cmd_FRAME_SETDOWN, parameters, &output);
}

}  // namespace quentara::cli
