#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <random>
#include <thread>

#include "errors.h"
#include "host/effect.h"
#include "support/temporary_folder.h"

namespace quentara::cli {
namespace {

std::unique_ptr<Effect> LoadFake(short minor = 0) {
  return std::make_unique<Effect>(FAKE_EFFECT, HostIdentity{{static_cast<A_short>(minor ? 99 : 13), minor}});
}

ParameterValues Settings(const Effect& effect, std::initializer_list<const char*> assignments) {
  ParameterValues values = effect.Parameters().Defaults();
  for (const char* assignment : assignments) effect.Parameters().Assign(assignment, values);
  return values;
}

media::Frame RandomFrame(int width, int height, bool deep, unsigned seed = 1) {
  media::Frame frame = media::BlankFrame(width, height, deep);
  std::mt19937 rng(seed);
  for (int y = 0; y < height; ++y)
    for (int i = 0; i < 4 * width; ++i)
      if (deep)
        frame.Deep(y)[i] = static_cast<std::uint16_t>(rng() % 32769);
      else
        frame.Bytes(y)[i] = static_cast<std::uint8_t>(rng());
  return frame;
}

media::Frame Inverted(media::Frame frame) {
  for (int y = 0; y < frame.height; ++y)
    for (int i = 0; i < 4 * frame.width; ++i)
      if (frame.deep)
        frame.Deep(y)[i] = static_cast<std::uint16_t>(32768 - frame.Deep(y)[i]);
      else
        frame.Bytes(y)[i] = static_cast<std::uint8_t>(255 - frame.Bytes(y)[i]);
  return frame;
}

/// The text of the EffectError that `action` throws.
template <typename Action>
std::string EffectErrorOf(Action action) {
  try {
    action();
  } catch (const EffectError& error) {
    return error.what();
  }
  return "no error";
}

std::string RenderError(const char* mode) {
  const auto effect = LoadFake();
  EffectInstance instance(*effect, 2, {});
  return EffectErrorOf([&] { instance.Render(RandomFrame(3, 2, false), {}, Settings(*effect, {mode})); });
}

TEST(Effect, DefinesItsParameters) {
  const auto effect = LoadFake();
  const std::vector<Parameter>& rows = effect->Parameters().Rows();
  ASSERT_EQ(8u, rows.size());
  EXPECT_EQ("Invert", rows[0].choices.at(0));
  EXPECT_EQ("Grow", rows[0].choices.at(6));
  EXPECT_EQ("Tone/Tone", rows[2].Path());
  EXPECT_EQ(7, rows[3].standard.number);
  EXPECT_EQ(100, rows[3].valid.high);
  EXPECT_EQ(50, rows[3].slider.high);
  EXPECT_EQ("Tone/Strength, of just 31 characters", rows[4].Path());
  EXPECT_EQ(1.5, rows[4].standard.number);
  EXPECT_EQ("Ink", rows[6].Path());
  EXPECT_EQ("#010203", FormatValue(rows[6], rows[6].standard));
  EXPECT_EQ(ParameterKind::Percent, rows[7].kind);
  EXPECT_EQ(8, rows[7].index);
  EXPECT_EQ("Fake 1.0 For tests", effect->About());
}

TEST(Effect, RefusesAnEffectThatSetsItselfUpWrongly) {
  EXPECT_EQ("the effect ran out of memory (error 4)", EffectErrorOf([] { LoadFake(1); }));
  EXPECT_EQ("the effect defined 8 parameters but says that it has 9", EffectErrorOf([] { LoadFake(2); }));
  EXPECT_EQ("the effect failed with error 514", EffectErrorOf([] { LoadFake(3); }));
  EXPECT_EQ("the effect failed with error 516", EffectErrorOf([] { LoadFake(4); }));
}

TEST(Effect, RefusesALibraryThatIsNone) {
  const TemporaryFolder folder;
  const std::string text = folder / "not_an_effect.so";
  std::ofstream(text) << "text";
  EXPECT_THAT(EffectErrorOf([&] { Effect(text, {}); }),
              testing::StartsWith(text + " is not an effect; it cannot be loaded"));
  EXPECT_EQ(NO_EFFECT " is not an effect; it has no PluginEntry", EffectErrorOf([] { Effect(NO_EFFECT, {}); }));
  EXPECT_EQ("there is no effect at /nowhere.so", EffectErrorOf([] { Effect("/nowhere.so", {}); }));
}

TEST(Effect, ReportsGreyedRows) {
  const auto effect = LoadFake();
  std::vector<bool> expected(8);
  EXPECT_EQ(expected, effect->GreyedRows(Settings(*effect, {"Tone=on"})));
  expected[3] = true;
  EXPECT_EQ(expected, effect->GreyedRows(Settings(*effect, {"Tone=off"})));
}

TEST(EffectInstance, RendersFramesOfAnySizeAndDepthOnAnyNumberOfThreads) {
  const auto effect = LoadFake();
  for (const auto& [width, height] : {std::pair{1, 1}, {16, 3}, {33, 40}})
    for (const bool deep : {false, true})
      for (const int threads : {1, 2, 7}) {
        SCOPED_TRACE(testing::Message() << width << "x" << height << " deep " << deep << " threads " << threads);
        EffectInstance instance(*effect, threads, {});
        media::Frame frame = RandomFrame(width, height, deep);
        frame.number = 12;
        const media::Frame rendered = instance.Render(frame, {}, effect->Parameters().Defaults());
        EXPECT_EQ(Inverted(frame).pixels, rendered.pixels);
        EXPECT_EQ(12, rendered.number);
      }
}

TEST(EffectInstance, SendsCommandsInTheHostsOrder) {
  const auto effect = LoadFake();
  std::string commands;
  Watch watch;
  watch.note = [&](const std::string& text) { commands = text; };
  EffectInstance instance(*effect, 1, watch);
  const media::Frame frame = RandomFrame(2, 2, false);
  instance.Render(frame, {}, effect->Parameters().Defaults());
  instance.Render(frame, {}, Settings(*effect, {"Mode=Show Commands"}));
  EXPECT_EQ("4 5 10 11 12 10 11", commands);
  { const EffectInstance other(*effect, 1, {}); }
  instance.Render(frame, {}, Settings(*effect, {"Mode=Show Commands"}));
  EXPECT_EQ("4 5 10 11 12 10 11 12 5 8 10 11", commands);
}

TEST(EffectInstance, OffersWhatTheInterfacePromises) {
  const auto effect = LoadFake();
  const ParameterValues values = Settings(*effect, {"Mode=Check Host", "15=2.25", "Ink=255,128,0"});
  for (const int threads : {1, 2, 5}) {
    EffectInstance instance(*effect, threads, {}, {1, 2});
    EXPECT_EQ("no error", EffectErrorOf([&] {
                instance.Render(RandomFrame(16, 2, false), {3, 10, 30000, 1001}, values);
              }));
  }
}

TEST(EffectInstance, TellsWhatTheEffectSaysWhenItFails) {
  EXPECT_EQ("the effect failed: No paint left. (error 512)", RenderError("Mode=Fail"));
  EXPECT_EQ("the effect ran out of memory (error 4)", RenderError("Mode=Fail Silently"));
  EXPECT_EQ("the effect asks for a frame of another size, which this host does not offer", RenderError("Mode=Grow"));
}

TEST(EffectInstance, CancelsWhenAskedToAndRendersOn) {
  const auto effect = LoadFake();
  int reports = 0;
  Watch watch;
  watch.progress = [&](int, int total) { reports += total == 100; };
  watch.cancelled = [&] { return reports >= 5; };
  EffectInstance instance(*effect, 2, watch);
  const media::Frame frame = RandomFrame(8, 8, false);
  EXPECT_THROW(instance.Render(frame, {}, Settings(*effect, {"Mode=Wait For Cancel"})), Cancelled);
  EXPECT_EQ(5, reports);
  EXPECT_THROW(instance.Render(frame, {}, effect->Parameters().Defaults()), Cancelled);
  reports = 0;
  EXPECT_EQ(Inverted(frame).pixels, instance.Render(frame, {}, effect->Parameters().Defaults()).pixels);
}

TEST(EffectInstance, RendersAtTheSameTimeAsOthers) {
  const auto effect = LoadFake();
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (unsigned seed = 0; seed < 4; ++seed)
    threads.emplace_back([&, seed] {
      HostContext* const before = HostContext::Current();
      EffectInstance instance(*effect, 2, {});
      const media::Frame frame = RandomFrame(31, 17, seed % 2 == 1, seed);
      for (int i = 0; i < 20; ++i)
        wrong += instance.Render(frame, {}, effect->Parameters().Defaults()).pixels != Inverted(frame).pixels;
      wrong += HostContext::Current() != before;
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(0, wrong);
}

TEST(ThreadPool, RunsEveryIterationOnceAndStopsAfterAnError) {
  for (const int threads : {1, 2, 7}) {
    ThreadPool pool(threads);
    for (const int iterations : {0, 1, threads, 1000}) {
      std::vector<std::atomic<int>> runs(iterations);
      std::atomic<int> strayed{0};
      const std::thread::id caller = std::this_thread::get_id();
      EXPECT_EQ(0, pool.Run(iterations, [&](int threadIndex, int i) {
        ++runs[i];
        strayed += (threadIndex == 0) != (std::this_thread::get_id() == caller) || threadIndex >= threads ||
                   (i < threads && threadIndex != i);
        return 0;
      }));
      EXPECT_TRUE(std::all_of(runs.begin(), runs.end(), [](int count) { return count == 1; }));
      EXPECT_EQ(0, strayed);
    }
    std::atomic<int> begun{0};
    EXPECT_EQ(517, pool.Run(1000000, [&](int, int) { return ++begun > 10 ? 517 : 0; }));
    EXPECT_LE(begun, 10 + threads);
  }
}

}  // namespace
}  // namespace quentara::cli
