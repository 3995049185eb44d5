/// The record that a render takes as input: plain values, already scaled to the frame, one small record for each stage.
///
/// Percents are 0..1. Radii, thicknesses and sizes are in pixels of the frame as rendered. A null pointer in
/// `RenderSettings` means that the stage is off; the records belong to the caller and outlive the render.
#pragma once

#include "render/channel_set.h"

namespace quentara {

/// Values of every `quality` field.
enum Quality : int { kFast = 0, kHigh = 1 };

/// The paint styles, in the order of the style pointers of `RenderSettings`.
enum class Style : int {
  FlatShaded = 0,
  FlatDetailed = 1,
  Airbrush = 2,
  Bristle = 3,
  Crackle = 4,
  Droplet = 5,
  Gouache = 6,
  PosterPaint = 7,
  NoRoto = 8,
};

/// A colour, 0..1 a channel.
struct Color {
  float red;
  float green;
  float blue;
};

enum class BlurType : int { Gaussian = 0, Box = 1, Supersmart = 2, None = 3 };

struct BlurSettings {
  BlurType type;
  int radius;  ///< >= 0
  int thresh;  ///< in sample values
  int quality;
  float blurring;  ///< 0..1
  int testRadius;  ///< >= 1
  int blurRadius;  ///< >= 1
};

struct FlatShadedSettings {
  int flatness;    ///< radius of the first pass, >= 0
  int simplicity;  ///< range limit of the first pass, in sample values
  float strength;  ///< 0..5
  int quality;
};

struct FlatDetailedSettings {
  float strength;
  float level;
  bool temporalFix;
};

struct AirbrushSettings {
  int spread;
  float lightMix;
  float strength;
};

struct BristleSettings {
  float presharpen;
  int spread;
  float postsharpen;
  int quality;
};

struct CrackleSettings {
  int flatness;
  int simplicity;
  int separation;
  float strength;
};

struct DropletSettings {
  int radius;
  float strength;
};

struct GouacheSettings {
  int preblur;
  float presharpen;
  int spread;
  float postsharpen;
  int quality;
};

struct PosterPaintSettings {
  int paint1;
  int paint2;
  float blend;
  float foreground;
  int radius;
  float contrast;
};

struct SoftOutlineSettings {
  float strength;
  int thickness;
  float transparency;
  int quality;
};

struct ComicOutlineSettings {
  float sensitivity;
  float strength;
  int thickness;
  float antialias;
  float transparency;
  int quality;
};

struct MarkerOutlineSettings {
  bool reuseCrackle;  ///< only ever true with `Style::Crackle`
  int flatness;
  int simplicity;
  int separation;
  int thickness;
  int minimumDifference;
  float antialias;
  float transparency;
};

struct ShadowOutlineSettings {
  float threshold;
  float antialias;
  bool tintForeground;
  float transparency;
};

struct WoodcutOutlineSettings {
  float threshold;
  float sensitivity;
  float strength;
  int thickness;
  float antialias;
  bool tintForeground;
  float transparency;
  int quality;
};

struct ScratchboardOutlineSettings {
  float threshold;
  int style;  ///< 0 rough, 1 smooth
  float detail;
  int focus;
  float antialias;
  bool tintForeground;
  float transparency;
};

struct ConteOutlineSettings {
  Color lightColor;
  float lightStrength;
  int lightThickness;
  float darkStrength;
  int darkThickness;
  float transparency;
  int quality;
};

struct DuotoneSettings {
  Color lightestColor;
  Color darkestColor;
};

struct HalftoneSettings {
  int dotSize;
  float redAngle;  ///< degrees
  float greenAngle;
  float blueAngle;
  int quality;
  float transparency;
};

struct StippleSettings {
  float density;  ///< 0..1, times the scale of the frame
  float thresh;
  int dotSize;
  float transparency;
};

struct RenderSettings {
  FrameBuffers frame;
  const BlurSettings* mainBlur = nullptr;
  bool lighterSecond = false;
  float lighter = 0.0f;
  Style style = Style::NoRoto;
  // Exactly the record of `style` is set.
  const FlatShadedSettings* flatShaded = nullptr;
  const FlatDetailedSettings* flatDetailed = nullptr;
  const AirbrushSettings* airbrush = nullptr;
  const BristleSettings* bristle = nullptr;
  const CrackleSettings* crackle = nullptr;
  const DropletSettings* droplet = nullptr;
  const GouacheSettings* gouache = nullptr;
  const PosterPaintSettings* posterPaint = nullptr;
  const DuotoneSettings* duotone = nullptr;
  const HalftoneSettings* halftone = nullptr;
  bool useMainBlur = false;
  Color outlineColor = {0.0f, 0.0f, 0.0f};
  const BlurSettings* outlineBlur = nullptr;  ///< null when `useMainBlur` is on
  const SoftOutlineSettings* softOutlines = nullptr;
  const ComicOutlineSettings* comicOutlines = nullptr;
  const MarkerOutlineSettings* markerOutlines = nullptr;
  const ShadowOutlineSettings* shadowOutlines = nullptr;
  const WoodcutOutlineSettings* woodcutOutlines = nullptr;
  const ScratchboardOutlineSettings* scratchboardOutlines = nullptr;
  const ConteOutlineSettings* conteOutlines = nullptr;
  const StippleSettings* stipplePattern = nullptr;
};

}  // namespace quentara
