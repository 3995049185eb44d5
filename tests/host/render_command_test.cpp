// Whole renders through the command dispatcher.
#include <gmock/gmock.h>
#include <xmmintrin.h>

#include <functional>
#include <iterator>

#include "support/fake_host.h"

namespace quentara {
namespace {

constexpr int kHeight = 7, kWidth = 9;

int EightBitStep(int value, bool deep) {
  return deep ? (value * 255 / 32768) * 32768 / 255 : value;
}

/// Expects each sample of `output` to be expected(input sample, channel), and its padding to be that of `before`.
void ExpectSamples(const FakeWorld& input, const FakeWorld& before, const FakeWorld& output,
                   const std::function<int(int value, int channel)>& expected) {
  FakeWorld wanted = before;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x)
      for (int channel = 0; channel < 4; ++channel)
        wanted.SetSample(y, x, channel, expected(input.Sample(y, x, channel), channel));
  EXPECT_EQ(wanted.memory, output.memory);
}

class Depths : public testing::TestWithParam<bool> {
 protected:
  Depths() {
    EXPECT_EQ(PF_Err_NONE, host.DefineParams());
    host.SetNoStage();
    for (int channel = 0; channel < 4; ++channel) {  // the ends of the range
      input.SetSample(0, 0, channel, 0);
      input.SetSample(0, 1, channel, deep ? 32768 : 255);
      input.SetSample(0, 2, channel, 1);
    }
  }

  const bool deep = GetParam();
  std::mt19937 rng{1};
  FakeHost host;
  FakeWorld input{kHeight, kWidth, deep, 3, rng};
  const FakeWorld before{kHeight, kWidth, deep, 5, rng};
  FakeWorld output{before};
};

INSTANTIATE_TEST_SUITE_P(EightAndSixteen, Depths, testing::Bool());

TEST_P(Depths, PassThePictureOnWithItsAlpha) {
  ASSERT_EQ(PF_Err_NONE, host.Render(input, output));
  ExpectSamples(input, before, output,
                [&](int value, int channel) { return channel == 0 ? value : EightBitStep(value, deep); });
  EXPECT_EQ((std::vector{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}), host.progress);
  EXPECT_EQ(0, FakeHandles::live);
}

TEST_P(Depths, BlendWithTheOriginal) {
  host.Param(39).u.fd.value = 100 << 16;
  ASSERT_EQ(PF_Err_NONE, host.Render(input, output));
  ExpectSamples(input, before, output, [](int value, int) { return value; });

  host.Param(39).u.fd.value = 30 << 16;
  ASSERT_EQ(PF_Err_NONE, host.Render(input, output));
  ExpectSamples(input, before, output, [&](int value, int channel) {
    const int painted = channel == 0 ? value : EightBitStep(value, deep);
    return static_cast<int>(static_cast<float>(value) * 0.3f + static_cast<float>(painted) * (1.0f - 0.3f));
  });
}

TEST_P(Depths, LeaveTheColorsAloneWhenTheSizesDiffer) {
  FakeWorld narrow(kHeight, kWidth - 2, deep, 0, rng);
  FakeWorld wanted = narrow;
  ASSERT_EQ(PF_Err_NONE, host.Render(input, narrow));
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth - 2; ++x) wanted.SetSample(y, x, 0, input.Sample(y, x, 0));
  EXPECT_EQ(wanted.memory, narrow.memory);
}

TEST_P(Depths, DoNothingForAnEmptyLayer) {
  input.layout.height = 0;
  EXPECT_EQ(PF_Err_NONE, host.Render(input, output));
  EXPECT_EQ(before.memory, output.memory);
}

/// A choice of settings for a small frame.
struct Setting {
  const char* name;
  int height;
  void (*choose)(FakeHost& host);
};

void ChooseNoStage(FakeHost& host) {
  host.SetNoStage();
}

// Tall enough for three bands in every pass.
void ChoosePainting(FakeHost& host) {
  host.Param(26).u.bd.value = 0;
  host.Param(2).u.sd.value = 1;
  host.Param(7).u.sd.value = 1;
}

constexpr Setting kSettings[] = {{"no stage", kHeight, ChooseNoStage}, {"painting", 52, ChoosePainting}};

