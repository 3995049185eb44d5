#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numeric>
#include <utility>

#include "commands/commands.h"
#include "commands/options.h"
#include "errors.h"
#include "interruption.h"
#include "media/frame_origin.h"
#include "media/output.h"
#include "media/still.h"
#include "parameters/text.h"
#include "presets/shipped_presets.h"
#include "scaling.h"
#include "sheet/sheet.h"
#include "sheet/tiles.h"
#include "single_frame_input.h"

namespace quentara::cli {
namespace {

struct SheetOptions {
  EffectOptions effect;
  RunOptions run;
  std::string input;
  std::string output;
  std::optional<std::int64_t> frame;
  int tileWidth = 480;
  std::optional<int> columns;
  bool presets = false;
};

std::vector<TileSection> TilesFor(const SheetOptions& options, const ParameterTable& table) {
  if (!options.presets) return ListTiles(table, options.effect.Values(table));
  TileSection section{"Presets", {}};
  for (const ShippedPreset& preset : ListShippedPresets()) {
    EffectOptions effect = options.effect;
    effect.presets.push_back(preset.path);
    section.tiles.push_back({preset.name, effect.Values(table)});
  }
  return {section};
}

std::size_t CountTiles(const std::vector<TileSection>& sections) {
  std::size_t count = 0;
  for (const TileSection& section : sections) count += section.tiles.size();
  return count;
}

/// What brings a frame to the width of a tile and to no more than twice that in height; never more than 1.
Downsampling DownsamplingFor(const media::FrameInfo& info, int tileWidth) {
  if (info.width <= tileWidth && info.height <= 2 * tileWidth) return {};
  Downsampling by{tileWidth, info.width};
  if (std::int64_t{2} * info.width < info.height) by = {2 * tileWidth, info.height};
  const int common = std::gcd(by.numerator, by.denominator);
  return {by.numerator / common, by.denominator / common};
}

/// Renders tiles of one frame.
class TilePainter {
 public:
  TilePainter(EffectInstance& instance, const media::Frame& source, const media::Rational& pixelAspect)
      : instance_(instance), source_(source), pixelAspect_(pixelAspect) {}

  LabelledPicture Source() const { return {"Source", WithSquarePixels(source_)}; }

  /// @throws Cancelled, EffectError
  LabelledPicture operator()(const Tile& tile) const {
    return {tile.label, WithSquarePixels(instance_.Render(source_, {}, tile.values))};
  }

 private:
  media::Frame WithSquarePixels(const media::Frame& frame) const {
    const double aspect = static_cast<double>(pixelAspect_.numerator) / static_cast<double>(pixelAspect_.denominator);
    const int width = static_cast<int>(std::max(1l, std::lround(frame.width * std::min(aspect, 1.0))));
    const int height = static_cast<int>(std::max(1l, std::lround(frame.height / std::max(aspect, 1.0))));
    return width == frame.width && height == frame.height ? frame : Resized(frame, width, height);
  }

