#include "render/pipeline.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <vector>

#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {
namespace {

/// Counts what the render holds, and fails at the n-th report, stop check or allocation.
class ScriptedHost : public StandaloneHost {
 public:
  explicit ScriptedHost(int stopAt = 0, int failAt = 0) : StandaloneHost(1), stopAt_(stopAt), failAt_(failAt) {}

  void* Allocate(std::size_t bytes) override {
    if (++allocations_ == failAt_) throw std::bad_alloc();
    ++held;
    return StandaloneHost::Allocate(bytes);
  }
  void Free(void* pointer) override {
    if (pointer != nullptr) --held;
    StandaloneHost::Free(pointer);
  }
  void CheckStop(const int*) override { Check(); }
  void ReportProgress(const int*, int done, int total) override {
    EXPECT_EQ(10, total);
    reports.push_back(done);
    Check();
  }

  std::vector<int> reports;
  int held = 0;

 private:
  void Check() {
    if (++checks_ == stopAt_) throw Plugin::Interrupted();
  }
  const int stopAt_, failAt_;
  int checks_ = 0, allocations_ = 0;
};

/// A random frame in buffers of its own.
struct TestFrame {
  TestFrame(int height, int width) {
    std::mt19937 rng(5);
    picture = std::make_unique<ChannelSet>(RandomPicture(height, width, rng));
    settings.frame = {picture->planes(0).data(), picture->planes(1).data(), picture->planes(2).data(),
                      picture->height(), picture->width()};
  }
  std::unique_ptr<ChannelSet> picture;
  RenderSettings settings;
};

void FreeFrame(const FrameBuffers& frame, Plugin::Host& host) {
  for (unsigned char* buffer : {frame.red, frame.green, frame.blue}) host.Free(buffer);
}

TEST(Pipeline, WithoutStagesReturnsTheFrame) {
  for (const auto& [height, width] : {std::pair{1, 1}, {5, 3}, {40, 64}}) {
    TestFrame frame(height, width);
    ScriptedHost host;
    const FrameBuffers result = RenderPipeline::Render(frame.settings, host);
    EXPECT_EQ(frame.settings.frame.height, result.height);
    EXPECT_EQ(frame.settings.frame.width, result.width);
    EXPECT_EQ("", FirstDifference(frame.picture->planes(0), WrapRows(result.red, height, width)));
    EXPECT_EQ("", FirstDifference(frame.picture->planes(1), WrapRows(result.green, height, width)));
    EXPECT_EQ("", FirstDifference(frame.picture->planes(2), WrapRows(result.blue, height, width)));
    EXPECT_EQ((std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}), host.reports);
    FreeFrame(result, host);
    EXPECT_EQ(0, host.held);
  }
}

TEST(Pipeline, AnInvisibleOutlineIsNoOutline) {
  TestFrame frame(4, 4);
  const ShadowOutlineSettings shadow = {0.5f, 1.0f, true, 1.0f};
  frame.settings.shadowOutlines = &shadow;
  ScriptedHost host;
  const FrameBuffers result = RenderPipeline::Render(frame.settings, host);
  EXPECT_EQ("", FirstDifference(frame.picture->planes(0), WrapRows(result.red, 4, 4)));
  FreeFrame(result, host);
}

TEST(Pipeline, HoldsNothingAfterACancelOrAFailedAllocation) {
  TestFrame frame(6, 7);
  for (const bool stop : {false, true}) {
    int n = 1;
    for (bool done = false; !done; ++n) {
      ScriptedHost host(stop ? n : 0, stop ? 0 : n);
      try {
        FreeFrame(RenderPipeline::Render(frame.settings, host), host);
        done = true;
      } catch (const Plugin::Interrupted&) {
        EXPECT_TRUE(stop);
      } catch (const std::bad_alloc&) {
        EXPECT_FALSE(stop);
      }
      EXPECT_EQ(0, host.held) << "at call " << n;
    }
    EXPECT_GT(n, 5);
  }
}

}  // namespace
}  // namespace quentara