/// Renders again and again, with disturb(host, n) making the n-th call of some kind go wrong, until a render no longer
/// gets that far. Every one of them has to end with `error`, an untouched output and nothing left allocated.
void ExpectCleanFailures(const Setting& setting, HostWorkers workers, PF_Err error,
                         const std::function<void(FakeHost&, int)>& disturb) {
  std::mt19937 rng(2);
  const FakeWorld input(setting.height, kWidth, false, 1, rng), before(setting.height, kWidth, false, 2, rng);
  PF_Err result = error;
  for (int n = 1; result != PF_Err_NONE; ++n) {
    SCOPED_TRACE(testing::Message() << setting.name << ", call " << n << ", workers " << static_cast<int>(workers));
    FakeWorld output = before;
    FakeHost host(workers);
    ASSERT_EQ(PF_Err_NONE, host.DefineParams());
    setting.choose(host);
    disturb(host, n);
    result = host.Render(input, output);
    FakeHandles::FailAt(0);
    EXPECT_EQ(0, FakeHandles::live);
    EXPECT_EQ(0, host.foreignCalls);
    if (result == PF_Err_NONE) {
      EXPECT_GT(n, 10) << "nothing was disturbed";
    } else {
      ASSERT_EQ(error, result) << host.out.return_msg;
      EXPECT_EQ(before.memory, output.memory);
    }
  }
}

void ExpectCleanFailures(PF_Err error, const std::function<void(FakeHost&, int)>& disturb) {
  for (const Setting& setting : kSettings)
    for (const HostWorkers workers : kAllHostWorkers) ExpectCleanFailures(setting, workers, error, disturb);
}

TEST(RenderCommand, EndsCleanlyAtEveryCancel) {
  for (const PF_Err answer : {PF_Interrupt_CANCEL, PF_Err_INVALID_CALLBACK})
    ExpectCleanFailures(answer, [=](FakeHost& host, int n) {
      host.cancelAt = n;
      host.cancel = answer;
    });
}

TEST(RenderCommand, EndsCleanlyAtEveryFailureOfMemory) {
  ExpectCleanFailures(PF_Err_OUT_OF_MEMORY, [](FakeHost&, int n) { FakeHandles::FailAt(n); });
}

constexpr int kRoto = 6, kBristle = 5;

// A style of many roundings.
FakeWorld PaintedInBristle(HostWorkers workers, const FakeWorld& input) {
  std::mt19937 rng(3);
  FakeHost host(workers);
  EXPECT_EQ(PF_Err_NONE, host.DefineParams());
  ChoosePainting(host);
  host.Param(kRoto).u.pd.value = kBristle;
  FakeWorld output(input.layout.height, kWidth, false, 0, rng);
  EXPECT_EQ(PF_Err_NONE, host.Render(input, output)) << host.out.return_msg;
  return output;
}

/// A stage that may be left out: what switches it on, by identifier. Styles exclude each other, and so do the types of
/// "Lighter".
struct OptionalStage {
  int id;
  A_long value;
};
constexpr int kLighterType = 65, kStippleBox = 36;
constexpr OptionalStage kOptional[] = {
    {kRoto, 1}, {kRoto, 2}, {kRoto, 4},        {kRoto, 5},        {kRoto, 6}, {kRoto, 7},      {kRoto, 8}, {kRoto, 9},
    {1, 1},     {18, 3},    {kLighterType, 1}, {kLighterType, 2}, {22, 1},    {26, 1},         {112, 1},   {32, 1},
    {125, 1},   {136, 1},   {146, 1},          {13, 1},           {161, 1},   {kStippleBox, 1}};

void SwitchOn(FakeHost& host, const OptionalStage& stage) {
  PF_ParamDef& param = host.Param(stage.id);
  if (param.param_type == PF_Param_CHECKBOX)
    param.u.bd.value = stage.value;
  else
    param.u.pd.value = stage.value;
  if (stage.id == kLighterType) host.Param(5).u.fd.value = 40 << 16;
  if (stage.id == 18) host.Param(16).u.bd.value = 0;
}