  EffectInstance& instance_;
  const media::Frame& source_;
  media::Rational pixelAspect_;
};

/// The source and all tiles.
std::vector<PictureSection> PaintSections(const std::vector<TileSection>& sections, const TilePainter& paint,
                                          ProgressReport& progress) {
  std::vector<PictureSection> painted;
  for (const TileSection& section : sections) {
    PictureSection& pictures = painted.emplace_back(PictureSection{section.heading, {}});
    if (painted.size() == 1) pictures.pictures.push_back(paint.Source());
    for (const Tile& tile : section.tiles) {
      CheckInterruption();
      pictures.pictures.push_back(paint(tile));
      progress.FrameDone();
    }
  }
  return painted;
}

std::string TitleOf(const SheetOptions& options, const media::Frame& frame) {
  std::string title = std::filesystem::path(options.input).filename().string();
  if (frame.number != 1 || options.frame) title += ", frame " + std::to_string(frame.number);
  std::vector<std::string> settings = options.effect.presets;
  settings.insert(settings.end(), options.effect.assignments.begin(), options.effect.assignments.end());
  if (!settings.empty()) title += ": " + Joined(settings);
  return title;
}

/// Lets the sheet show the colours as the source's profile means them.
void KeepProfile(const media::Frame& source, media::Frame& sheet) {
  auto origin = std::make_shared<media::FrameOrigin>();
  if (source.origin) origin->iccProfile = source.origin->iccProfile;
  sheet.origin = std::move(origin);
  sheet.number = source.number;
}

void Run(const SheetOptions& options) {
  if (!media::StillFormatForName(options.output))
    throw media::OutputError(options.output + ": a contact sheet is a picture (.png .jpg .tif .ppm)");
  const std::unique_ptr<Effect> effect = options.effect.LoadEffect();
  const std::vector<TileSection> tiles = TilesFor(options, effect->Parameters());
  if (tiles.empty()) throw EffectError("the effect has no paint style, outline or pattern to show");

  const std::unique_ptr<media::Input> input = OpenSingleFrame(options.input, options.frame);
  media::OutputOptions outputOptions;
  outputOptions.overwrite = options.run.overwrite;
  const std::unique_ptr<media::Output> output = media::OpenOutput(options.output, *input, outputOptions);
  const SheetFonts fonts;

  ProgressReport progress(static_cast<std::int64_t>(CountTiles(tiles)), options.run.quiet, "tile");
  const Downsampling downsampling = DownsamplingFor(input->Info(), options.tileWidth);
  EffectInstance instance(*effect, options.run.threads, WatchWith(progress), downsampling);
  const media::Frame source = Reduced(*input->Next(), downsampling);
  const TilePainter paint(instance, source, input->Info().pixelAspect);
  media::Frame sheet =
      DrawSheet(TitleOf(options, source), PaintSections(tiles, paint, progress), options.columns, fonts);
  KeepProfile(source, sheet);
  CheckInterruption();
  output->Write(sheet);
  output->Finish();
  progress.Finish(options.output);
}

}  // namespace

void AddSheetCommand(CLI::App& program) {
  CLI::App* command =
      program.add_subcommand("sheet", "Show a frame in every paint style, outline and pattern, in one picture");
  const auto options = std::make_shared<SheetOptions>();
  command->add_option("input", options->input, "A picture, a numbered sequence or a video, as \"render\" takes it")
      ->type_name("")
      ->required();
  command->add_option("-o,--output", options->output, "The sheet: a picture (.png .jpg .tif .ppm)")
      ->type_name("OUTPUT")
      ->required();
  options->run.AddTo(*command);
  options->effect.AddTo(*command);
  command->add_option("--frame", options->frame, "Which frame [the first]; of a video counted from 1")
      ->type_name("N")
      ->check(CLI::NonNegativeNumber.description(""));
  command
      ->add_option("--tile", options->tileWidth,
                   "Width of a tile in pixels, 16 to 4096 [480]; a\nnarrower frame keeps its own")
      ->type_name("WIDTH")
      ->check(CLI::Range(16, 4096).description(""));
  command->add_option("--columns", options->columns, "Tiles in a row [as many as suit a screen]")
      ->type_name("N")
      ->check(CLI::Range(1, 1000).description(""));
  command->add_flag("--presets", options->presets,
                    "Show the presets that come with the program\ninstead of styles, outlines and patterns");
  command->footer(
      "The styles are shown without outlines and patterns, and each outline and pattern alone over the style set by\n"
      "--set \"Roto=...\". Any other --set holds for all tiles. The frame is reduced before it is painted and radii\n"
      "follow, so a tile shows how the frame looks at full size.\n"
      "Example: quentara sheet clip.mp4 -o sheet.png --frame 60 --set \"Outline Color=#402010\"");
  command->callback([options] { Run(*options); });
}

}  // namespace quentara::cli
