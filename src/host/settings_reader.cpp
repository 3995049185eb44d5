#include "host/settings_reader.h"

#include <algorithm>
#include <iterator>

namespace Nivra {
namespace {

using quentara::BlurType;
using quentara::Style;

bool IsEffective(const quentara::BlurSettings& blur) {
  if (blur.type == BlurType::Gaussian || blur.type == BlurType::Box) return blur.radius >= 1;
  return blur.type == BlurType::Supersmart;
}

/// Reads values one after the other. Records are filled by braced lists, which are evaluated in order.
class Reader {
 public:
  Reader(ParamCursor cursor, float scale, FrameSettings& frame)
      : cursor_(cursor), scale_(scale), frame_(frame), settings_(frame.settings) {}

  void Read() {
    settings_.style = StyleOfChoice(Popup());
    ReadBlur(frame_.mainBlur);
    settings_.useMainBlur = CheckBox();
    ReadBlur(frame_.outlineBlur);
    settings_.mainBlur = If(IsEffective(frame_.mainBlur), frame_.mainBlur);
    settings_.outlineBlur = If(IsEffective(frame_.outlineBlur) && !settings_.useMainBlur, frame_.outlineBlur);
    settings_.outlineColor = Color();
    settings_.lighterSecond = Popup() == 1;
    settings_.lighter = Percent();
    ReadStyles();
    ReadOutlines();
    ReadPrintFinish();
    frame_.blendWithOriginal = Percent();
  }

 private:
  int Popup() { return cursor_.Next(ParamKind::Popup).u.pd.value - 1; }
  int Slider() { return cursor_.Next(ParamKind::Slider).u.sd.value; }
  bool CheckBox() { return cursor_.Next(ParamKind::CheckBox).u.bd.value != 0; }
  float Fixed() { return FixedValue(ParamKind::Fixed); }
  float Percent() { return FixedValue(ParamKind::Percent) / 100.0f; }

  float FixedValue(ParamKind kind) { return static_cast<float>(cursor_.Next(kind).u.fd.value) * (1.0f / 65536.0f); }

  quentara::Color Color() {
    const PF_Pixel color = cursor_.Next(ParamKind::Color).u.cd.value;
    return {color.red / 255.0f, color.green / 255.0f, color.blue / 255.0f};
  }

  // A length in pixels, at the scale of the frame.
  int Scaled(int lowest = 1) {
    return std::max(static_cast<int>(static_cast<float>(Slider()) * scale_ + 0.5f), lowest);
  }

  template <class Record>
  static const Record* If(bool on, const Record& record) {
    return on ? &record : nullptr;
  }

  template <class Record>
  const Record* IfStyle(Style style, const Record& record) const {
    return If(settings_.style == style, record);
  }

  void ReadBlur(quentara::BlurSettings& blur) {
    blur = {static_cast<BlurType>(Popup()), Scaled(0), Slider(), Popup(), Percent(), Scaled(), Scaled()};
  }

  void ReadStyles() {
    frame_.flatShaded = {Scaled(0), Slider(), Fixed(), Popup()};
    frame_.flatDetailed = {Percent(), Percent(), CheckBox()};
    frame_.airbrush = {Scaled(), Percent(), Fixed()};
    frame_.bristle = {Fixed(), Scaled(), Fixed(), Popup()};
    frame_.crackle = {Scaled(0), Slider(), Slider(), Fixed()};
    frame_.droplet = {Scaled(), Fixed()};
    frame_.gouache = {Scaled(), Fixed(), Scaled(), Fixed(), Popup()};
    frame_.posterPaint = {Slider(), Slider(), Percent(), Percent(), Scaled(), Percent()};

    settings_.flatShaded = IfStyle(Style::FlatShaded, frame_.flatShaded);
    settings_.flatDetailed = IfStyle(Style::FlatDetailed, frame_.flatDetailed);
    settings_.airbrush = IfStyle(Style::Airbrush, frame_.airbrush);
    settings_.bristle = IfStyle(Style::Bristle, frame_.bristle);
    settings_.crackle = IfStyle(Style::Crackle, frame_.crackle);
    settings_.droplet = IfStyle(Style::Droplet, frame_.droplet);
    settings_.gouache = IfStyle(Style::Gouache, frame_.gouache);
    settings_.posterPaint = IfStyle(Style::PosterPaint, frame_.posterPaint);
  }

  void ReadOutlines() {
    settings_.softOutlines = If(CheckBox(), frame_.softOutlines);
    frame_.softOutlines = {Percent(), Scaled(), Percent(), Popup()};

    settings_.comicOutlines = If(CheckBox(), frame_.comicOutlines);
    frame_.comicOutlines = {Percent(), Percent(), Scaled(), Percent(), Percent(), Popup()};

    settings_.markerOutlines = If(CheckBox(), frame_.markerOutlines);
    const bool reuse = CheckBox() && settings_.style == Style::Crackle;
    frame_.markerOutlines = {reuse, Scaled(0), Slider(), Slider(), Scaled(), Slider(), Percent(), Percent()};

    settings_.shadowOutlines = If(CheckBox(), frame_.shadowOutlines);
    frame_.shadowOutlines = {Percent(), Percent(), CheckBox(), Percent()};

    settings_.woodcutOutlines = If(CheckBox(), frame_.woodcutOutlines);
    frame_.woodcutOutlines = {Percent(), Percent(), Percent(), Scaled(), Percent(), CheckBox(), Percent(), Popup()};

    settings_.scratchboardOutlines = If(CheckBox(), frame_.scratchboardOutlines);
    frame_.scratchboardOutlines = {Percent(), Popup(), Fixed(), Scaled(), Percent(), CheckBox(), Percent()};

    settings_.conteOutlines = If(CheckBox(), frame_.conteOutlines);
    frame_.conteOutlines = {Color(), Percent(), Scaled(), Percent(), Scaled(), Percent(), Popup()};
  }

  void ReadPrintFinish() {
    settings_.halftone = If(CheckBox(), frame_.halftone);
    frame_.halftone.dotSize = Scaled();
    frame_.halftone.redAngle = Fixed();
    frame_.halftone.greenAngle = Fixed();
    frame_.halftone.blueAngle = Fixed();
    frame_.halftone.transparency = Percent();
    frame_.halftone.quality = Popup();

    settings_.stipplePattern = If(CheckBox(), frame_.stipplePattern);
    frame_.stipplePattern = {Percent() * scale_, Percent(), Scaled(), Percent()};

    settings_.duotone = If(CheckBox(), frame_.duotone);
    frame_.duotone = {Color(), Color()};
  }

  ParamCursor cursor_;
  const float scale_;
  FrameSettings& frame_;
  quentara::RenderSettings& settings_;
};

}  // namespace

quentara::Style StyleOfChoice(int choice) {
  static constexpr Style kStyles[] = {Style::FlatShaded, Style::FlatDetailed, Style::NoRoto,
                                      Style::Airbrush,   Style::Bristle,      Style::Crackle,
                                      Style::Droplet,    Style::Gouache,      Style::PosterPaint};
  return choice >= 0 && choice < static_cast<int>(std::size(kStyles)) ? kStyles[choice] : Style::NoRoto;
}

float HorizontalScale(const PF_InData& inData) {
  const PF_RationalScale x = inData.downsample_x;
  if (x.den == 0 || inData.downsample_y.den == 0) return 1.0f;
  return static_cast<float>(x.num) / static_cast<float>(x.den);
}

void ReadSettings(ParamCursor cursor, float scale, FrameSettings& frame) {
  Reader(cursor, scale, frame).Read();
}

}  // namespace Nivra
