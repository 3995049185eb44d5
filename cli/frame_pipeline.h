/// Several frames of a clip on their way at once.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "media/frame.h"

namespace quentara::cli {

/// Reads frames on one thread, renders them on several, and gives them in the order in which they were read.
///
/// At most jobs + 2 frames exist at a time: jobs + 1 that are read, rendered or wait, and the one given last.
class FramePipeline {
 public:
  /// The next frame, none after the last.
  using Read = std::function<std::optional<media::Frame>()>;
  /// @param job  from 0: calls for one job come on one thread, calls for different jobs at the same time.
  /// @param index  of the frame among those read, from 0.
  using Render = std::function<media::Frame(int job, std::int64_t index, const media::Frame& frame)>;

  /// Starts at once.
  /// @param jobs  how many frames are rendered at a time, at least 1.
  /// @param stopping  outlives the pipeline, which sets it when nobody waits for its frames any more, so that renders
  ///                  under way can give up.
  FramePipeline(int jobs, Read read, Render render, std::atomic<bool>& stopping);
  /// Stops, and waits for the threads.
  ~FramePipeline();
  FramePipeline(const FramePipeline&) = delete;
  FramePipeline& operator=(const FramePipeline&) = delete;

  /// The next rendered frame, none after the last. To be called by one thread.
  /// @throws what reading or rendering that frame threw, once those before it were given; there are none after it.
  std::optional<media::Frame> Next();

 private:
  enum class State { Read, Rendering, Finished };
  struct Slot {
    std::int64_t index;
    State state = State::Read;
    media::Frame frame{};
    std::exception_ptr error{};
  };

  void ReadFrames();
  void RenderFrames(int job);
  bool AwaitRoom();
  Slot* AwaitFrame();
  void Stop();

  const std::size_t mostSlots_;
  Read read_;
  Render render_;
  std::atomic<bool>& stopping_;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Slot> slots_;  ///< frames in order, from the next to be given to the last one read
  bool ended_ = false;      ///< nothing more will be read
  bool failed_ = false;     ///< a frame could not be rendered, so none after it is begun

  std::vector<std::thread> threads_;
};

}  // namespace quentara::cli
