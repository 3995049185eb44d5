extern "C" {
#include <libavutil/parseutils.h>
}

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "commands/commands.h"
#include "commands/options.h"
#include "errors.h"
#include "frame_pipeline.h"
#include "interruption.h"
#include "media/input.h"
#include "media/output.h"
#include "media/sequence_pattern.h"
#include "presets/animation.h"
#include "preview_input.h"
#include "progress.h"

namespace quentara::cli {
namespace {

struct RenderOptions {
  EffectOptions effect;
  RunOptions run;
  PresetSaving preset;
  std::string input;
  std::string output;
  std::string frames;
  std::string downsample;
  std::string preview;
  std::string frameRate;
  std::string animation;
  bool noAudio = false;
  std::optional<int> jobs;
};

std::optional<media::FrameRange> Range(const std::string& frames) {
  if (frames.empty()) return std::nullopt;
  try {
    return media::ParseFrameRange(frames);
  } catch (const std::invalid_argument& error) {
    throw UsageError(error.what());
  }
}

FrameTime TimeOf(const media::FrameInfo& info, std::int64_t index) {
  return {index, info.frameCount.value_or(index + 1), info.frameRate.numerator, info.frameRate.denominator};
}

/// What the frames that the effect gets are reduced to.
Downsampling DownsamplingOf(const RenderOptions& options) {
  if (!options.preview.empty()) return ParseDownsampling("--preview", options.preview);
  if (!options.downsample.empty()) return ParseDownsampling("--downsample", options.downsample);
  return {};
}

media::Rational FrameRateOf(const std::string& text) {
  AVRational rate;
  if (av_parse_video_rate(&rate, text.c_str()) < 0)
    throw UsageError("--fps takes frames per second such as 25, 23.976 or 24000/1001, not \"" + text + "\"");
  return {rate.num, rate.den};
}

/// The values of each frame of a clip; asked by several threads at the same time.
using FrameValues = std::function<ParameterValues(const media::Frame&)>;

/// The number of the clip's first frame, which stands at 0 seconds whichever frames are rendered.
std::int64_t FirstNumber(const media::Input& input) {
  if (input.GetKind() != media::Input::Kind::Sequence) return 1;
  return media::SequencePattern::Parse(input.Path())->NumbersInFolder().at(0);
}

/// @param rate  of a clip made from pictures.
FrameValues ValuesOver(const media::Input& input, const media::Rational& rate, const Animation& animation,
                       const ParameterValues& values) {
  const media::Rational frameRate = input.Video() ? input.Info().frameRate : rate;
  return [=, first = FirstNumber(input)](const media::Frame& frame) {
    // One rounding, so that a key at 2.5 seconds is met by the frame that stands there.
    const auto ticks = static_cast<double>((frame.number - first) * frameRate.denominator);
    return animation.At(frame.number, ticks / static_cast<double>(frameRate.numerator), values);
  };
}

struct WorkerSplit {
  int jobs;     ///< frames rendered at once
  int workers;  ///< for each of them
};

/// As many frames at once as there are workers, as nothing then waits for the slowest worker of a frame; fewer in a
/// shorter clip, or where so many frames would take more than half of the machine's memory.
WorkerSplit SplitWorkers(const RenderOptions& options, const media::FrameInfo& info) {
  const int threads = options.run.threads;
  const std::int64_t frames = std::max<std::int64_t>(info.frameCount.value_or(std::numeric_limits<int>::max()), 1);
  if (options.jobs) {
    const int jobs = static_cast<int>(std::min<std::int64_t>(*options.jobs, frames));
    return {jobs, std::max(threads / jobs, 1)};
  }
  constexpr std::int64_t kBytesPerPixel = 80;  // of a frame on its way, in 16 bits with several stages on
  const std::int64_t memory = std::int64_t{sysconf(_SC_PHYS_PAGES)} * sysconf(_SC_PAGE_SIZE);
  const std::int64_t fitting = memory / 2 / (std::int64_t{info.width} * info.height * kBytesPerPixel);
  const std::int64_t most = std::clamp<std::int64_t>(std::min(fitting, frames), 1, threads);
  const int jobs = threads / static_cast<int>((threads + most - 1) / most);
  return {jobs, threads / jobs};
}

void RenderFrames(const RenderOptions& options, Effect& effect, const FrameValues& valuesOf, media::Input& input,
                  media::Output& output, ProgressReport& progress) {
  const media::FrameInfo info = input.Info();
  const auto [jobs, workers] = SplitWorkers(options, info);
  std::atomic<bool> stopping{false};
  Watch watch = WatchWith(progress);
  watch.cancelled = [&] { return stopping || InterruptingSignal() != 0; };
  // How far one frame among several is tells nothing of the whole.
  if (jobs > 1) watch.progress = [](int, int) {};
  std::vector<std::unique_ptr<EffectInstance>> instances;
  for (int job = 0; job < jobs; ++job)
    instances.push_back(std::make_unique<EffectInstance>(effect, workers, watch, DownsamplingOf(options)));

  const auto read = [&] {
    CheckInterruption();
    return input.Next();
  };
  const auto render = [&](int job, std::int64_t index, const media::Frame& frame) {
    return instances[static_cast<std::size_t>(job)]->Render(frame, TimeOf(info, index), valuesOf(frame));
  };
  FramePipeline frames(jobs, read, render, stopping);
  while (const std::optional<media::Frame> frame = frames.Next()) {
    CheckInterruption();
    output.Write(*frame);
    progress.FrameDone();
  }
  CheckInterruption();
  output.Finish();
  progress.Finish(options.output);
}

void Run(const RenderOptions& options) {
  const std::optional<media::FrameRange> range = Range(options.frames);
  const Downsampling downsampling = DownsamplingOf(options);
  const std::unique_ptr<Effect> effect = options.effect.LoadEffect();
  const ParameterValues values = options.effect.Values(effect->Parameters());
  Animation animation;
  if (!options.animation.empty()) animation = Animation(options.animation, effect->Parameters());

  std::unique_ptr<media::Input> input = media::OpenInput(options.input, range);
  if (!options.preview.empty()) input = ReduceInput(std::move(input), downsampling);
  media::OutputOptions outputOptions;
  outputOptions.overwrite = options.run.overwrite;
  outputOptions.audio = !options.noAudio;
  if (!options.frameRate.empty()) outputOptions.frameRate = FrameRateOf(options.frameRate);
  const std::unique_ptr<media::Output> output = media::OpenOutput(options.output, *input, outputOptions);

  ProgressReport progress(input->Info().frameCount, options.run.quiet);
  for (const std::string& warning : input->Warnings()) progress.Note(warning);
  options.preset.Save(*effect, values, options.run.overwrite);
  RenderFrames(options, *effect, ValuesOver(*input, outputOptions.frameRate, animation, values), *input, *output,
               progress);
}

}  // namespace

void AddRenderCommand(CLI::App& program) {
  CLI::App* command = program.add_subcommand("render", "Render a picture, a numbered sequence or a video");
  const auto options = std::make_shared<RenderOptions>();
  const auto add = [&](const char* names, std::string& text, const char* description, const char* type) {
    return command->add_option(names, text, description)->type_name(type);
  };
  add("input", options->input,
      "A picture (PNG, JPEG, TIFF, PPM), a sequence of them\n(frame.%04d.png, frame.####.png) or a video", "")
      ->required();
  add("-o,--output", options->output, "Where to; the extension says what is written", "OUTPUT")->required();
  options->run.AddTo(*command);
  command
      ->add_option("--jobs", options->jobs,
                   "Frames rendered at once; they share the workers\n[one for each worker, while memory lasts]")
      ->type_name("N")
      ->check(CLI::Range(1, 256).description(""));
  options->effect.AddTo(*command);
  options->preset.AddTo(*command);
  add("--animate", options->animation,
      "Change parameters over time, whatever --preset and\n--set say; for each a list of keys:\n"
      "{\"Flat Shaded/Flatness\": [{\"frame\": 1, \"value\": 0},\n {\"frame\": 49, \"value\": 40}]}",
      "FILE.json")
      ->group(kParameters);
  add("--frames", options->frames, "Only these frames: 1-100, 1-100x2 (every second)\nor 1,5,20-30", "RANGE");
  CLI::Option* preview =
      add("--preview", options->preview, "Reduce the frames to this fraction, such as 1/2;\nradii follow", "N/D");
  add("--downsample", options->downsample, "The input is already reduced to this fraction;\nradii follow", "N/D")
      ->excludes(preview);
  add("--fps", options->frameRate, "Frames per second of a video made from pictures [24];\na video keeps its own",
      "RATE");
  command->add_flag("--no-audio", options->noAudio, "Leave the audio of a video out");
  command->footer("Example: quentara render clip.mp4 -o painted.mp4 --set \"Flat Shaded/Flatness=14\"");
  command->callback([options] { Run(*options); });
}

}  // namespace quentara::cli
