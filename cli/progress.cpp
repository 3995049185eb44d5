#include "progress.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace quentara::cli {
namespace {

constexpr std::chrono::milliseconds kTerminalInterval{100};
constexpr std::chrono::milliseconds kPlainInterval{5000};

std::string Formatted(const char* format, double number) {
  char text[48];
  std::snprintf(text, sizeof(text), format, number);
  return text;
}

std::string Rate(double units, double seconds) {
  const double rate = seconds > 0 ? units / seconds : 0;
  return Formatted(rate < 10 ? "%.2f" : "%.1f", rate);
}

}  // namespace

std::string FormatDuration(double seconds) {
  const auto whole = static_cast<long long>(std::ceil(seconds));
  if (whole < 60) return std::to_string(whole) + " s";
  char text[48];
  if (whole < 3600)
    std::snprintf(text, sizeof(text), "%lld:%02lld", whole / 60, whole % 60);
  else
    std::snprintf(text, sizeof(text), "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
  return text;
}

ProgressReport::ProgressReport(std::optional<std::int64_t> frames, bool quiet, std::string unit)
    : frames_(frames), quiet_(quiet), unit_(std::move(unit)), terminal_(isatty(STDERR_FILENO) == 1) {}

ProgressReport::~ProgressReport() {
  EndLine();
}

void ProgressReport::Within(int done, int total) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (terminal_ && total > 0) Show(std::clamp(static_cast<double>(done) / total, 0.0, 1.0));
}

void ProgressReport::FrameDone() {
  const std::lock_guard<std::mutex> lock(mutex_);
  ++done_;
  Show(0);
}

void ProgressReport::Note(const std::string& text) {
  const std::lock_guard<std::mutex> lock(mutex_);
  EndLine();
  std::fprintf(stderr, "quentara: %s\n", text.c_str());
}

void ProgressReport::Finish(const std::string& output) {
  const std::lock_guard<std::mutex> lock(mutex_);
  EndLine();
  if (quiet_) return;
  const double seconds = Seconds();
  const std::string duration = seconds < 10 ? Formatted("%.2f s", seconds) : FormatDuration(seconds);
  const std::string rate = done_ > 1 ? " (" + Rate(static_cast<double>(done_), seconds) + " " + unit_ + "s/s)" : "";
  std::fprintf(stderr, "%lld %s%s in %s%s -> %s\n", static_cast<long long>(done_), unit_.c_str(), done_ == 1 ? "" : "s",
               duration.c_str(), rate.c_str(), output.c_str());
}

double ProgressReport::Seconds() const {
  return std::chrono::duration<double>(Clock::now() - begin_).count();
}

std::string ProgressReport::Line(double partOfFrame) const {
  const double finished = static_cast<double>(done_) + partOfFrame;
  const double seconds = Seconds();
  std::string line = unit_ + " " + std::to_string(terminal_ && partOfFrame > 0 ? done_ + 1 : done_);
  if (frames_) line += " of " + std::to_string(*frames_);
  if (partOfFrame > 0) line += Formatted(" (%.0f%%)", 100 * partOfFrame);
  line += ", " + Rate(finished, seconds) + " " + unit_ + "s/s";
  if (frames_ && finished > 0)
    line +=
        ", " + FormatDuration(seconds * std::max(0.0, static_cast<double>(*frames_) - finished) / finished) + " left";
  return line;
}

void ProgressReport::Show(double partOfFrame) {
  const Clock::time_point now = Clock::now();
  if (quiet_ || now - shown_ < (terminal_ ? kTerminalInterval : kPlainInterval)) return;
  shown_ = now;
  const std::string line = Line(partOfFrame);
  // The escape sequence clears what a longer line before left behind.
  std::fprintf(stderr, terminal_ ? "\r%s\033[K" : "%s\n", line.c_str());
  lineOpen_ = terminal_;
}

void ProgressReport::EndLine() {
  if (lineOpen_) std::fputs("\r\033[K", stderr);
  lineOpen_ = false;
}

}  // namespace quentara::cli
