#include "base/files/file_turn.h"

#include "base/files/file.h"

#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <thread>
#include <unistd.h>

namespace nimbara {

namespace {

using std::chrono::milliseconds;

/// The system tells of the closing just before it gives up the lock.
constexpr milliseconds kPatience{500};
constexpr milliseconds kPause{2};
constexpr std::size_t kLongestHolder = 200;

void closeIfOpen(int descriptor) {
  if (descriptor >= 0) close(descriptor);
}

void drain(int descriptor) {
  alignas(inotify_event) char buffer[1024];
  while (read(descriptor, buffer, sizeof buffer) > 0) {
  }
}

}  // namespace

FileTurn::FileTurn(std::filesystem::path file, std::string_view holder)
    : file_(std::move(file)),
      name_(holder),
      descriptor_(open(file_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
  attempt();
  if (isHeld_) return;
  watch();
  // Whoever let go of it between the first look and the watch has told nobody.
  attempt();
}

FileTurn::~FileTurn() {
  closeIfOpen(descriptor_);
  closeIfOpen(notices_);
  closeIfOpen(stopping_);
}

void FileTurn::attempt() {
  isHeld_ = descriptor_ < 0 || flock(descriptor_, LOCK_EX | LOCK_NB) == 0;
  if (!isHeld_ || descriptor_ < 0) return;
  bool const isWritten = ftruncate(descriptor_, 0) == 0 &&
                         pwrite(descriptor_, name_.data(), name_.size(), 0) == std::ssize(name_);
  if (!isWritten) std::ignore = ftruncate(descriptor_, 0);  // nobody's name rather than half of one
}

void FileTurn::watch() {
  notices_ = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  stopping_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  bool const isWatched = inotify_add_watch(notices_, file_.c_str(), IN_CLOSE_WRITE) >= 0;
  if (isWatched && stopping_ >= 0) return;
  closeIfOpen(descriptor_);
  descriptor_ = -1;
}

std::string FileTurn::holder() const {
  if (isHeld_) return name_;
  return readFile(file_, kLongestHolder).value_or(std::string());
}

void FileTurn::wait(std::stop_token const& stop) {
  if (isHeld_) return;
  std::stop_callback const wake(stop, [this] { eventfd_write(stopping_, 1); });
  pollfd files[] = {{notices_, POLLIN, 0}, {stopping_, POLLIN, 0}};
  while (poll(files, 2, -1) < 0 && !stop.stop_requested()) {
  }
  if (stop.stop_requested()) return;
  drain(notices_);
  for (milliseconds waited{0}; waited < kPatience && !stop.stop_requested(); waited += kPause) {
    attempt();
    if (isHeld_) return;
    std::this_thread::sleep_for(kPause);
  }
}

}  // namespace nimbara
