#include "host/settings_reader.h"

#include <gtest/gtest.h>

#include "support/fake_host.h"

namespace quentara {
namespace {

/// A host with its parameters defined, and the settings read from them.
class SettingsReader : public testing::TestWithParam<PF_SpecVersion> {
 protected:
  SettingsReader() : host(HostWorkers::None, GetParam()) { EXPECT_EQ(PF_Err_NONE, host.DefineParams()); }

  const RenderSettings& Read(A_long num = 1, A_u_long den = 1) {
    host.in.downsample_x = {num, den};
    std::vector<const PF_ParamDef*> list;
    for (const PF_ParamDef& param : host.params) list.push_back(&param);
    const bool groups = GetParam().minor >= 12;
    Nivra::ReadSettings(Nivra::ParamCursor(list.data(), groups), Nivra::HorizontalScale(host.in), frame);
    return frame.settings;
  }

  void SwitchAllOn() {
    for (const int box : {22, 26, 112, 32, 125, 136, 146, 13, 36, 161}) host.Param(box).u.bd.value = 1;
  }

  FakeHost host;
  Nivra::FrameSettings frame;
};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutGroups, SettingsReader,
                         testing::Values(PF_SpecVersion{12, 12}, PF_SpecVersion{12, 11}));

TEST_P(SettingsReader, ScalesLengthsToTheFrame) {
  SwitchAllOn();
  host.Param(2).u.sd.value = 1;
  host.Param(29).u.sd.value = 1;
  host.in.downsample_y = {1, 2};
  const RenderSettings& quarter = Read(1, 4);
  EXPECT_EQ(nullptr, quarter.mainBlur);
  EXPECT_EQ(0, frame.mainBlur.radius);
  EXPECT_EQ(15, frame.mainBlur.thresh);
  EXPECT_EQ(1, frame.mainBlur.testRadius);
  EXPECT_EQ(3, frame.mainBlur.blurRadius);
  EXPECT_EQ(3, quarter.flatShaded->flatness);
  EXPECT_EQ(20, quarter.flatShaded->simplicity);
  EXPECT_EQ(1, quarter.comicOutlines->thickness);
  EXPECT_EQ(8, quarter.markerOutlines->separation);
  EXPECT_EQ(10, quarter.markerOutlines->minimumDifference);
  EXPECT_EQ(0.125f, quarter.stipplePattern->density);
  EXPECT_EQ(6, frame.posterPaint.paint1);
  host.Param(7).u.sd.value = 0;
  EXPECT_EQ(0, Read(1, 4).flatShaded->flatness);
  host.in.downsample_y = {1, 0};
  EXPECT_EQ(0.5f, Read(1, 4).stipplePattern->density) << "no scale without both denominators";
}

TEST_P(SettingsReader, ChoosesTheStyleByThePopupsOrder) {
  const Style expected[] = {Style::NoRoto,   Style::FlatShaded,  Style::FlatDetailed, Style::NoRoto,
                            Style::Airbrush, Style::Bristle,     Style::Crackle,      Style::Droplet,
                            Style::Gouache,  Style::PosterPaint, Style::NoRoto};
  host.Param(112).u.bd.value = 1;
  for (int choice = 0; choice < 11; ++choice) {
    SCOPED_TRACE(choice);
    host.Param(6).u.pd.value = choice;
    const RenderSettings& settings = Read();
    EXPECT_EQ(expected[choice], settings.style);
    const void* const records[] = {settings.flatShaded, settings.flatDetailed, settings.airbrush, settings.bristle,
                                   settings.crackle,    settings.droplet,      settings.gouache,  settings.posterPaint};
    for (int style = 0; style < 8; ++style)
      EXPECT_EQ(style == static_cast<int>(settings.style), records[style] != nullptr) << "record " << style;
    EXPECT_EQ(settings.style == Style::Crackle, settings.markerOutlines->reuseCrackle);
  }
}

TEST_P(SettingsReader, KeepsEffectiveBlursOnly) {
  host.Param(16).u.bd.value = 0;
  host.Param(18).u.pd.value = 3;
  host.Param(19).u.sd.value = 0;
  EXPECT_EQ(&frame.outlineBlur, Read().outlineBlur) << "Supersmart asks for no radius";
  host.Param(18).u.pd.value = 1;
  EXPECT_EQ(nullptr, Read().outlineBlur);
  host.Param(19).u.sd.value = 1;
  EXPECT_EQ(&frame.outlineBlur, Read().outlineBlur);
  host.Param(16).u.bd.value = 1;
  EXPECT_EQ(nullptr, Read().outlineBlur);
  host.Param(1).u.pd.value = 4;
  EXPECT_EQ(nullptr, Read().mainBlur);
}

}  // namespace
}  // namespace quentara
