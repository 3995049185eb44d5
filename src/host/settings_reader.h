/// Turns the host's parameter values into the settings of a frame.
#pragma once

#include "host/param_cursor.h"
#include "render/settings.h"

namespace Nivra {

/// The settings of one frame with all the records that they point to. The stages that are off have records, too.
struct FrameSettings {
  FrameSettings() = default;
  FrameSettings(const FrameSettings&) = delete;
  FrameSettings& operator=(const FrameSettings&) = delete;

  quentara::RenderSettings settings;
  float blendWithOriginal = 0.0f;  ///< 0..1

  quentara::BlurSettings mainBlur, outlineBlur;
  quentara::FlatShadedSettings flatShaded;
  quentara::FlatDetailedSettings flatDetailed;
  quentara::AirbrushSettings airbrush;
  quentara::BristleSettings bristle;
  quentara::CrackleSettings crackle;
  quentara::DropletSettings droplet;
  quentara::GouacheSettings gouache;
  quentara::PosterPaintSettings posterPaint;
  quentara::SoftOutlineSettings softOutlines;
  quentara::ComicOutlineSettings comicOutlines;
  quentara::MarkerOutlineSettings markerOutlines;
  quentara::ShadowOutlineSettings shadowOutlines;
  quentara::WoodcutOutlineSettings woodcutOutlines;
  quentara::ScratchboardOutlineSettings scratchboardOutlines;
  quentara::ConteOutlineSettings conteOutlines;
  quentara::HalftoneSettings halftone;
  quentara::StippleSettings stipplePattern;
  quentara::DuotoneSettings duotone;
};

/// The style of a choice of "Roto", counted from 0, whose order differs; any other number stands for no style.
quentara::Style StyleOfChoice(int choice);

/// The horizontal scale of the frame against full resolution; 1 unless the host gives both denominators.
float HorizontalScale(const PF_InData& inData);

/// Reads all parameters into `frame`; its `settings.frame` stays as it is.
/// @param cursor  at the first parameter.
/// @param scale   lengths in pixels are multiplied by it.
void ReadSettings(ParamCursor cursor, float scale, FrameSettings& frame);

}  // namespace Nivra
