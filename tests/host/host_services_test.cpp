#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>
#include <thread>

#include "host/plugin_nivra.h"
#include "render/bands.h"
#include "support/fake_host.h"

namespace quentara {
namespace {

bool Aligned(const void* pointer) {
  return reinterpret_cast<std::uintptr_t>(pointer) % 16 == 0;
}

using Body = std::function<void(const int* context, int index, int count)>;

void RunWorkers(Plugin::Host& host, int count, const Body& body) {
  const Plugin::Worker worker = [](Plugin::Host&, const int* context, int index, int workers, void* data) {
    (*static_cast<const Body*>(data))(context, index, workers);
  };
  host.RunWorkers(worker, const_cast<Body*>(&body), count);
}

class Roads : public testing::TestWithParam<HostWorkers> {
 protected:
  ~Roads() override { FakeHandles::FailAt(0); }

  FakeHost fake{GetParam()};
  Nivra::EffectContext context{&fake.in, nullptr};
  Plugin::Host& host = context.plugin;
};

INSTANTIATE_TEST_SUITE_P(AllRoads, Roads, testing::ValuesIn(kAllHostWorkers));

TEST_P(Roads, GiveAlignedMemoryToSeveralWorkers) {
  EXPECT_FALSE(host.IsPlain());
  for (const std::size_t bytes : {0, 1, 15, 16, 17, 1000}) {
    void* const pointer = host.Allocate(bytes);
    EXPECT_TRUE(Aligned(pointer));
    std::memset(pointer, 1, bytes);
    void* const block = host.AllocateBlock(bytes);
    EXPECT_TRUE(Aligned(host.BlockData(block)));
    std::memset(host.BlockData(block), 1, bytes);
    host.FreeBlock(block);
    host.Free(pointer);
  }
  host.Free(nullptr);
  EXPECT_THROW(host.Allocate(SIZE_MAX - 20), std::bad_alloc);
  EXPECT_THROW(host.Allocate(SIZE_MAX - 3), std::bad_alloc);
  FakeHandles::overlaps = 0;
  RunWorkers(host, 6, [&](const int*, int, int) {
    for (int i = 0; i < 200; ++i) host.Free(host.Allocate(64));
  });
  EXPECT_EQ(0, FakeHandles::overlaps);
  EXPECT_EQ(0, FakeHandles::live);
}

TEST_P(Roads, RunEveryWorkerOnce) {
  for (const int count : {1, 2, 7}) {
    std::atomic<int> runs{0};
    std::vector<int> seen(static_cast<std::size_t>(count));
    RunWorkers(host, count, [&](const int*, int index, int workers) {
      EXPECT_EQ(count, workers);
      ++seen[static_cast<std::size_t>(index)];
      ++runs;
    });
    EXPECT_EQ(count, runs);
    EXPECT_EQ(std::vector<int>(static_cast<std::size_t>(count), 1), seen);
  }
  const std::thread::id caller = std::this_thread::get_id();
  RunWorkers(host, 1, [&](const int* index, int, int) {
    EXPECT_EQ(0, *index);
    EXPECT_EQ(caller, std::this_thread::get_id());
  });
}

TEST_P(Roads, CountTheThreadsOnOffer) {
  const int offered = GetParam() == HostWorkers::None ? platform::ProcessorCount() : kFakeProcessors;
  EXPECT_EQ(offered, host.ThreadCount());
  const auto runs = [&] {
    std::atomic<int> count{0};
    RunWorkers(host, 0, [&](const int*, int, int) { ++count; });
    return count.load();
  };
  EXPECT_EQ(offered, runs());
  host.SetThreadCount(5);
  EXPECT_EQ(5, host.ThreadCount());
  EXPECT_EQ(5, runs());
  host.SetThreadCount(0);
  fake.in.version = {11, 99};
  EXPECT_EQ(platform::ProcessorCount(), host.ThreadCount()) << "iterate_generic came with version 12";
}

TEST(HostServices, CountOneThreadWhenTheHostCallsNothing) {
  FakeHost fake;
  fake.utils.iterate_generic = [](A_long, void*, PF_Err (*)(void*, A_long, A_long, A_long)) -> PF_Err { return 1; };
  Nivra::EffectContext context(&fake.in, nullptr);
  EXPECT_EQ(1, context.plugin.ThreadCount());
}

TEST_P(Roads, LetTheFirstThreadAloneTalkToTheHost) {
  RunWorkers(host, 7, [&](const int* thread, int, int) {
    host.CheckStop(thread);
    host.ReportProgress(thread, 1, 2);
  });
  host.CheckStop(nullptr);
  EXPECT_EQ(0, fake.foreignCalls);
  EXPECT_GE(fake.asked, 1);
}

TEST_P(Roads, StopAtEveryCheckAndStayStopped) {
  // Three checks in each of four workers; how many of them ask the host depends on the road.
  for (int n = 1;; ++n) {
    SCOPED_TRACE(n);
    FakeHost cancelling(GetParam());
    Nivra::EffectContext other(&cancelling.in, nullptr);
    cancelling.cancelAt = n;
    const Body checks = [&](const int* thread, int, int) {
      const Plugin::HostScope scope(other.plugin);
      const BytePlane plane(5, 5);
      for (int i = 0; i < 3; ++i) other.plugin.CheckStop(thread);
    };
    bool stopped = false;
    try {
      RunWorkers(other.plugin, 4, checks);
    } catch (const Plugin::Interrupted&) {
      stopped = true;
    }
    EXPECT_EQ(0, FakeHandles::live);
    EXPECT_EQ(cancelling.asked >= n, stopped);
    if (!stopped) {
      EXPECT_GT(n, 1);
      break;
    }
    EXPECT_EQ(PF_Interrupt_CANCEL, other.host.pendingError());
    EXPECT_THROW(other.plugin.CheckStop(nullptr), Plugin::Interrupted);
    const int elsewhere = 2;
    EXPECT_THROW(other.plugin.ReportProgress(&elsewhere, 1, 2), Plugin::Interrupted);
    EXPECT_EQ(n, cancelling.asked);
  }
}

TEST(HostServices, StartNoFurtherWorkerAfterAStop) {
  FakeHost fake(HostWorkers::Serial);
  Nivra::EffectContext context(&fake.in, nullptr);
  fake.cancelAt = 1;
  int runs = 0;
  EXPECT_THROW(RunWorkers(context.plugin, 4,
                          [&](const int* thread, int, int) {
                            ++runs;
                            context.plugin.CheckStop(thread);
                          }),
               Plugin::Interrupted);
  EXPECT_EQ(1, runs);
}

TEST_P(Roads, TurnAWorkersFailureIntoAnException) {
  const auto what = [&](const Body& body) {
    try {
      RunWorkers(host, 4, body);
    } catch (const std::exception& error) {
      return std::string(error.what());
    }
    return std::string();
  };
  const std::string expected =
      std::string(GetParam() == HostWorkers::None ? "Nivra::Host::System::Thread::thread" : "AEHost::thread") +
      ": An unknown error occurred in a thread.";
  EXPECT_EQ(expected, what([](const int*, int index, int) {
              if (index == 2) throw std::runtime_error("lost");
            }));
  EXPECT_EQ(expected, what([](const int*, int index, int) {
              if (index == 0) throw 7;
            }));
  EXPECT_EQ("", what([](const int*, int, int) {})) << "a failed run leaves nothing behind";
}

TEST(OwnThreads, AnswerWithTheLastFailureInOrder) {
  FakeHost fake(HostWorkers::None);
  Nivra::EffectContext context(&fake.in, nullptr);
  const Body first = [](const int*, int index, int) {
    if (index == 1) throw std::bad_alloc();
    if (index == 2) throw std::runtime_error("lost");
  };
  EXPECT_THROW(RunWorkers(context.plugin, 4, first), Nivra::Exception);
  const Body second = [](const int*, int index, int) {
    if (index == 1) throw std::runtime_error("lost");
    if (index == 2) throw std::bad_alloc();
  };
  EXPECT_THROW(RunWorkers(context.plugin, 4, second), std::bad_alloc);
}

TEST(HostServices, AskTheNewHandlerForRoom) {
  FakeHost fake;
  Nivra::EffectContext context(&fake.in, nullptr);
  static int asked;
  asked = 0;
  const std::new_handler former = std::set_new_handler([] {
    ++asked;
    FakeHandles::FailAt(0);
  });
  FakeHandles::FailAt(2);
  void* const pointer = context.plugin.Allocate(10);
  std::set_new_handler(former);
  EXPECT_EQ(1, asked);
  EXPECT_TRUE(Aligned(pointer));
  context.plugin.Free(pointer);
  EXPECT_EQ(0, FakeHandles::live);
}

}  // namespace
}  // namespace quentara
