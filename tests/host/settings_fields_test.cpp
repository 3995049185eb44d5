// Every row of the table reaches the field that is meant for it, and no other.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <map>
#include <vector>

#include "host/settings_reader.h"
#include "support/fake_host.h"

namespace quentara {
namespace {

using Nivra::FrameSettings;
using Nivra::ParamKind;
using Nivra::ParamRow;

/// How a field follows the scale of the frame: not at all, as a length of at least 1 or 0 pixels, or in proportion.
enum class Follows { Nothing, Length, LengthFrom0, Proportion };

struct Field {
  template <class Value>
  Field(int row, Value read, Follows scaled = Follows::Nothing)
      : id(row), value(static_cast<double>(read)), follows(scaled) {}

  int id;
  double value;
  Follows follows;
};

constexpr int kGreen = 1000, kBlue = 2000;  // added to the row of a colour

/// The fields of all records, with the row that each is read from. Booleans and choices are 0, 1 and so on.
std::vector<Field> Fields(const FrameSettings& frame) {
  constexpr Follows kLength = Follows::Length, kFrom0 = Follows::LengthFrom0;
  std::vector<Field> fields;
  const auto add = [&](std::initializer_list<Field> record) { fields.insert(fields.end(), record); };
  const auto addColor = [&](int id, const Color& color) {
    add({{id, color.red}, {id + kGreen, color.green}, {id + kBlue, color.blue}});
  };
  const auto addBlur = [&](std::array<int, 7> ids, const BlurSettings& blur) {
    add({{ids[0], blur.type},
         {ids[1], blur.radius, kFrom0},
         {ids[2], blur.thresh},
         {ids[3], blur.quality},
         {ids[4], blur.blurring},
         {ids[5], blur.testRadius, kLength},
         {ids[6], blur.blurRadius, kLength}});
  };
  addBlur({1, 2, 3, 4, 54, 55, 56}, frame.mainBlur);
  addBlur({18, 19, 20, 21, 60, 61, 62}, frame.outlineBlur);
  addColor(17, frame.settings.outlineColor);
  add({{16, frame.settings.useMainBlur}, {65, frame.settings.lighterSecond}, {5, frame.settings.lighter}});

  const FlatShadedSettings& flatShaded = frame.flatShaded;
  add({{7, flatShaded.flatness, kFrom0},
       {8, flatShaded.simplicity},
       {43, flatShaded.strength},
       {9, flatShaded.quality}});
  const FlatDetailedSettings& flatDetailed = frame.flatDetailed;
  add({{10, flatDetailed.strength}, {11, flatDetailed.level}, {12, flatDetailed.temporalFix}});
  const AirbrushSettings& airbrush = frame.airbrush;
  add({{72, airbrush.spread, kLength}, {73, airbrush.lightMix}, {74, airbrush.strength}});
  const BristleSettings& bristle = frame.bristle;
  add({{77, bristle.presharpen}, {78, bristle.spread, kLength}, {79, bristle.postsharpen}, {80, bristle.quality}});
  const CrackleSettings& crackle = frame.crackle;
  add({{83, crackle.flatness, kFrom0}, {84, crackle.simplicity}, {85, crackle.separation}, {86, crackle.strength}});
  add({{89, frame.droplet.radius, kLength}, {90, frame.droplet.strength}});
  const GouacheSettings& gouache = frame.gouache;
  add({{93, gouache.preblur, kLength},
       {94, gouache.presharpen},
       {95, gouache.spread, kLength},
       {96, gouache.postsharpen},
       {97, gouache.quality}});
  const PosterPaintSettings& poster = frame.posterPaint;
  add({{100, double(poster.paint1)},
       {101, double(poster.paint2)},
       {102, poster.blend},
       {103, poster.foreground},
       {104, poster.radius, kLength},
       {105, poster.contrast}});

  const SoftOutlineSettings& soft = frame.softOutlines;
  add({{23, soft.strength}, {24, soft.thickness, kLength}, {47, soft.transparency}, {25, soft.quality}});
  const ComicOutlineSettings& comic = frame.comicOutlines;
  add({{27, comic.sensitivity},
       {28, comic.strength},
       {29, comic.thickness, kLength},
       {30, comic.antialias},
       {48, comic.transparency},
       {31, comic.quality}});
  const MarkerOutlineSettings& marker = frame.markerOutlines;
  add({{113, marker.reuseCrackle},
       {114, marker.flatness, kFrom0},
       {115, marker.simplicity},
       {116, marker.separation},
       {117, marker.thickness, kLength},
       {118, marker.minimumDifference},
       {119, marker.antialias},
       {120, marker.transparency}});
  const ShadowOutlineSettings& shadow = frame.shadowOutlines;
  add({{33, shadow.threshold}, {34, shadow.antialias}, {35, shadow.tintForeground}, {49, shadow.transparency}});
  const WoodcutOutlineSettings& woodcut = frame.woodcutOutlines;
  add({{126, woodcut.threshold},
       {127, woodcut.sensitivity},
       {128, woodcut.strength},
       {129, woodcut.thickness, kLength},
       {130, woodcut.antialias},
       {131, woodcut.tintForeground},
       {132, woodcut.transparency},
       {133, woodcut.quality}});
  const ScratchboardOutlineSettings& scratchboard = frame.scratchboardOutlines;
  add({{137, scratchboard.threshold},
       {138, scratchboard.style},
       {139, scratchboard.detail},
       {140, scratchboard.focus, kLength},
       {141, scratchboard.antialias},
       {142, scratchboard.tintForeground},
       {143, scratchboard.transparency}});
  const ConteOutlineSettings& conte = frame.conteOutlines;
  addColor(147, conte.lightColor);
  add({{148, conte.lightStrength},
       {149, conte.lightThickness, kLength},
       {150, conte.darkStrength},
       {151, conte.darkThickness, kLength},
       {152, conte.transparency},
       {153, conte.quality}});

  const HalftoneSettings& halftone = frame.halftone;
  add({{14, halftone.dotSize, kLength},
       {44, halftone.redAngle},
       {45, halftone.greenAngle},
       {46, halftone.blueAngle},
       {156, halftone.transparency},
       {15, halftone.quality}});
  const StippleSettings& stipple = frame.stipplePattern;
  add({{37, stipple.density, Follows::Proportion},
       {38, stipple.thresh},
       {50, stipple.dotSize, kLength},
       {51, stipple.transparency}});
  addColor(162, frame.duotone.lightestColor);
  addColor(163, frame.duotone.darkestColor);
  add({{39, frame.blendWithOriginal}});

  const RenderSettings& on = frame.settings;
  add({{22, on.softOutlines != nullptr},
       {26, on.comicOutlines != nullptr},
       {112, on.markerOutlines != nullptr},
       {32, on.shadowOutlines != nullptr},
       {125, on.woodcutOutlines != nullptr},
       {136, on.scratchboardOutlines != nullptr},
       {146, on.conteOutlines != nullptr},
       {13, on.halftone != nullptr},
       {36, on.stipplePattern != nullptr},
       {161, on.duotone != nullptr}});
  return fields;
}

double AtScale(double value, Follows follows, float scale) {
  switch (follows) {
    case Follows::Nothing:
      return value;
    case Follows::Proportion:
      return value * scale;
    default:
      return std::max(std::floor(value * scale + 0.5), follows == Follows::Length ? 1.0 : 0.0);
  }
}

class EveryRow : public testing::TestWithParam<PF_SpecVersion> {
 protected:
  EveryRow() : host(HostWorkers::None, GetParam()) { EXPECT_EQ(PF_Err_NONE, host.DefineParams()); }

