#include "paint/poster_paint.h"

#include <algorithm>

#include "imageops/hsv.h"
#include "imageops/luma.h"
#include "paint/detail_mask.h"
#include "paint/diagonal_diffusion.h"
#include "paint/level_set.h"
#include "render/bands.h"

namespace quentara {
namespace {

ByteMap MixMaps(float share, const ByteMap& map, const ByteMap& base) {
  return MakeByteMap([&](int sample) {
    const auto i = static_cast<std::size_t>(sample);
    return ToByte(share * map[i] + (1.0f - share) * base[i]);
  });
}

ByteMap PosterMap(const Histogram& histogram, int equalCountLevels, int evenLevels, float blend) {
  if (blend == 0.0f) return MapToLevels(EqualCountLevels(histogram, equalCountLevels));
  const ByteMap even = MapToLevels(EvenLevels(histogram, evenLevels));
  if (blend == 1.0f) return even;
  return MixMaps(blend, even, MapToLevels(EqualCountLevels(histogram, equalCountLevels)));
}

// Stretches the results of those samples that occur.
ByteMap AddContrast(float contrast, const Histogram& histogram, const ByteMap& map) {
  int lowest = 255, highest = 0;
  for (std::size_t sample = 0; sample < map.size(); ++sample)
    if (histogram[sample] > 0) {
      lowest = std::min<int>(lowest, map[sample]);
      highest = std::max<int>(highest, map[sample]);
    }
  const auto range = static_cast<float>(highest - lowest);
  return MixMaps(
      contrast, MakeByteMap([&](int sample) {
        const int above = map[static_cast<std::size_t>(sample)] - lowest;
        // Samples that do not occur may map to anything.
        const bool occurs = histogram[static_cast<std::size_t>(sample)] > 0;
        return static_cast<unsigned char>(occurs && range > 0.0f ? static_cast<float>(above) * 255.0f / range : 0.0f);
      }),
      map);
}

void LayRun(const unsigned char* mask, const unsigned char* soft, unsigned char* __restrict hard,
            std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i)
    hard[i] = ToByte(static_cast<float>(hard[i] * mask[i]) / 255.0f + soft[i] * (1.0f - mask[i] / 255.0f));
}

}  // namespace

ChannelSet PosterPaintStyle(int equalCountLevels, int evenLevels, float blend, float foreground, int rounds,
                            float contrast, const ChannelSet& picture) {
  Plugin::CheckStop();
  const BytePlane brightest(BrightestPlane(picture));
  const Histogram histogram = CountSamples(brightest);
  ByteMap map = PosterMap(histogram, equalCountLevels, evenLevels, blend);
  if (contrast > 0.0f) map = AddContrast(contrast, histogram, map);
  BytePlane poster(MapBytes(map, brightest));
  const BytePlane mask(DetailMask(brightest, foreground)), soft(DiagonalDiffusion(rounds, poster));
  ForSampleBands(poster, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
    LayRun(mask.data() + first, soft.data() + first, poster.data() + first, count);
  });
  return ReplaceValue(picture, poster);
}

}  // namespace quentara
