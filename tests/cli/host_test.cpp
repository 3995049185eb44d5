#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "cli/media_support.h"
#include "errors.h"
#include "host/effect.h"

namespace quentara::cli {
namespace {

using media::RandomFrame;

ParameterValues Settings(const Effect& effect, std::initializer_list<const char*> assignments = {}) {
  ParameterValues values = effect.Parameters().Defaults();
  for (const char* assignment : assignments) effect.Parameters().Assign(assignment, values);
  return values;
}

media::Frame Inverted(media::Frame frame) {
  for (int i = 0; i < frame.height * frame.width * 4; ++i)
    if (frame.deep)
      frame.Deep(0)[i] = static_cast<std::uint16_t>(32768 - frame.Deep(0)[i]);
    else
      frame.Bytes(0)[i] = static_cast<std::uint8_t>(255 - frame.Bytes(0)[i]);
  return frame;
}

TEST(Effect, DefinesItsParameters) {
  Effect effect(FAKE_EFFECT, {});
  const std::vector<Parameter>& rows = effect.Parameters().Rows();
  std::string paths;
  for (const Parameter& row : rows) paths += std::to_string(row.index) + " " + row.Path() + ", ";
  EXPECT_EQ("1 Mode, 2 Tone, 3 Tone/Tone, 4 Tone/Level, 5 Tone/Strength, of just 31 characters, 6 , 7 Ink, 8 Mix, ",
            paths);
  EXPECT_EQ("Invert Grow", rows[0].choices.at(0) + " " + rows[0].choices.at(6));
  EXPECT_EQ(std::tuple(7, 100, 50), std::tuple(rows[3].standard.number, rows[3].valid.high, rows[3].slider.high));
  EXPECT_EQ(1.5, rows[4].standard.number);
  EXPECT_EQ("#010203", FormatValue(rows[6], rows[6].standard));
  EXPECT_EQ(ParameterKind::Percent, rows[7].kind);
  EXPECT_EQ("Fake 1.0 For tests", effect.About());
}

TEST(EffectInstance, RendersFramesOfAnySizeAndDepthOnAnyNumberOfThreads) {
  Effect effect(FAKE_EFFECT, {});
  for (const auto& [width, height] : {std::pair{1, 1}, {16, 3}, {33, 40}})
    for (const bool deep : {false, true})
      for (const int threads : {1, 2, 7}) {
        SCOPED_TRACE(testing::Message() << width << "x" << height << " deep " << deep << " threads " << threads);
        EffectInstance instance(effect, threads, {});
        media::Frame frame = RandomFrame(width, height, deep);
        frame.number = 12;
        const media::Frame rendered = instance.Render(frame, {}, Settings(effect));
        EXPECT_EQ(Inverted(frame).pixels, rendered.pixels);
        EXPECT_EQ(12, rendered.number);
      }
}

TEST(EffectInstance, SendsCommandsInTheHostsOrder) {
  Effect effect(FAKE_EFFECT, {});
  std::string commands;
  Watch watch;
  watch.note = [&](const std::string& text) { commands = text; };
  EffectInstance instance(effect, 1, watch);
  const media::Frame frame = RandomFrame(2, 2);
  instance.Render(frame, {}, Settings(effect));
  instance.Render(frame, {}, Settings(effect, {"Mode=Show Commands"}));
  EXPECT_EQ("4 5 10 11 12 10 11", commands);
  { const EffectInstance other(effect, 1, {}); }
  instance.Render(frame, {}, Settings(effect, {"Mode=Show Commands"}));
  EXPECT_EQ("4 5 10 11 12 10 11 12 5 8 10 11", commands);
}

TEST(EffectInstance, OffersWhatTheInterfacePromises) {
  Effect effect(FAKE_EFFECT, {});
  const ParameterValues values = Settings(effect, {"Mode=Check Host", "Level=9", "15=2.25", "Ink=255,128,0"});
  for (const int threads : {1, 2, 5}) {
    EffectInstance instance(effect, threads, {}, {1, 2});
    EXPECT_NO_THROW(instance.Render(RandomFrame(16, 2), {3, 10, 30000, 1001}, values));
  }
}

TEST(EffectInstance, CancelsWhenAskedToAndRendersOn) {
  Effect effect(FAKE_EFFECT, {});
  int reports = 0;
  Watch watch;
  watch.progress = [&](int, int total) { reports += total == 100; };
  watch.cancelled = [&] { return reports >= 5; };
  EffectInstance instance(effect, 2, watch);
  const media::Frame frame = RandomFrame(8, 8);
  EXPECT_THROW(instance.Render(frame, {}, Settings(effect, {"Mode=Wait For Cancel"})), Cancelled);
  EXPECT_EQ(5, reports);
  EXPECT_THROW(instance.Render(frame, {}, Settings(effect)), Cancelled);
  reports = 0;
  EXPECT_EQ(Inverted(frame).pixels, instance.Render(frame, {}, Settings(effect)).pixels);
}

TEST(ThreadPool, RunsEveryIterationOnceAndStopsAfterAnError) {
  const std::thread::id caller = std::this_thread::get_id();
  for (const int threads : {1, 2, 7}) {
    ThreadPool pool(threads);
    for (const int iterations : {0, 1, threads, 1000}) {
      std::vector<std::atomic<int>> runs(iterations);
      EXPECT_EQ(0, pool.Run(iterations, [&](int threadIndex, int i) {
        ++runs[i];
        EXPECT_EQ(threadIndex == 0, std::this_thread::get_id() == caller);
        EXPECT_TRUE(threadIndex < threads && (i >= threads || i == threadIndex));
        return 0;
      }));
      EXPECT_EQ(iterations, std::count(runs.begin(), runs.end(), 1));
    }
    std::atomic<int> begun{0};
    EXPECT_EQ(517, pool.Run(1000000, [&](int, int) { return ++begun > 10 ? 517 : 0; }));
    EXPECT_LE(begun, 10 + threads);
  }
}

}  // namespace
}  // namespace quentara::cli
