#include "base/files/file_lock.h"

#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace nimbara {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPatience{500};
constexpr milliseconds kPause{2};

}  // namespace

FileLock::FileLock(std::filesystem::path const& file)
    : descriptor_(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
  if (descriptor_ < 0) return;
  for (milliseconds waited{0}; waited < kPatience; waited += kPause) {
    isHeld_ = flock(descriptor_, LOCK_EX | LOCK_NB) == 0;
    if (isHeld_) return;
    std::this_thread::sleep_for(kPause);
  }
}

FileLock::~FileLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace nimbara
