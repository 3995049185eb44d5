// A picture depends on the picture that goes in and on the parameters, not on who paints it.
#include <gtest/gtest.h>

#include "cli/media_support.h"
#include "host/effect.h"

namespace quentara::cli {
namespace {

/// Shades that end in curved edges, so that every outline finds something to draw.
media::Frame Scene(int width, int height) {
  media::Frame frame = media::RandomFrame(width, height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      for (int c = 0; c < 4; ++c) {
        std::uint8_t& sample = frame.Bytes(y)[4 * x + c];
        const int shade = 40 * c + (x * x + 3 * y * x + y * y) / 90 % 160;
        sample = static_cast<std::uint8_t>(std::min(shade + sample % 16, 255));
      }
  return frame;
}

const std::vector<std::vector<std::string>>& Looks() {
  static const std::vector<std::vector<std::string>> looks = [] {
    const std::vector<std::string> bare = {"Roto=No Roto", "Main Blur/Type=None", "Comic Outlines=off"};
    std::vector<std::vector<std::string>> all;
    const auto add = [&](std::vector<std::string> more) {
      more.insert(more.begin(), bare.begin(), bare.end());
      all.push_back(std::move(more));
    };
    for (const char* style :
         {"Flat Shaded", "Flat Detailed", "Airbrush", "Bristle", "Crackle", "Droplet", "Gouache", "Poster Paint"})
      add({std::string("Roto=") + style});
    for (const char* blur : {"Gaussian", "Box", "Supersmart"}) add({std::string("Main Blur/Type=") + blur});
    for (const char* outlines : {"Soft Outlines", "Comic Outlines", "Marker Outlines", "Shadow Outlines",
                                 "Woodcut Outlines", "Scratchboard Outlines", "Conte Outlines"})
      for (const char* colour : {"#000000", "#606060", "#203080"})
        add({std::string(outlines) + "=on", std::string("Outline Color=") + colour});
    for (const char* thickness : {"1", "2", "5", "20"})
      add({"Marker Outlines=on", std::string("Marker Outlines/Thickness=") + thickness});
    add({"Halftone Pattern=on"});
    add({"Duotone Shading=on"});
    add({"Lighter Type=Lighter1", "Lighter=40"});
    return all;
  }();
  return looks;
}

TEST(SamePicture, ComesFromAnyNumberOfThreads) {
  Effect effect(QUENTARA_EFFECT, {});
  // The second is high enough for several bands.
  for (const media::Frame& scene : {Scene(61, 47), Scene(40, 420)})
    for (const std::vector<std::string>& look : Looks()) {
      ParameterValues values = effect.Parameters().Defaults();
      for (const std::string& assignment : look) effect.Parameters().Assign(assignment, values);
      const media::Frame expected = EffectInstance(effect, 1, {}).Render(scene, {}, values);
      for (const int threads : {2, 3, 8, 16})
        EXPECT_EQ(expected.pixels, EffectInstance(effect, threads, {}).Render(scene, {7, 10}, values).pixels)
            << look.back() << " in " << look[3] << " on " << threads << " threads";
    }
}

}  // namespace
}  // namespace quentara::cli
