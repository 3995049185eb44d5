#include "frame_pipeline.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <string>

#include "cli/media_support.h"

namespace quentara::cli {
namespace {

using std::chrono::milliseconds;

media::Frame FrameOf(std::int64_t number) {
  media::Frame frame = media::BlankFrame(1, 1, false);
  frame.number = number;
  return frame;
}

/// Reads frames 0, 1, ... count - 1.
FramePipeline::Read Counter(std::int64_t count) {
  return [next = std::int64_t{0}, count]() mutable -> std::optional<media::Frame> {
    if (next == count) return std::nullopt;
    return FrameOf(next++);
  };
}

void Await(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!condition() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(milliseconds(1));
  ASSERT_TRUE(condition());
}

TEST(FramePipeline, RendersAsManyFramesAtOnceAsAskedAndGivesThemInOrder) {
  for (const int jobs : {1, 2, 5}) {
    SCOPED_TRACE(jobs);
    std::atomic<bool> stopping{false};
    std::atomic<int> alive{0}, begun{0}, rendering{0};
    std::vector<std::thread::id> threads(jobs);
    FramePipeline frames(
        jobs,
        [&, read = Counter(60)] {
          EXPECT_LE(++alive, jobs + 2);
          return read();
        },
        [&](int job, std::int64_t index, const media::Frame& frame) {
          EXPECT_LE(++rendering, jobs);
          if (index < jobs) {
            threads[job] = std::this_thread::get_id();
            ++begun;
            Await([&] { return begun == jobs; });
          }
          EXPECT_EQ(std::pair(threads[job], frame.number), std::pair(std::this_thread::get_id(), index));
          std::this_thread::sleep_for(milliseconds(index % 7 == 0 ? 5 : index % 3));
          --rendering;
          return FrameOf(frame.number * 10);
        },
        stopping);
    for (int i = 0; i < 60; ++i) {
      ASSERT_EQ(i * 10, frames.Next().value().number);
      if (i == 3) Await([&] { return alive == jobs + 2 && rendering == 0; });
      --alive;
    }
    EXPECT_FALSE(frames.Next());
  }
}

TEST(FramePipeline, GivesTheFramesBeforeTheFirstErrorAndThenThrowsIt) {
  for (const int jobs : {1, 3})
    for (const bool inReading : {true, false}) {
      SCOPED_TRACE(testing::Message() << jobs << " jobs, in reading " << inReading);
      std::atomic<bool> stopping{false};
      std::atomic<std::int64_t> last{-1};
      FramePipeline frames(
          jobs,
          [&, read = Counter(1000)] {
            auto frame = read();
            last = frame->number;
            if (inReading && frame->number >= 4) throw std::runtime_error("4");
            return frame;
          },
          [&](int, std::int64_t index, const media::Frame& frame) {
            // The frame after the first bad one fails before it does.
            std::this_thread::sleep_for(milliseconds(index == 4 ? 20 : 1));
            if (!inReading && index >= 4) throw std::runtime_error(std::to_string(index));
            return frame;
          },
          stopping);
      for (int i = 0; i < 4; ++i) ASSERT_EQ(i, frames.Next().value().number);
      EXPECT_EQ("4", media::MessageOf<std::runtime_error>([&] { frames.Next(); }));
      std::this_thread::sleep_for(milliseconds(10));  // in which more would be read
      EXPECT_LE(last, inReading ? 4 : 4 + jobs);
    }
}

TEST(FramePipeline, StopsRendersUnderWayWhenNobodyWaitsForThem) {
  for (const int jobs : {1, 3}) {
    std::atomic<bool> stopping{false};
    std::atomic<int> begun{0}, ended{0};
    {
      FramePipeline frames(
          jobs, Counter(1000),
          [&](int, std::int64_t index, const media::Frame& frame) {
            ++begun;
            if (index > 0) Await([&] { return stopping.load(); });
            ++ended;
            return frame;
          },
          stopping);
      EXPECT_EQ(0, frames.Next().value().number);
      Await([&] { return begun == jobs + 1; });
    }
    EXPECT_EQ(jobs + 1, begun);
    EXPECT_EQ(jobs + 1, ended);
  }
}

}  // namespace
}  // namespace quentara::cli
