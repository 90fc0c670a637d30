#include "cli/slow_note.h"

namespace nimbara {

SlowNote::SlowNote(Session const& session, std::string sentence)
    : session_(session), sentence_("nimbara: " + std::move(sentence) + "\n") {
  if (!session_.console.showsProgress()) return;
  if (session_.patience <= std::chrono::milliseconds(0)) {
    session_.console.err(sentence_);
  } else {
    waiting_ = std::thread([this] { wait(); });
  }
}

SlowNote::~SlowNote() {
  {
    std::lock_guard const lock(mutex_);
    isOver_ = true;
  }
  over_.notify_one();
  if (waiting_.joinable()) waiting_.join();
}

void SlowNote::wait() {
  std::unique_lock lock(mutex_);
  if (!over_.wait_for(lock, session_.patience, [this] { return isOver_; })) session_.console.err(sentence_);
}

}  // namespace nimbara
