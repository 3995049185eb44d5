#include "media/temporary_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>

#include "media/errors.h"

namespace quentara::media {
namespace {

[[noreturn]] void Fail(const std::string& target, const char* doing) {
  throw OutputError(target + ": " + doing + ": " + std::strerror(errno));
}

}  // namespace

TemporaryFile::TemporaryFile(std::string target) : target_(std::move(target)) {
  const std::filesystem::path place(target_);
  std::random_device random;
  int file = -1;
  do {
    char tag[16];
    std::snprintf(tag, sizeof tag, ".%08x", static_cast<unsigned>(random()));
    path_ = (place.parent_path() / ("." + place.filename().string() + tag)).string();
    // Not mkstemp, whose files are for their owner alone.
    file = open(path_.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
  } while (file < 0 && errno == EEXIST);
  if (file < 0) Fail(target_, "cannot be written");
  close(file);
}

TemporaryFile::~TemporaryFile() {
  if (!path_.empty()) unlink(path_.c_str());
}

void TemporaryFile::Fill(const std::vector<std::uint8_t>& content) {
  const int file = open(path_.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
  if (file < 0) Fail(target_, "cannot be written");
  for (std::size_t done = 0; done < content.size();) {
    const ssize_t count = write(file, content.data() + done, content.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      const int error = errno;
      close(file);
      errno = error;
      Fail(target_, "writing failed");
    }
    done += count;
  }
  if (close(file) != 0) Fail(target_, "writing failed");
}

void TemporaryFile::Commit(bool overwrite) {
  const unsigned flags = overwrite ? 0 : RENAME_NOREPLACE;
  int result = renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), flags);
  // Some network file systems know no flags.
  if (result != 0 && errno == EINVAL && !std::filesystem::exists(target_))
    result = std::rename(path_.c_str(), target_.c_str());
  if (result != 0) Fail(target_, "cannot be put in place");
  path_.clear();
}

}  // namespace quentara::media