  /// Holds all fields against the values of the rows in `expected`, which are those at full scale.
  void ExpectFields(const std::map<int, double>& expected, float scale) {
    std::vector<const PF_ParamDef*> list;
    for (const PF_ParamDef& param : host.params) list.push_back(&param);
    Nivra::ReadSettings(Nivra::ParamCursor(list.data(), GetParam().minor >= 12), scale, frame_);
    std::size_t found = 0;
    for (const Field& field : Fields(frame_)) {
      const auto row = expected.find(field.id);
      if (row == expected.end()) continue;
      ++found;
      EXPECT_EQ(AtScale(row->second, field.follows, scale), field.value) << "row " << field.id << " at " << scale;
    }
    EXPECT_EQ(expected.size(), found);
  }

  FakeHost host;

 private:
  FrameSettings frame_;
};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutGroups, EveryRow,
                         testing::Values(PF_SpecVersion{12, 12}, PF_SpecVersion{12, 11}));

TEST_P(EveryRow, WithAValueOfItsOwnReachesItsField) {
  std::map<int, double> expected;
  std::vector<const ParamRow*> sliders;
  int next = 0;
  for (const ParamRow& row : Nivra::kParamTable) {
    if (IsGroup(row.kind)) continue;
    PF_ParamDefUnion& u = host.Param(row.id).u;
    ++next;
    if (row.kind == ParamKind::Slider) sliders.push_back(&row);
    if (row.kind == ParamKind::Percent || row.kind == ParamKind::Fixed) {
      u.fd.value = next * row.validRange.max * 256;
      const float shown = static_cast<float>(u.fd.value) / 65536.0f;
      expected[row.id] = row.kind == ParamKind::Percent ? shown / 100.0f : shown;
    }
    if (row.kind == ParamKind::Color) {
      u.cd.value = {255, static_cast<A_u_char>(next), static_cast<A_u_char>(255 - next),
                    static_cast<A_u_char>(next / 2)};
      expected[row.id] = static_cast<float>(next) / 255.0f;
      expected[row.id + kGreen] = static_cast<float>(255 - next) / 255.0f;
      expected[row.id + kBlue] = static_cast<float>(next / 2) / 255.0f;
    }
  }
  // The narrowest ranges take the smallest numbers, so that there is one for every row.
  std::stable_sort(sliders.begin(), sliders.end(),
                   [](const ParamRow* a, const ParamRow* b) { return a->validRange.max < b->validRange.max; });
  int value = 2;
  for (const ParamRow* row : sliders) {
    ASSERT_LE(value, row->validRange.max) << "row " << row->id;
    expected[row->id] = host.Param(row->id).u.sd.value = value++;
  }
  ExpectFields(expected, 1.0f);
  ExpectFields(expected, 0.5f);
}

TEST_P(EveryRow, ThatIsABoxOrAChoiceReachesItsField) {
  constexpr int kRoto = 6, kCrackle = 6;
  std::map<int, double> off;
  const auto set = [&](const ParamRow& row, int state) {
    if (row.kind == ParamKind::CheckBox) host.Param(row.id).u.bd.value = state;
    if (row.kind == ParamKind::Popup) host.Param(row.id).u.pd.value = 1 + state;
  };
  for (const ParamRow& row : Nivra::kParamTable) {
    if ((row.kind != ParamKind::CheckBox && row.kind != ParamKind::Popup) || row.id == kRoto) continue;
    set(row, 0);
    off[row.id] = 0;
  }
  host.Param(kRoto).u.pd.value = kCrackle;  // without which "Reuse Crackle" is off
  for (const ParamRow& row : Nivra::kParamTable) {
    if (off.count(row.id) == 0 || IsGroup(row.kind)) continue;
    std::map<int, double> expected = off;
    expected[row.id] = 1;
    set(row, 1);
    ExpectFields(expected, 1.0f);
    set(row, 0);
  }
}

}  // namespace
}  // namespace quentara
