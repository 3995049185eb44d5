/// Progress of a render on standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

namespace quentara::cli {

/// A duration as "12 s", "3:07" or "1:02:03".
std::string FormatDuration(double seconds);

/// Tells how far a render is: on a terminal one line that is rewritten, elsewhere a line every few seconds. Threads may
/// report at the same time.
class ProgressReport {
 public:
  /// @param frames  how many there will be, if that is known.
  /// @param quiet  says nothing but notes.
  /// @param unit  what is counted, in the singular.
  ProgressReport(std::optional<std::int64_t> frames, bool quiet, std::string unit = "frame");
  /// Ends an unfinished line.
  ~ProgressReport();
  ProgressReport(const ProgressReport&) = delete;
  ProgressReport& operator=(const ProgressReport&) = delete;

  /// Within the frame that is being rendered, done of total.
  void Within(int done, int total);
  void FrameDone();
  /// A line of its own between the progress.
  void Note(const std::string& text);
  /// The last line: how many frames, how fast, and to where.
  void Finish(const std::string& output);

 private:
  using Clock = std::chrono::steady_clock;

  double Seconds() const;
  std::string Line(double partOfFrame) const;
  void Show(double partOfFrame);
  void EndLine();

  std::mutex mutex_;
  std::optional<std::int64_t> frames_;
  bool quiet_;
  std::string unit_;
  bool terminal_;
  bool lineOpen_ = false;
  std::int64_t done_ = 0;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point shown_ = begin_;
};

}  // namespace quentara::cli