TEST(RenderCommand, RendersEveryTwoStagesTogetherAndTheSameAgain) {
  std::mt19937 rng(3);
  const FakeWorld input(kHeight, kWidth, false, 3, rng), before(kHeight, kWidth, false, 1, rng);
  for (const OptionalStage& first : kOptional)
    for (const OptionalStage* second = &first + 1; second != std::end(kOptional); ++second) {
      if (first.id == second->id) continue;
      SCOPED_TRACE(testing::Message() << first.id << "=" << first.value << ", " << second->id << "=" << second->value);
      FakeHost host;
      ASSERT_EQ(PF_Err_NONE, host.DefineParams());
      host.SetNoStage();
      SwitchOn(host, first);
      SwitchOn(host, *second);
      FakeWorld once(before), again(before);
      ASSERT_EQ(PF_Err_NONE, host.Render(input, once));
      ASSERT_EQ(PF_Err_NONE, host.Render(input, again));
      // Only the specks of Stipple Pattern differ from render to render.
      if (second->id != kStippleBox) {
        EXPECT_EQ(once.memory, again.memory);
      }
      EXPECT_NE(before.memory, once.memory);
    }
  EXPECT_EQ(0, FakeHandles::live);
}

// The limits are what the stages need: they may fall, and rise only for a reason. The frame's own three planes count.
TEST(RenderCommand, HoldsNoMorePicturesThanItsStyleNeeds) {
  constexpr int kLargeHeight = 360, kLargeWidth = 1024;
  std::mt19937 rng(6);
  const FakeWorld input(kLargeHeight, kLargeWidth, false, 0, rng);
  FakeWorld output(input);
  for (const auto& [roto, bytesPerPixel] :
       {std::pair{1, 16}, {2, 20}, {4, 16}, {5, 34}, {6, 16}, {7, 16}, {8, 35}, {9, 16}}) {
    FakeHost host;
    ASSERT_EQ(PF_Err_NONE, host.DefineParams());
    host.Param(kRoto).u.pd.value = roto;
    FakeHandles::mostBytes = 0;
    ASSERT_EQ(PF_Err_NONE, host.Render(input, output));
    EXPECT_GE(bytesPerPixel, static_cast<double>(FakeHandles::mostBytes) / (kLargeHeight * kLargeWidth)) << roto;
  }
}

// Down, without denormal numbers, and with 53 bits in the x87 registers: nothing of that reaches a byte, and the host
// finds it as it was.
TEST(RenderCommand, PaintsTheSameInAnyArithmeticOfTheHost) {
  std::mt19937 rng(6);
  const FakeWorld input(52, kWidth, false, 0, rng);
  for (const HostWorkers workers : kAllHostWorkers) {
    const FakeWorld expected = PaintedInBristle(workers, input);
    const unsigned standard = _mm_getcsr(), odd = (standard & 0x1F80) | 0xA040;
    const unsigned short narrow = 0x027F, wide = 0x037F;
    unsigned short after = 0;
    _mm_setcsr(odd);
    asm volatile("fldcw %0" : : "m"(narrow));
    const FakeWorld painted = PaintedInBristle(workers, input);
    const unsigned oddAfter = _mm_getcsr();
    asm volatile("fnstcw %0\n\tfldcw %1" : "=m"(after) : "m"(wide));
    _mm_setcsr(standard);
    EXPECT_EQ(expected.memory, painted.memory);
    EXPECT_EQ(odd, oddAfter & ~0x3Fu);
    EXPECT_EQ(narrow, after);
  }
}

TEST(RenderCommand, TellsThatAThreadFailed) {
  std::mt19937 rng(5);
  const FakeWorld input(52, kWidth, false, 0, rng);
  FakeWorld output = input;
  FakeHost host;
  ASSERT_EQ(PF_Err_NONE, host.DefineParams());
  ChoosePainting(host);
  host.utils.iterate_generic = [](A_long iterations, void* refcon, PF_Err (*run)(void*, A_long, A_long, A_long)) {
    return iterations == PF_Iterations_ONCE_PER_PROCESSOR ? run(refcon, 0, 0, 3) : PF_Err_INVALID_CALLBACK;
  };
  EXPECT_EQ(PF_Err_INTERNAL_STRUCT_DAMAGED, host.Render(input, output));
  EXPECT_STREQ("AEHost::thread: An unknown error occurred in a thread.", host.out.return_msg);
  EXPECT_EQ(PF_OutFlag_DISPLAY_ERROR_MESSAGE, host.out.out_flags);
  EXPECT_EQ(input.memory, output.memory);
  EXPECT_EQ(0, FakeHandles::live);
}

}  // namespace
}  // namespace quentara
