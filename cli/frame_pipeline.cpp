#include "frame_pipeline.h"

#include <algorithm>
#include <utility>

namespace quentara::cli {

FramePipeline::FramePipeline(int jobs, Read read, Render render, std::atomic<bool>& stopping)
    : mostSlots_(static_cast<std::size_t>(jobs) + 1),
      read_(std::move(read)),
      render_(std::move(render)),
      stopping_(stopping) {
  try {
    threads_.emplace_back([this] { ReadFrames(); });
    for (int job = 0; job < jobs; ++job) threads_.emplace_back([this, job] { RenderFrames(job); });
  } catch (...) {
    Stop();
    throw;
  }
}

FramePipeline::~FramePipeline() {
  Stop();
}

void FramePipeline::Stop() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

std::optional<media::Frame> FramePipeline::Next() {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [this] { return slots_.empty() ? ended_ : slots_.front().state == State::Finished; });
  if (slots_.empty()) return std::nullopt;
  Slot slot = std::move(slots_.front());
  slots_.pop_front();
  lock.unlock();
  changed_.notify_all();
  if (slot.error) std::rethrow_exception(slot.error);
  return std::move(slot.frame);
}

void FramePipeline::ReadFrames() {
  bool failed = false;
  for (std::int64_t index = 0; !failed && AwaitRoom(); ++index) {
    Slot slot{index};
    try {
      std::optional<media::Frame> frame = read_();
      if (!frame) break;
      slot.frame = std::move(*frame);
    } catch (...) {
      slot.error = std::current_exception();
      slot.state = State::Finished;
      failed = true;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    slots_.push_back(std::move(slot));
    changed_.notify_all();
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  ended_ = true;
  changed_.notify_all();
}

bool FramePipeline::AwaitRoom() {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [this] { return stopping_ || failed_ || slots_.size() < mostSlots_; });
  return !stopping_ && !failed_;
}

void FramePipeline::RenderFrames(int job) {
  // The queue may grow and shrink at its ends meanwhile; that moves no slot.
  while (Slot* const slot = AwaitFrame()) {
    try {
      slot->frame = render_(job, slot->index, slot->frame);
    } catch (...) {
      slot->error = std::current_exception();
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    slot->state = State::Finished;
    if (slot->error) failed_ = true;
    changed_.notify_all();
  }
}

FramePipeline::Slot* FramePipeline::AwaitFrame() {
  std::unique_lock<std::mutex> lock(mutex_);
  auto next = slots_.end();
  changed_.wait(lock, [&] {
    next = std::find_if(slots_.begin(), slots_.end(), [](const Slot& slot) { return slot.state == State::Read; });
    return stopping_ || failed_ || ended_ || next != slots_.end();
  });
  if (stopping_ || failed_ || next == slots_.end()) return nullptr;
  next->state = State::Rendering;
  return &*next;
}

}  // namespace quentara::cli
