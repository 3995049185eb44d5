#include "imageops/lighter_tone.h"

#include <gtest/gtest.h>

#include <cmath>

#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "imageops/skin_tones.h"
#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {
namespace {

template <class Real>
void BendByDefinition(ChannelSet& picture, float exponent) {
  const auto power = [&](Real base) {
    return static_cast<Real>(std::pow(static_cast<double>(base), static_cast<double>(exponent)));
  };
  for (int i = 0; i < 3; ++i)
    for (unsigned char& c : picture.planes(i))
      c = static_cast<unsigned char>(Real{255} * power(c) / power(255) + Real{0.5});
}

template <class Real>
ChannelSet LighterByDefinition(float gamma, ChannelSet picture) {
  BendByDefinition<Real>(picture, gamma);
  const BytePlane values(BrightestPlane(picture));
  const Tones tones = ToneLevels(SkinPointList(picture.planes(0), picture.planes(1), picture.planes(2)), values);
  const float t = std::floor(tones.median - tones.spread) + 0.5f;
  FloatPlane raised(values.shape());
  for (int p = 0; p < static_cast<int>(values.numElements()); ++p) {
    const float v = values.data()[p];
    raised.data()[p] = v > t ? 255.0f : std::floor(v * 255.0f / t + 0.5f);
  }
  ChannelSet result = ReplaceValue(picture, raised);
  BendByDefinition<Real>(result, 1.0f / gamma);
  return result;
}

ChannelSet Warm(ChannelSet picture) {
  for (int p = 0; p < static_cast<int>(picture.pixelCount()); p += 3) {
    picture.planes(0).data()[p] = static_cast<unsigned char>(180 + p % 70);
    picture.planes(1).data()[p] = 130, picture.planes(2).data()[p] = 100;
  }
  return picture;
}

TEST(LighterTone, EqualsItsDefinitionInThePrecisionOfTheWorkers) {
  std::mt19937 rng(51);
  for (const auto& [height, width] : {std::pair{1, 1}, {7, 300}, {33, 40}})
    for (const float gamma : {1.0f, 1.17f, 1.35f, 1.5f}) {
      const ChannelSet cold = RandomPicture(height, width, rng);
      for (const ChannelSet& picture : {cold, Warm(cold)})
        for (const int workers : {1, 2, 3, 7}) {
          SCOPED_TRACE(testing::Message() << height << "x" << width << " gamma " << gamma << " workers " << workers);
          StandaloneHost host(workers);
          const Plugin::HostScope scope(host);
          const ChannelSet expected =
              workers == 1 ? LighterByDefinition<float>(gamma, picture) : LighterByDefinition<double>(gamma, picture);
          EXPECT_EQ("", FirstDifference(expected, LighterTone(gamma, picture)));
        }
    }
}

}  // namespace
}  // namespace quentara
