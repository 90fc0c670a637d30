// Keeps other processes out of a file while it is read, changed and written back. Advisory and bounded: where
// the lock is not available within half a second, or no lock file can be made, the work goes on without it.
#pragma once

#include <filesystem>

namespace nimbara {

class FileLock {
 public:
  /// Waits for the lock; `file` is made when missing, its folder is not. Released when it goes.
  explicit FileLock(std::filesystem::path const& file);
  ~FileLock();
  FileLock(FileLock const&) = delete;
  FileLock& operator=(FileLock const&) = delete;

  bool isHeld() const { return isHeld_; }
  /// Somebody else has it; not so where no lock file can be made.
  bool isTaken() const { return descriptor_ >= 0 && !isHeld_; }

 private:
  int descriptor_ = -1;
  bool isHeld_ = false;
};

}  // namespace nimbara
