// Which of the user's programs tells notifications: exactly one at a time, for as long as it runs; the next
// takes over when it ends. Owned by a long-lived program. Decides nothing about what is sent.
#pragma once

#include "base/files/file_turn.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

namespace nimbara {

class NotifierRole {
 public:
  /// Programs that give the same file share the role; `program` is what the others read of this one.
  NotifierRole(std::filesystem::path const& file, std::string_view program);

  bool isOurs() const { return isOurs_; }
  /// The program that has the role, as it calls itself; empty when that is not known.
  std::string holder() const { return turn_.holder(); }

  /// Waits for the role where another program has it. `onChange` is called, on a thread of its own, when this
  /// one has got it, and when a third one has.
  void follow(std::function<void()> onChange);
  /// Waits no longer.
  void stop() { waiting_ = {}; }

 private:
  FileTurn turn_;
  std::atomic<bool> isOurs_;
  std::jthread waiting_;
};

}  // namespace nimbara
