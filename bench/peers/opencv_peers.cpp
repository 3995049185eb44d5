// What OpenCV offers for the same work: window filters on one plane, and whole frames in a painted style.
#include <benchmark/benchmark.h>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/photo.hpp>
#include <opencv2/xphoto/oilpainting.hpp>

#include "bench_cases.h"
#include "counting_host.h"

namespace quentara {
namespace {

using Filter = void (*)(int radius, const cv::Mat& source, cv::Mat& result);

cv::Size Window(int radius) {
  return {2 * radius + 1, 2 * radius + 1};
}

cv::Mat Square(int radius) {
  return cv::getStructuringElement(cv::MORPH_RECT, Window(radius));
}

struct WindowPeer {
  const char* filter;  ///< ours
  const char* name;
  int largestRadius;
  Filter run;
};

const WindowPeer kWindowPeers[] = {
    {"median", "OpenCV medianBlur", 50,
     [](int r, const cv::Mat& source, cv::Mat& result) { cv::medianBlur(source, result, 2 * r + 1); }},
    {"max", "OpenCV dilate", 50,
     [](int r, const cv::Mat& source, cv::Mat& result) { cv::dilate(source, result, Square(r)); }},
    {"min", "OpenCV erode", 50,
     [](int r, const cv::Mat& source, cv::Mat& result) { cv::erode(source, result, Square(r)); }},
    {"box-mean", "OpenCV blur", 50,
     [](int r, const cv::Mat& source, cv::Mat& result) { cv::blur(source, result, Window(r)); }},
    // Other weights, but what a user would take in its place; seconds a frame at larger radii.
    {"range-mean", "OpenCV bilateralFilter", 10,
     [](int r, const cv::Mat& source, cv::Mat& result) {
       cv::bilateralFilter(source, result, 2 * r + 1, RangeLimit(r), r);
     }},
};

void MeasureWindow(benchmark::State& state, const WindowPeer& peer, int radius, const BytePlane& plane) {
  cv::setNumThreads(1);
  const cv::Mat source(plane.rows(), plane.cols(), CV_8UC1, const_cast<unsigned char*>(plane.data()));
  for (auto _ : state) {
    cv::Mat result;  // ours allocate their results, too
    peer.run(radius, source, result);
  }
}

/// Counts the memory of all matrices while it lives.
class CountingAllocator : public cv::MatAllocator {
 public:
  CountingAllocator() { cv::Mat::setDefaultAllocator(this); }
  ~CountingAllocator() override { cv::Mat::setDefaultAllocator(cv::Mat::getStdAllocator()); }

  cv::UMatData* allocate(int dims, const int* sizes, int type, void* data, std::size_t* step, cv::AccessFlag flags,
                         cv::UMatUsageFlags usage) const override {
    cv::UMatData* const block = cv::Mat::getStdAllocator()->allocate(dims, sizes, type, data, step, flags, usage);
    block->currAllocator = block->prevAllocator = this;
    if (data == nullptr) count_.Add(block->size);
    return block;
  }
  bool allocate(cv::UMatData* block, cv::AccessFlag flags, cv::UMatUsageFlags usage) const override {
    return cv::Mat::getStdAllocator()->allocate(block, flags, usage);
  }
  void deallocate(cv::UMatData* block) const override {
    if (block != nullptr && (block->flags & cv::UMatData::USER_ALLOCATED) == 0) count_.Remove(block->size);
    cv::Mat::getStdAllocator()->deallocate(block);
  }

  std::size_t peak() const { return count_.peak(); }

 private:
  mutable PeakCount count_;
};

struct FramePeer {
  const char* name;
  void (*run)(const cv::Mat& source, cv::Mat& result);
};

const FramePeer kFramePeers[] = {
    {"OpenCV stylization", [](const cv::Mat& source, cv::Mat& result) { cv::stylization(source, result); }},
    {"OpenCV edgePreservingFilter",
     [](const cv::Mat& source, cv::Mat& result) { cv::edgePreservingFilter(source, result); }},
    {"OpenCV oilPainting size 10",
     [](const cv::Mat& source, cv::Mat& result) { cv::xphoto::oilPainting(source, result, 10, 1); }},
    {"OpenCV bilateralFilter d 9",
     [](const cv::Mat& source, cv::Mat& result) { cv::bilateralFilter(source, result, 9, 30, 9); }},
};

void MeasureFrame(benchmark::State& state, const FramePeer& peer, FrameSize size, int threads) {
  cv::setNumThreads(threads);
  const ChannelSet& picture = FramePicture(size);
  std::vector<cv::Mat> planes;
  for (const int i : {2, 1, 0})
    planes.emplace_back(size.height, size.width, CV_8UC1, const_cast<unsigned char*>(picture.planes(i).data()));
  cv::Mat source;
  cv::merge(planes, source);
  const CountingAllocator memory;
  for (auto _ : state) {
    cv::Mat result;
    peer.run(source, result);
  }
  CountFrame(state, size, memory.peak());
}

const bool kRegistered = [] {
  benchmark::AddCustomContext("peer", std::string("OpenCV ") + CV_VERSION);
  for (const WindowPeer& peer : kWindowPeers)
    RegisterWindows(peer.filter, peer.name, peer.largestRadius,
                    [&peer](benchmark::State& state, int radius, const BytePlane& plane) {
                      MeasureWindow(state, peer, radius, plane);
                    });
  for (const FramePeer& peer : kFramePeers)
    RegisterFrames(peer.name, [&peer](benchmark::State& state, FrameSize size, int threads) {
      MeasureFrame(state, peer, size, threads);
    });
  return true;
}();

}  // namespace
}  // namespace quentara
