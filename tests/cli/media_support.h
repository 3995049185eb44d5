/// Frames and files for the tests of the media layer.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "media/frame.h"
#include "media/input.h"
#include "media/output.h"
#include "media/still.h"
#include "support/temporary_folder.h"

namespace quentara::media {

/// A test with a folder for its files.
struct FolderTest : testing::Test {
  const TemporaryFolder folder;
};

/// A frame of noise, opaque or with noise for alpha.
inline Frame RandomFrame(int width, int height, bool deep = false, bool opaque = false, unsigned seed = 1) {
  std::mt19937 rng(seed);
  Frame frame = BlankFrame(width, height, deep);
  for (int i = 0; i < width * height * 4; ++i) {
    const bool full = opaque && i % 4 == 0;
    if (deep)
      frame.Deep(0)[i] = static_cast<std::uint16_t>(full ? kDeepWhite : rng() % (kDeepWhite + 1));
    else
      frame.Bytes(0)[i] = static_cast<std::uint8_t>(full ? 255 : rng() % 256);
  }
  return frame;
}

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

inline void WritePng(const std::string& path, const Frame& frame) {
  const std::vector<std::uint8_t> content = EncodeStill(StillFormat::Png, ToStill(frame, StillFormat::Png));
  WriteFile(path, {content.begin(), content.end()});
}

/// What OpenInput(...), Next or the like complained about, which must be one line.
template <class Error, class Call>
std::string MessageOf(const Call& call) {
  try {
    call();
  } catch (const Error& error) {
    EXPECT_STREQ(nullptr, std::strchr(error.what(), '\n'));
    return error.what();
  }
  return "no error";
}

inline Frame ReadPicture(const std::string& path) {
  return *OpenInput(path)->Next();
}

inline std::vector<Frame> ReadAll(Input& input) {
  std::vector<Frame> frames;
  while (auto frame = input.Next()) frames.push_back(std::move(*frame));
  return frames;
}

inline std::vector<std::int64_t> NumbersOf(Input& input) {
  std::vector<std::int64_t> numbers;
  for (const Frame& frame : ReadAll(input)) numbers.push_back(frame.number);
  return numbers;
}

/// Copies an input to an output, frame by frame; returns how many.
inline int CopyMedia(const std::string& from, const std::string& to, const OutputOptions& options = {},
                     const std::optional<FrameRange>& range = std::nullopt) {
  const auto input = OpenInput(from, range);
  const auto output = OpenOutput(to, *input, options);
  int count = 0;
  for (; auto frame = input->Next(); ++count) output->Write(*frame);
  output->Finish();
  return count;
}

}  // namespace quentara::media
